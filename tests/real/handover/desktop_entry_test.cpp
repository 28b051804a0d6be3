#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "formats/kinds.h"

namespace tavlo::test {
namespace {

std::vector<std::string> LinesOf(const std::string& path) {
  std::ifstream in(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts{""};
  for (const char next : text) {
    if (next == separator) {
      parts.emplace_back();
    } else {
      parts.back() += next;
    }
  }
  return parts;
}

/// What the desktop is told of the program.
std::string Entry(const std::string& key) {
  for (const std::string& line : LinesOf(TAVLO_DESKTOP_ENTRY)) {
    if (line.starts_with(key + "=")) return line.substr(key.size() + 1);
  }
  return {};
}

/// The kinds of sound that the desktop takes files for by the ends of their names.
std::map<std::string, std::set<std::string>> SoundsOfTheDesktop() {
  std::map<std::string, std::set<std::string>> sounds;
  for (const std::string& line : LinesOf("/usr/share/mime/globs2")) {
    const std::vector<std::string> parts = Split(line, ':');
    if (parts.size() < 3 || !parts[1].starts_with("audio/") || !parts[2].starts_with("*."))
      continue;
    sounds[parts[2].substr(2)].insert(parts[1]);
  }
  return sounds;
}

TEST(DesktopEntry, HandsOverAnyNumberOfFilesAsTheyAre) { EXPECT_EQ(Entry("Exec"), "tavlodeck %F"); }

TEST(DesktopEntry, OffersTheDeckForEachKindThatPlaysAndTheDesktopKnows) {
  const auto sounds = SoundsOfTheDesktop();
  if (sounds.empty()) GTEST_SKIP() << "shared-mime-info is not installed";
  const std::vector<std::string> offered = Split(Entry("MimeType"), ';');
  const std::set<std::string> all(offered.begin(), offered.end());
  int known = 0;
  for (const Kind& kind : AllKinds()) {
    const auto found = sounds.find(Split(kind.file, '.').back());
    if (found == sounds.end()) continue;
    ++known;
    bool isOffered = false;
    for (const std::string& type : found->second) isOffered |= all.contains(type);
    EXPECT_TRUE(isOffered) << kind.file << ", " << *found->second.begin();
  }
  EXPECT_GT(known, 20);
}

TEST(DesktopEntry, OffersItForSoundsAlone) {
  const std::vector<std::string> offered = Split(Entry("MimeType"), ';');
  ASSERT_GT(offered.size(), 1u);
  EXPECT_EQ(offered.back(), "") << "the list ends with its separator";
  for (std::size_t i = 0; i + 1 < offered.size(); ++i) {
    EXPECT_TRUE(offered[i].starts_with("audio/")) << offered[i];
  }
}

}  // namespace
}  // namespace tavlo::test
