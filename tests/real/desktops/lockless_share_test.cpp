#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include <cerrno>
#include <cstdarg>
#include <filesystem>

#include "platform/disk/instance_lock.h"
#include "platform/sqlite/sqlite_settings.h"
#include "support/temporary_folder.h"

namespace {

/// What the share answers to a lock; 0 for a disk that has locks.
int lockFault = 0;
/// How many locks it was asked for since it answers so.
int refusedLocks = 0;

int ControlFile(const char* name, int file, int command, void* argument) {
  if (lockFault != 0 && (command == F_SETLK || command == F_SETLKW || command == F_GETLK)) {
    errno = lockFault;
    ++refusedLocks;
    return -1;
  }
  using Call = int (*)(int, int, ...);
  return reinterpret_cast<Call>(::dlsym(RTLD_NEXT, name))(file, command, argument);
}

void* ArgumentOf(va_list list) { return va_arg(list, void*); }

}  // namespace

// The program's own calls and those of its libraries end up here instead of in the system's
// library.
extern "C" int fcntl(int file, int command, ...) {
  va_list list;
  va_start(list, command);
  void* const argument = ArgumentOf(list);
  va_end(list);
  return ControlFile("fcntl", file, command, argument);
}

extern "C" int fcntl64(int file, int command, ...) {
  va_list list;
  va_start(list, command);
  void* const argument = ArgumentOf(list);
  va_end(list);
  return ControlFile("fcntl64", file, command, argument);
}

extern "C" int flock(int file, int operation) noexcept {
  if (lockFault != 0) {
    errno = lockFault;
    return -1;
  }
  using Call = int (*)(int, int);
  return reinterpret_cast<Call>(::dlsym(RTLD_NEXT, "flock"))(file, operation);
}

namespace tavlo::platform {
namespace {

constexpr int kMostTries = 40;

/// A share that is mounted without locks: which of these it answers depends on its kind.
struct LocklessShare : testing::TestWithParam<int> {
  ~LocklessShare() override { lockFault = 0; }

  std::string ExpectedText() const {
    return "The settings database " + path +
           " stands on a disk that has no file locks, as a network share may. Have the share "
           "mounted with locks, or keep the home folder on a disk of this machine.";
  }

  test::TemporaryFolder folder;
  const std::string path = folder.Path() + "/settings.mdb";
  SqliteSettingsDatabases databases{{.root = "/root", .revision = "1"}};
};

TEST_P(LocklessShare, IsNamedAsTheReasonAtAFirstStartAndNothingIsLeftBehind) {
  lockFault = GetParam();
  EXPECT_EQ(databases.Create(path), ExpectedText());
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST_P(LocklessShare, IsNamedAsTheReasonWhereSettingsStandAlready) {
  ASSERT_EQ(databases.Create(path), "");
  lockFault = GetParam();
  refusedLocks = 0;
  const store::OpenedDatabase opened = databases.Open(path);
  EXPECT_FALSE(opened.database);
  EXPECT_EQ(opened.failure, ExpectedText());
  // Each try of a lock that another program might hold is a wait.
  EXPECT_LT(refusedLocks, kMostTries);
  lockFault = 0;
  EXPECT_TRUE(databases.Open(path).database);
}

TEST_P(LocklessShare, DoesNotKeepAFirstCopyOut) {
  lockFault = GetParam();
  EXPECT_FALSE(InstanceLock(folder.Path() + "/TavloDeck").AnotherCopyRuns());
  EXPECT_FALSE(InstanceLock(folder.Path() + "/TavloDeck").AnotherCopyRuns());
}

INSTANTIATE_TEST_SUITE_P(Answers, LocklessShare, testing::Values(ENOLCK, EOPNOTSUPP, ENOSYS));

}  // namespace
}  // namespace tavlo::platform
