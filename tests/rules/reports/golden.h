#pragma once

#include <fstream>
#include <iterator>
#include <string>

namespace tavlo::test {

/// A report as it must come out, to the byte.
inline std::string Golden(const std::string& name) {
  std::ifstream in(TAVLO_REPORT_GOLDENS "/" + name + ".txt", std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace tavlo::test
