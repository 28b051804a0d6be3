#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <sstream>
#include <string>

#include "kinds.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

/// The extensions in the first column of the guide's table of formats.
std::set<std::string> ExtensionsInTheGuide() {
  const std::string guide = ReadFile(TAVLO_FORMATS_PAGE);
  const std::size_t begin = guide.find("\n| Extension | Kinds |\n|---|---|\n");
  std::istringstream lines(begin == guide.npos ? "" : guide.substr(begin + 1));
  std::set<std::string> extensions;
  std::string line;
  std::getline(lines, line);
  std::getline(lines, line);
  while (std::getline(lines, line) && line.starts_with("| ")) {
    std::istringstream cell(line.substr(2, line.find(" |", 1) - 2));
    for (std::string word; std::getline(cell >> std::ws, word, ',');) extensions.insert(word);
  }
  return extensions;
}

TEST(UserGuide, ListsTheExtensionOfEveryKindThatIsPlayedHereAndNoOther) {
  std::set<std::string> played;
  for (const Kind& kind : AllKinds()) {
    played.insert(std::filesystem::path(kind.file).extension().string().substr(1));
  }
  EXPECT_EQ(ExtensionsInTheGuide(), played);
}

}  // namespace
}  // namespace tavlo::test
