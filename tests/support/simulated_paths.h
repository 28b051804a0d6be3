#pragma once

#include <string>

/// Full paths of a simulated disk, without a separator at their end.
namespace tavlo::test {

inline std::string FolderOf(const std::string& absolute) {
  const auto slash = absolute.rfind('/');
  return slash == 0 ? "/" : absolute.substr(0, slash);
}

inline std::string NameOf(const std::string& absolute) {
  return absolute.substr(absolute.rfind('/') + 1);
}

/// The folder itself is not below it.
inline bool IsBelow(const std::string& absolute, const std::string& folder) {
  return folder == "/" ? absolute != "/" : absolute.starts_with(folder + "/");
}

}  // namespace tavlo::test
