#include "ftp/landing_name.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace tavlo::test {
namespace {

using ftp::LandingName;
using ftp::LandingNameOf;

void ExpectLanding(std::string_view serverName, std::string_view name, std::string_view why) {
  const LandingName landing = LandingNameOf(serverName);
  EXPECT_EQ(landing.name, name);
  EXPECT_EQ(landing.why, why);
}

std::string Times(std::size_t count, std::string_view text) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

TEST(LandingName, OrdinaryNameIsTheServersOwn) {
  for (const std::string name :
       {"0030917.eU2", "a.wav", "Brown 3 9 2004.wav", "x", "#1;type=a.mp3", "100%25.wav", "-l", "~",
        "ab:c.wav", "1:2.wav", "trailing.", "B\xc3\xbcro.dS2", "B\xfcro.wav", "a..b", " "}) {
    ExpectLanding(name, name, "");
  }
}

TEST(LandingName, SeparatorsBecomeUnderlines) {
  const char* const why = "its name has a separator in it";
  ExpectLanding("in/a.wav", "in_a.wav", why);
  ExpectLanding("in\\a.wav", "in_a.wav", why);
  ExpectLanding("/etc/passwd", "_etc_passwd", why);
  ExpectLanding("../../a.wav", "_._.._a.wav", why);
  ExpectLanding("a/..", "a_..", why);
  ExpectLanding("/", "_", why);
  ExpectLanding("C:\\in\\a.wav", "C__in_a.wav", why);
}

TEST(LandingName, LeadingDotBecomesAnUnderline) {
  const char* const why = "its name begins with a dot";
  ExpectLanding(".", "_", why);
  ExpectLanding("..", "_.", why);
  ExpectLanding(".hidden.wav", "_hidden.wav", why);
  ExpectLanding("...", "_..", why);
}

TEST(LandingName, ControlCharactersBecomeUnderlines) {
  const char* const why = "its name has a control character in it";
  ExpectLanding("a\tb.wav", "a_b.wav", why);
  ExpectLanding("a\x1b[2J.wav", "a_[2J.wav", why);
  ExpectLanding("a\x7f.wav", "a_.wav", why);
  ExpectLanding("\x01", "_", why);
}

TEST(LandingName, ControlCharactersOfTheSecondRowAreSomeToo) {
  const char* const why = "its name has a control character in it";
  ExpectLanding(
      "a\xc2\x85"
      "b.wav",
      "a__b.wav", why);
  ExpectLanding(
      "a\xc2\x9b"
      "2J.wav",
      "a__2J.wav", why);
  // A sign beside them, and a byte that is one of them only in no known text.
  ExpectLanding("a\xc2\xa7.wav", "a\xc2\xa7.wav", "");
  ExpectLanding("a\x85.wav", "a\x85.wav", "");
}

TEST(LandingName, DriveLetterLosesItsColon) {
  const char* const why = "its name begins with a drive letter";
  ExpectLanding("c:", "c_", why);
  ExpectLanding("C:a.wav", "C_a.wav", why);
  ExpectLanding("z:b:c.wav", "z_b:c.wav", why);
}

TEST(LandingName, NameThatADiskTakesStaysAndOneThatIsLongerIsShortened) {
  const std::string longest = Times(251, "a") + ".wav";
  ExpectLanding(longest, longest, "");
  ExpectLanding(Times(252, "a") + ".wav", Times(196, "a") + ".wav", "its name is too long");
}

TEST(LandingName, ShortenedNameIsCutBetweenCharacters) {
  ExpectLanding("a" + Times(130, "\xc3\xbc") + ".wav", "a" + Times(97, "\xc3\xbc") + ".wav",
                "its name is too long");
  ExpectLanding(Times(65, "\xf0\x9f\x8e\xb5") + ".wav", Times(49, "\xf0\x9f\x8e\xb5") + ".wav",
                "its name is too long");
}

TEST(LandingName, EndingThatDecidesNothingIsCutOff) {
  EXPECT_EQ(LandingNameOf("a." + Times(300, "b")).name, "a." + Times(198, "b"));
  EXPECT_EQ(LandingNameOf(Times(300, "b")).name, Times(200, "b"));
}

TEST(LandingName, ShortenedNameOfBytesThatAreNoTextKeepsMostOfThem) {
  const LandingName landing = LandingNameOf(Times(300, "\x80") + ".wav");
  EXPECT_GE(landing.name.size(), 180U);
  EXPECT_EQ(landing.name.front(), '\x80');
  EXPECT_TRUE(landing.name.ends_with("\x80.wav"));
}

TEST(LandingName, LineBreakZeroByteOrNoCharacterIsRefused) {
  ExpectLanding("", "", "its name has no character");
  for (const std::string_view name : {"a\r\nDELE b", "\n", "a\r", "\ra.wav"}) {
    ExpectLanding(name, "", "its name has a line break in it");
  }
  ExpectLanding(std::string_view("a.wav\0.exe", 10), "", "its name has a zero byte in it");
  ExpectLanding(std::string_view("\0", 1), "", "its name has a zero byte in it");
  ExpectLanding(std::string_view("/\0\n", 3), "", "its name has a line break in it");
}

TEST(LandingName, FirstOfSeveralReasonsIsNamed) {
  ExpectLanding("../\ta", "_.__a", "its name has a separator in it");
  ExpectLanding(".\ta", "__a", "its name begins with a dot");
  ExpectLanding("c:\ta", "c__a", "its name has a control character in it");
}

/// What leads out of a folder, hides in it or ends the name before its end.
bool DoesHarm(const std::string& name) {
  if (name.front() == '.' || name.size() > 255) return true;
  for (const char character : name) {
    if (character == '/' || character == '\\') return true;
    if (static_cast<unsigned char>(character) < 0x20 || character == 0x7f) return true;
  }
  return name.size() >= 2 && name[1] == ':' && std::isalpha(static_cast<unsigned char>(name[0]));
}

TEST(LandingName, NoNameOfAServerDoesHarmWhereItLands) {
  std::mt19937 random(6143);
  const std::string_view pieces[] = {"..", ".",    "/",    "\\",       "C:",   ":",    "a",
                                     "\t", "\x80", "\xc2", "\xc3\xbc", ".wav", "\x7f", " "};
  int harmless = 0;
  for (int run = 0; run < 20'000; ++run) {
    std::string name;
    const auto length = random() % (run % 10 == 0 ? 400 : 9) + 1;
    for (unsigned long i = 0; i < length; ++i) name += pieces[random() % std::size(pieces)];
    const LandingName landing = LandingNameOf(name);
    ASSERT_FALSE(landing.name.empty()) << name;
    ASSERT_FALSE(DoesHarm(landing.name)) << name << " lands as " << landing.name;
    ASSERT_EQ(landing.name == name, landing.why.empty()) << name;
    if (landing.name == name) ++harmless;
  }
  EXPECT_GT(harmless, 1'000);
  EXPECT_LT(harmless, 19'000);
}

}  // namespace
}  // namespace tavlo::test
