#include "platform/sqlite/settings_failures.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <system_error>

#include "platform/disk/open_plain_file.h"
#include "platform/sqlite/private_file.h"

namespace tavlo::platform {
namespace {

/// First bytes of a file that Access made.
constexpr std::string_view kAccessMark{"\0\1\0\0Standard Jet DB", 19};

/// Settings take a thousandth of this. Whatever is larger is something else, and checking it would
/// take long.
constexpr std::uintmax_t kMostBytes = std::uintmax_t{256} * 1024 * 1024;

/// A folder without its settings is never filled up again, so it does not help to move the file
/// alone away.
constexpr std::string_view kRemedy =
    " Put a copy of it back, or rename its folder to begin with a new installation.";

std::string HeldText(const std::string& path) {
  return SettingsSentence(path, "is held by another program. Close that program and try again.");
}

std::string LocklessText(const std::string& path) {
  return SettingsSentence(path,
                          "stands on a disk that has no file locks, as a network share may. Have "
                          "the share mounted with locks, or keep the home folder on a disk of this "
                          "machine.");
}

/// Whether the disk refuses locks as such.
bool HasNoLocks(const std::string& path) {
  const FileHandle file = OpenPlainFile(path, Links::Followed);
  if (!file) return false;
  struct flock lock = {};
  lock.l_type = F_RDLCK;
  lock.l_whence = SEEK_SET;
  return ::fcntl(file.Get(), F_SETLK, &lock) != 0 &&
         (errno == ENOLCK || errno == EOPNOTSUPP || errno == ENOSYS);
}

/// The engine opens whatever stands beside a database under its names: a pipe there would keep the
/// program waiting for good, and through a link it would write into another file.
std::string BesideFault(const std::string& path) {
  std::error_code failed;
  const std::string real = std::filesystem::canonical(path, failed).string();
  for (const char* ending : kBesideEndings) {
    using Type = std::filesystem::file_type;
    const Type type = std::filesystem::symlink_status(real + ending, failed).type();
    if (type == Type::regular || type == Type::not_found) continue;
    return SettingsSentence(path, "can not be used: " + real + ending + " is no file.");
  }
  return {};
}

}  // namespace

std::string SettingsSentence(const std::string& path, std::string_view rest) {
  return "The settings database " + path + " " + std::string(rest);
}

std::string DamagedText(const std::string& path, std::string_view detail) {
  return SettingsSentence(path, "is damaged (" + std::string(detail) + ")." + std::string(kRemedy));
}

std::string RefusedText(const std::string& path) {
  return SettingsSentence(path,
                          "can not be read and written. Check the permissions of the file and of "
                          "its folder.");
}

std::string FailureText(const std::string& path, StepResult result, const std::string& message) {
  switch (result) {
    case StepResult::Busy:
      return HeldText(path);
    case StepResult::NotDatabase:
      return DamagedText(path, "it is no database");
    case StepResult::Damaged:
      return DamagedText(path, "parts of it are missing or wrong");
    case StepResult::NoSpace:
      return SettingsSentence(path, "can not be written: the disk is full.");
    default:
      return SettingsSentence(path, "can not be used: " + message + ".");
  }
}

std::string HoldFailureText(const std::string& path, StepResult result,
                            const std::string& message) {
  return HasNoLocks(path) ? LocklessText(path) : FailureText(path, result, message);
}

std::string ReachFault(const std::string& path, int wanted) {
  std::error_code failed;
  const auto status = std::filesystem::status(path, failed);
  if (status.type() == std::filesystem::file_type::not_found) {
    return SettingsSentence(path, "does not exist." + std::string(kRemedy));
  }
  if (failed) return RefusedText(path);
  if (status.type() != std::filesystem::file_type::regular) {
    return SettingsSentence(path, "is no file.");
  }
  if (std::filesystem::file_size(path, failed) > kMostBytes) {
    return SettingsSentence(path, "is far larger than settings are." + std::string(kRemedy));
  }
  if (eaccess(path.c_str(), wanted) != 0) return RefusedText(path);
  return BesideFault(path);
}

bool IsAccessFile(const std::string& path) {
  std::array<char, kAccessMark.size()> first{};
  const FileHandle file = OpenPlainFile(path, Links::Followed);
  const bool whole = file && ::pread(file.Get(), first.data(), first.size(), 0) ==
                                 static_cast<ssize_t>(first.size());
  return whole && std::string_view(first.data(), first.size()) == kAccessMark;
}

}  // namespace tavlo::platform
