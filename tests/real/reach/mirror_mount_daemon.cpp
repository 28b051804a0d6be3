#define FUSE_USE_VERSION 31

#include <dirent.h>
#include <fcntl.h>
#include <fuse.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string>

/// Shows a folder at another place: mirror_mount_daemon FOLDER MOUNT. It stays in the foreground,
/// so whoever starts it may stop it, let it go on and kill it. Nothing is cached, so each call on
/// the mount needs its answer.

namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

std::string Real(const char* path) {
  return *static_cast<const std::string*>(fuse_get_context()->private_data) + path;
}

/// What fuse takes for the result of a call that gives -1 and errno.
int Told(long returned) { return returned < 0 ? -errno : static_cast<int>(returned); }

int HandleOf(const fuse_file_info* file) { return static_cast<int>(file->fh); }

void* Begin(fuse_conn_info*, fuse_config* config) {
  config->entry_timeout = 0;
  config->attr_timeout = 0;
  config->negative_timeout = 0;
  config->use_ino = 1;
  return fuse_get_context()->private_data;
}

int GetAttributes(const char* path, struct stat* status, fuse_file_info*) {
  return Told(::lstat(Real(path).c_str(), status));
}

int ReadLink(const char* path, char* target, std::size_t room) {
  const ssize_t length = ::readlink(Real(path).c_str(), target, room - 1);
  if (length < 0) return -errno;
  target[length] = '\0';
  return 0;
}

int ReadFolder(const char* path, void* names, fuse_fill_dir_t fill, off_t, fuse_file_info*,
               fuse_readdir_flags) {
  const std::unique_ptr<DIR, CloseFolder> folder(::opendir(Real(path).c_str()));
  if (!folder) return -errno;
  while (const dirent* const entry = ::readdir(folder.get())) {
    struct stat status {};
    status.st_ino = entry->d_ino;
    status.st_mode = DTTOIF(entry->d_type);
    if (fill(names, entry->d_name, &status, 0, fuse_fill_dir_flags{}) != 0) break;
  }
  return 0;
}

int Open(const char* path, fuse_file_info* file) {
  const int handle = ::open(Real(path).c_str(), file->flags | O_CLOEXEC);
  if (handle < 0) return -errno;
  file->fh = static_cast<std::uint64_t>(handle);
  file->direct_io = 1;
  return 0;
}

int Create(const char* path, mode_t mode, fuse_file_info* file) {
  const int handle = ::open(Real(path).c_str(), file->flags | O_CLOEXEC, mode);
  if (handle < 0) return -errno;
  file->fh = static_cast<std::uint64_t>(handle);
  file->direct_io = 1;
  return 0;
}

int Read(const char*, char* bytes, std::size_t count, off_t offset, fuse_file_info* file) {
  return Told(::pread(HandleOf(file), bytes, count, offset));
}

int Write(const char*, const char* bytes, std::size_t count, off_t offset, fuse_file_info* file) {
  return Told(::pwrite(HandleOf(file), bytes, count, offset));
}

int Release(const char*, fuse_file_info* file) { return Told(::close(HandleOf(file))); }

int Flush(const char*, int, fuse_file_info* file) { return Told(::fsync(HandleOf(file))); }

int FlushFolder(const char*, int, fuse_file_info*) { return 0; }

int Remove(const char* path) { return Told(::unlink(Real(path).c_str())); }

int MakeFolder(const char* path, mode_t mode) { return Told(::mkdir(Real(path).c_str(), mode)); }

int RemoveFolder(const char* path) { return Told(::rmdir(Real(path).c_str())); }

int MakeLink(const char* target, const char* path) {
  return Told(::symlink(target, Real(path).c_str()));
}

int Rename(const char* from, const char* to, unsigned flags) {
  return Told(::renameat2(AT_FDCWD, Real(from).c_str(), AT_FDCWD, Real(to).c_str(), flags));
}

int SetMode(const char* path, mode_t mode, fuse_file_info*) {
  return Told(::chmod(Real(path).c_str(), mode));
}

int SetOwner(const char* path, uid_t user, gid_t group, fuse_file_info*) {
  return Told(::lchown(Real(path).c_str(), user, group));
}

int SetSize(const char* path, off_t size, fuse_file_info*) {
  return Told(::truncate(Real(path).c_str(), size));
}

int SetTimes(const char* path, const timespec* times, fuse_file_info*) {
  return Told(::utimensat(AT_FDCWD, Real(path).c_str(), times, AT_SYMLINK_NOFOLLOW));
}

int GetSpace(const char* path, struct statvfs* space) {
  return Told(::statvfs(Real(path).c_str(), space));
}

fuse_operations Operations() {
  fuse_operations calls{};
  calls.init = Begin;
  calls.getattr = GetAttributes;
  calls.readlink = ReadLink;
  calls.readdir = ReadFolder;
  calls.open = Open;
  calls.create = Create;
  calls.read = Read;
  calls.write = Write;
  calls.release = Release;
  calls.fsync = Flush;
  calls.fsyncdir = FlushFolder;
  calls.unlink = Remove;
  calls.mkdir = MakeFolder;
  calls.rmdir = RemoveFolder;
  calls.symlink = MakeLink;
  calls.rename = Rename;
  calls.chmod = SetMode;
  calls.chown = SetOwner;
  calls.truncate = SetSize;
  calls.utimens = SetTimes;
  calls.statfs = GetSpace;
  return calls;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) {
    std::fputs("usage: mirror_mount_daemon FOLDER MOUNT\n", stderr);
    return 2;
  }
  std::string folder = arguments[1];
  std::string foreground = "-f";
  // More than one call at a time is not needed, and one stopped thread stops all.
  std::string one = "-s";
  std::array<char*, 5> options{arguments[0], foreground.data(), one.data(), arguments[2], nullptr};
  const fuse_operations calls = Operations();
  return fuse_main(4, options.data(), &calls, &folder);
}
