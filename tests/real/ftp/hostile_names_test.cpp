#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "ftp/ftp_bench.h"
#include "ftp/landing_name.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

constexpr unsigned kSeed = 140'614;
constexpr int kNames = 1'000;
constexpr int kNamesOfAListing = 40;

constexpr std::string_view kNothing("\0", 1);
/// What names are made of that lead somewhere, hide, break a line, or say something to a terminal,
/// a shell or a URL.
constexpr std::string_view kPieces[] = {
    "..",      ".",         "/",     "\\",       "../",
    "..\\",    "C:",        "z:",    "\n",       "\r",
    "\t",      "~",         "-",     "*",        "?",
    "\x1b[2J", "%2e%2e%2f", "%00",   "|",        "`",
    "$(",      "'",         "\"",    " ",        "a",
    "doc",     ".wav",      ".eU2",  "..",       ";type=a",
    "\x7f",    "\x80",      "\xff",  "\xc3\xbc", "\xc2\x85",
    "file://", "outside",   "/etc/", kNothing,   "../outside/kept.wav",
};

class NameMaker {
 public:
  /// Some names lead to that folder.
  NameMaker(unsigned seed, const std::string& folder)
      : random_(seed), pieces_(std::begin(kPieces), std::end(kPieces)) {
    pieces_.push_back(folder + "/");
    pieces_.push_back(folder + "/outside/");
  }

  std::string Next() {
    std::string name;
    const auto count = random_() % 5 + 1;
    for (unsigned long i = 0; i < count; ++i) name += pieces_[random_() % pieces_.size()];
    if (random_() % 20 == 0) name.append(random_() % 600, "ab\x80/"[random_() % 4]);
    return name;
  }
  unsigned long Draw() { return random_(); }

 private:
  std::mt19937 random_;
  std::vector<std::string> pieces_;
};

/// Everything but what stands in the landing folder, with its rights, length, time and identity.
std::map<std::string, std::string> Surroundings(const FtpBench& bench) {
  std::map<std::string, std::string> all;
  for (auto entry = fs::recursive_directory_iterator(bench.folder.Path());
       entry != fs::recursive_directory_iterator(); ++entry) {
    const std::string path = entry->path();
    if (path == bench.Landing()) {
      entry.disable_recursion_pending();
      all[path] = "the landing folder";
      continue;
    }
    struct stat facts {};
    ::lstat(path.c_str(), &facts);
    all[path] = std::to_string(facts.st_mode) + " " + std::to_string(facts.st_size) + " " +
                std::to_string(facts.st_mtim.tv_sec) + "." + std::to_string(facts.st_mtim.tv_nsec) +
                " " + std::to_string(facts.st_ino);
  }
  return all;
}

/// A listing and what its server says of each of its names.
struct Offer {
  std::string listing;
  std::vector<std::string> names;
};

Offer MakeOffer(NameMaker& maker) {
  Offer offer;
  for (int i = 0; i < kNamesOfAListing; ++i) {
    offer.names.push_back(maker.Next());
    offer.listing += offer.names.back() + "\r\n";
  }
  // The last line may be cut.
  if (maker.Draw() % 4 == 0) offer.listing.pop_back();
  return offer;
}

/// Has every file there is and lies about it now and then.
Manners Liar(const Offer& offer, unsigned long lie) {
  Manners manners{.listing = offer.listing};
  manners.instead = [lie](Conversation& guest, const Command& command) {
    const auto kind = (lie + command.argument.size()) % 7;
    if (command.verb == "SIZE" && kind == 0) return guest.Say("213 ../../7\r\n");
    if (command.verb == "SIZE" && kind == 1) return guest.Say("550 /etc/passwd\r\n");
    if (command.verb == "SIZE") {
      return guest.Say("213 " + std::to_string(command.argument.size()) + "\r\n");
    }
    if (command.verb == "LIST") {
      guest.Transfer("-rw-r--r-- 1 ../.. " + command.argument + " 99 " + command.argument + "\r\n");
      return true;
    }
    if (command.verb != "RETR") return false;
    guest.Transfer(command.argument);
    return true;
  };
  return manners;
}

/// Gets one name as the rules do, and takes what landed away.
void GetAsTheRulesDo(FtpBench& bench, const ScriptedServer& server, const std::string& name) {
  const ftp::LandingName landing = ftp::LandingNameOf(name);
  if (landing.name.empty()) {
    // The rules do not ask for it; whoever does is refused.
    const int asked = server.CountHeard("RETR");
    ASSERT_LT(bench.Client().fceGetFile(name, "refused"), 0);
    ASSERT_EQ(server.CountHeard("RETR"), asked);
    ASSERT_TRUE(bench.LandedNames().empty());
    return;
  }
  bench.LengthOf(name);
  ASSERT_EQ(bench.Get(name, landing.name), 0) << landing.why;
  ASSERT_EQ(bench.LandedNames(), std::vector<std::string>{landing.name});
  ASSERT_EQ(bench.Landed(landing.name), name);
  fs::remove(bench.Landing() + "/" + landing.name);
}

TEST(HostileNames, NothingOutsideTheLandingFolderIsCreatedOrChanged) {
  FtpBench bench;
  fs::create_directory(bench.folder / "outside");
  bench.folder.Write("outside/kept.wav", "kept");
  bench.folder.Write("kept.wav", "kept");
  NameMaker maker(kSeed, bench.folder.Path());
  const auto before = Surroundings(bench);
  int listed = 0;
  int refused = 0;
  for (int round = 0; listed < kNames; ++round) {
    SCOPED_TRACE("seed " + std::to_string(kSeed) + ", round " + std::to_string(round));
    const Offer offer = MakeOffer(maker);
    const ScriptedServer server(Liar(offer, maker.Draw()));
    ASSERT_EQ(bench.Connect(server), 0);
    const std::vector<std::string> names = bench.List();
    ASSERT_TRUE(bench.Listing.starts_with(offer.listing));
    for (const std::string& name : names) {
      SCOPED_TRACE(testing::PrintToString(name));
      ASSERT_NO_FATAL_FAILURE(GetAsTheRulesDo(bench, server, name));
      if (ftp::LandingNameOf(name).name.empty()) ++refused;
    }
    listed += static_cast<int>(names.size());
    bench.Client().fceClose();
  }
  EXPECT_EQ(Surroundings(bench), before);
  EXPECT_GT(refused, kNames / 50);
  EXPECT_LT(refused, kNames / 2);
}

TEST(HostileNames, NamesThatWouldBreakALineAreListedAsTheyAre) {
  const std::string listing("a\nb\r\n\0c\r\n\x1b[2J\r\n../d\r\n.e\r\nC:f\r\n", 30);
  const ScriptedServer server({.listing = listing});
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  EXPECT_EQ(bench.List(), (std::vector<std::string>{"a\nb", std::string("\0c", 2), "\x1b[2J",
                                                    "../d", ".e", "C:f"}));
}

}  // namespace
}  // namespace tavlo::test
