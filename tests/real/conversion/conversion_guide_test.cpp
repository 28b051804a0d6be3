#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <string>

namespace tavlo::test {
namespace {

/// The figures that a pattern finds in the lines of a file.
std::multiset<int> Figures(const char* path, const std::regex& pattern) {
  std::ifstream file(path);
  std::multiset<int> figures;
  std::smatch match;
  for (std::string line; std::getline(file, line);) {
    if (std::regex_search(line, match, pattern)) figures.insert(std::stoi(match[1]));
  }
  return figures;
}

TEST(ConversionGuide, TellsWhatEachNumberMeans) {
  auto codes = Figures(TAVLO_CONVERSION_CODES, std::regex(R"(^  \w+ = (\d+),)"));
  EXPECT_EQ(codes.erase(0), 1U);
  EXPECT_EQ(codes.erase(5), 1U);
  EXPECT_FALSE(codes.empty());
  EXPECT_EQ(Figures(TAVLO_FORMATS_PAGE, std::regex(R"(^\| \*\*(\d+)\*\* \| )")), codes);
}

}  // namespace
}  // namespace tavlo::test
