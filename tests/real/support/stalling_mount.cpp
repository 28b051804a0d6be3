#include "support/stalling_mount.h"

#define FUSE_USE_VERSION 31
#include <dirent.h>
#include <fcntl.h>
#include <fuse3/fuse.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <new>
#include <utility>

#include "support/patience.h"
#include "support/send_signal.h"

namespace tavlo::test {
namespace {

constexpr useconds_t kMomentInHold = 5000;
constexpr useconds_t kLongWay = 1000;

/// What the server knows while it serves.
struct Served {
  std::string source;
  const std::atomic<bool>& holds;
  const std::atomic<bool>& isFarAway;
  const std::atomic<pid_t>& watched;
  std::atomic<int>& askedByTheWatched;
  const std::atomic<std::int64_t>& agedUntil;
};

/// Where a path of the mount stands behind it. Every call begins with this, so it is here that one
/// is held, and counted.
std::string Behind(const char* path) {
  const fuse_context& call = *fuse_get_context();
  const auto& served = *static_cast<const Served*>(call.private_data);
  if (served.isFarAway) ::usleep(kLongWay);
  while (served.holds) ::usleep(kMomentInHold);
  if (call.pid == served.watched) {
    ++served.askedByTheWatched;
    std::fprintf(stderr, "the watched thread asks for %s\n", path);
  }
  return served.source + path;
}

int ResultOf(int call) { return call == 0 ? 0 : -errno; }

int Descriptor(const fuse_file_info* file) { return static_cast<int>(file->fh); }

void* Begin(fuse_conn_info*, fuse_config* config) {
  config->use_ino = 1;
  // The kernel remembers nothing and asks each time, as it does where a server's time is up.
  config->entry_timeout = 0;
  config->attr_timeout = 0;
  config->negative_timeout = 0;
  config->direct_io = 1;
  return fuse_get_context()->private_data;
}

std::int64_t Nanoseconds(const timespec& time) {
  return time.tv_sec * std::int64_t{1'000'000'000} + time.tv_nsec;
}

void Age(struct stat& status) {
  constexpr time_t kHour = 3600;
  const auto& served = *static_cast<const Served*>(fuse_get_context()->private_data);
  if (Nanoseconds(status.st_ctim) > served.agedUntil) return;
  status.st_ctim.tv_sec -= kHour;
  status.st_mtim.tv_sec -= kHour;
}

int GetAttributes(const char* path, struct stat* status, fuse_file_info*) {
  const int result = ResultOf(::lstat(Behind(path).c_str(), status));
  if (result == 0) Age(*status);
  return result;
}

int MayAccess(const char* path, int how) { return ResultOf(::access(Behind(path).c_str(), how)); }

int OpenFolder(const char* path, fuse_file_info*) {
  Behind(path);
  return 0;
}

int ReadLink(const char* path, char* target, std::size_t size) {
  const ssize_t length = ::readlink(Behind(path).c_str(), target, size - 1);
  if (length < 0) return -errno;
  target[length] = '\0';
  return 0;
}

int MakeFolder(const char* path, mode_t mode) {
  return ResultOf(::mkdir(Behind(path).c_str(), mode));
}

int Unlink(const char* path) { return ResultOf(::unlink(Behind(path).c_str())); }

int RemoveFolder(const char* path) { return ResultOf(::rmdir(Behind(path).c_str())); }

int MakeLink(const char* target, const char* path) {
  return ResultOf(::symlink(target, Behind(path).c_str()));
}

int Rename(const char* from, const char* to, unsigned flags) {
  return ResultOf(::renameat2(AT_FDCWD, Behind(from).c_str(), AT_FDCWD, Behind(to).c_str(), flags));
}

int ChangeMode(const char* path, mode_t mode, fuse_file_info*) {
  return ResultOf(::chmod(Behind(path).c_str(), mode));
}

int ChangeOwner(const char* path, uid_t user, gid_t group, fuse_file_info*) {
  return ResultOf(::lchown(Behind(path).c_str(), user, group));
}

int CutOff(const char* path, off_t size, fuse_file_info*) {
  return ResultOf(::truncate(Behind(path).c_str(), size));
}

int OpenBy(const std::string& path, fuse_file_info* file, mode_t mode) {
  const int opened = ::open(path.c_str(), file->flags | O_CLOEXEC, mode);
  if (opened < 0) return -errno;
  file->fh = static_cast<std::uint64_t>(opened);
  return 0;
}

int Open(const char* path, fuse_file_info* file) { return OpenBy(Behind(path), file, 0); }

int Create(const char* path, mode_t mode, fuse_file_info* file) {
  return OpenBy(Behind(path), file, mode);
}

int Read(const char* path, char* bytes, std::size_t size, off_t offset, fuse_file_info* file) {
  Behind(path);
  const ssize_t got = ::pread(Descriptor(file), bytes, size, offset);
  return got < 0 ? -errno : static_cast<int>(got);
}

int Write(const char* path, const char* bytes, std::size_t size, off_t offset,
          fuse_file_info* file) {
  Behind(path);
  const ssize_t written = ::pwrite(Descriptor(file), bytes, size, offset);
  return written < 0 ? -errno : static_cast<int>(written);
}

int TellSpace(const char* path, struct statvfs* facts) {
  return ResultOf(::statvfs(Behind(path).c_str(), facts));
}

int Close(const char* path, fuse_file_info*) {
  Behind(path);
  return 0;
}

int Release(const char*, fuse_file_info* file) { return ResultOf(::close(Descriptor(file))); }

int Flush(const char* path, int, fuse_file_info* file) {
  Behind(path);
  return ResultOf(::fsync(Descriptor(file)));
}

int FlushFolder(const char* path, int, fuse_file_info*) {
  const int folder = ::open(Behind(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return -errno;
  const int result = ResultOf(::fsync(folder));
  ::close(folder);
  return result;
}

int List(const char* path, void* names, fuse_fill_dir_t add, off_t, fuse_file_info*,
         fuse_readdir_flags) {
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir(Behind(path).c_str()), ::closedir);
  if (!folder) return -errno;
  while (const dirent* const entry = ::readdir(folder.get())) {
    struct stat status = {};
    status.st_ino = entry->d_ino;
    status.st_mode = static_cast<mode_t>(DTTOIF(entry->d_type));
    if (add(names, entry->d_name, &status, 0, fuse_fill_dir_flags{}) != 0) break;
  }
  return 0;
}

int SetTimes(const char* path, const timespec times[2], fuse_file_info*) {
  return ResultOf(::utimensat(AT_FDCWD, Behind(path).c_str(), times, AT_SYMLINK_NOFOLLOW));
}

fuse_operations Operations() {
  fuse_operations calls{};
  calls.init = Begin;
  calls.getattr = GetAttributes;
  calls.access = MayAccess;
  calls.opendir = OpenFolder;
  calls.readlink = ReadLink;
  calls.mkdir = MakeFolder;
  calls.unlink = Unlink;
  calls.rmdir = RemoveFolder;
  calls.symlink = MakeLink;
  calls.rename = Rename;
  calls.chmod = ChangeMode;
  calls.chown = ChangeOwner;
  calls.truncate = CutOff;
  calls.open = Open;
  calls.create = Create;
  calls.read = Read;
  calls.write = Write;
  calls.statfs = TellSpace;
  calls.flush = Close;
  calls.release = Release;
  calls.fsync = Flush;
  calls.fsyncdir = FlushFolder;
  calls.readdir = List;
  calls.utimens = SetTimes;
  return calls;
}

/// Asked of the kernel's list, for whoever was forked by the test is no parent that could wait.
bool IsStopped(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string line;
  std::getline(file, line);
  return line.find(") T ") != std::string::npos;
}

void Unmount(const std::string& point) {
  if (::umount2(point.c_str(), MNT_DETACH) == 0) return;
  // A plain user may have it done by this program alone.
  std::array<std::string, 4> words{"fusermount3", "-u", "-z", point};
  std::array<char*, 5> arguments{words[0].data(), words[1].data(), words[2].data(), words[3].data(),
                                 nullptr};
  pid_t program = -1;
  int status = -1;
  if (::posix_spawnp(&program, arguments[0], nullptr, nullptr, arguments.data(), environ) == 0) {
    ::waitpid(program, &status, 0);
  }
  EXPECT_EQ(status, 0) << point << " stays mounted";
}

}  // namespace

StallingMount::StallingMount(std::string source, std::string point)
    : source_(std::move(source)), point_(std::move(point)), common_(MakeCommon()) {
  if (!StartServer()) fault_ = "nothing can be mounted here by FUSE";
}

bool StallingMount::StartServer() {
  std::array<int, 2> ready{};
  if (::pipe2(ready.data(), O_CLOEXEC) != 0) std::abort();
  server_ = ::fork();
  if (server_ == 0) Serve(ready[1]);
  EXPECT_GT(server_, 0) << "no server can be forked";
  ::close(ready[1]);
  char answer = 0;
  const bool serves = ::read(ready[0], &answer, 1) == 1;
  ::close(ready[0]);
  return serves;
}

StallingMount::~StallingMount() {
  if (server_ > 0) Kill();
  if (fault_.empty()) Unmount(point_);
  ::munmap(common_, sizeof *common_);
}

StallingMount::Common* StallingMount::MakeCommon() {
  void* const memory =
      ::mmap(nullptr, sizeof(Common), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) std::abort();
  return new (memory) Common;
}

void StallingMount::Serve(int ready) const {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  std::string program = "stalling_mount";
  std::array<char*, 2> arguments{program.data(), nullptr};
  fuse_args options = FUSE_ARGS_INIT(1, arguments.data());
  const fuse_operations calls = Operations();
  Served served{.source = source_,
                .holds = common_->holds,
                .isFarAway = common_->isFarAway,
                .watched = common_->watched,
                .askedByTheWatched = common_->askedByTheWatched,
                .agedUntil = common_->agedUntil};
  fuse* const server = fuse_new(&options, &calls, sizeof calls, &served);
  const bool mounted = server && fuse_mount(server, point_.c_str()) == 0;
  if (!mounted || ::write(ready, "!", 1) != 1) ::_exit(1);
  // One call after the other, so whoever is held or stopped holds up all.
  ::_exit(fuse_loop(server) == 0 ? 0 : 1);
}

bool StallingMount::Send(int signal) const {
  const bool sent = SendSignal(server_, signal);
  EXPECT_TRUE(sent) << "no server of " << point_ << " can be sent the signal " << signal;
  return sent;
}

void StallingMount::Stop() const {
  if (!Send(SIGSTOP)) return;
  EXPECT_TRUE(Comes([this] { return IsStopped(server_); })) << "the server does not stop";
}

void StallingMount::Hold() const {
  EXPECT_GT(server_, 0) << "nobody serves " << point_;
  common_->holds = true;
}

void StallingMount::BeFarAway() const { common_->isFarAway = true; }

void StallingMount::GoOn() const {
  common_->holds = false;
  Send(SIGCONT);
}

void StallingMount::LetAnHourPass() const {
  // The clock that stamps files.
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
  common_->agedUntil = Nanoseconds(now);
}

void StallingMount::Watch(pid_t thread) const { common_->watched = thread; }

int StallingMount::AskedByTheWatched() const { return common_->askedByTheWatched; }

void StallingMount::Kill() {
  if (!Send(SIGKILL)) return;
  ::waitpid(server_, nullptr, 0);
  server_ = -1;
}

void StallingMount::ComeBack() {
  Unmount(point_);
  common_->holds = false;
  EXPECT_TRUE(StartServer()) << point_ << " does not come back";
}

}  // namespace tavlo::test
