#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace tavlo::test {

/// A folder of a test's own, removed with all that it holds. Anybody may enter it.
class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::string& where = "/tmp") : path_(where + "/tavlo-XXXXXX") {
    if (::mkdtemp(path_.data()) == nullptr) std::abort();
    std::filesystem::permissions(path_, std::filesystem::perms(0755));
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::string& Path() const { return path_; }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

  /// Writes a file and returns its full path.
  std::string Write(const std::string& name, const std::string& contents) const {
    std::ofstream(*this / name, std::ios::binary) << contents;
    return *this / name;
  }
  std::string Read(const std::string& name) const {
    std::ostringstream contents;
    contents << std::ifstream(*this / name, std::ios::binary).rdbuf();
    return contents.str();
  }

 private:
  std::string path_;
};

}  // namespace tavlo::test
