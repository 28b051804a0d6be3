#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "support/screen_user.h"
#include "support/silent_bus.h"
#include "support/started_program.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

/// Everything around the program that one start differs in.
struct Around {
  const char* name;
  std::map<std::string, std::optional<std::string>> environment;
  /// The home, below a folder of the test's own.
  std::string home = "home";
  /// Said on the standard error, each in a line.
  std::vector<std::string> says;
  bool newFilesForTheOwnerOnly = false;
};

std::ostream& operator<<(std::ostream& out, const Around& around) { return out << around.name; }

/// A start of the program with surroundings that are odd but no reason to refuse.
struct OddSurroundings : testing::TestWithParam<Around>, ScreenUser {
  /// In a value, "<here>" is the folder of the test.
  std::string Here(std::string value) const {
    const std::string mark = "<here>";
    const auto at = value.find(mark);
    return at == value.npos ? value : value.replace(at, mark.size(), folder.Path());
  }

  void Prepare(const std::string& home) {
    fs::create_directories(home);
    folder.Write("no fonts", "<fontconfig></fontconfig>");
    for (const auto& [name, value] : GetParam().environment) {
      surroundings.environment[name] = value ? std::optional(Here(*value)) : std::nullopt;
      if (name == "LC_ALL" && *value != "C") MakeLocale(*value);
    }
    surroundings.errorsPath = folder / "errors";
    if (GetParam().newFilesForTheOwnerOnly) {
      surroundings.prepare = [] {
        ::umask(077);
        return true;
      };
    }
  }

  /// Where the system can not make the locale its name alone stands in the environment, as it does
  /// on a desktop that names one that was never installed.
  void MakeLocale(const std::string& name) {
    const std::string language = name.substr(0, name.find('.'));
    static_cast<void>(std::system(("localedef --no-archive -i " + language + " -f UTF-8 " +
                                   (folder / name) + " >/dev/null 2>&1")
                                      .c_str()));
    surroundings.environment["LOCPATH"] = folder.Path();
  }

  TemporaryFolder folder;
  Surroundings surroundings;
};

TEST_P(OddSurroundings, LetTheProgramStartAndEnd) {
  const std::string home = folder / GetParam().home;
  Prepare(home);
  const SilentBus silent(folder / "silent");
  StartedProgram program(TAVLO_PROGRAM, home, surroundings);
  PassSplash();
  Answer("Tavlo Deck - Sound Card");
  Exit();
  EXPECT_EQ(program.ExitStatus(), 0);
  EXPECT_TRUE(fs::is_regular_file(home + "/Lyrane/TavloDeck/Lyrane_Tavlo_Deck.mdb"));
  const std::string errors = folder.Read("errors");
  for (const std::string& line : GetParam().says) {
    EXPECT_NE(errors.find("tavlodeck: " + line + "\n"), errors.npos) << errors;
  }
}

const Around kSurroundings[] = {
    {.name = "BusesThatHang",
     .environment = {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=<here>/silent"},
                     {"AT_SPI_BUS_ADDRESS", "unix:path=<here>/silent"}},
     .says = {"The desktop's session bus does not answer; going on without it.",
              "The bus of screen readers does not answer; going on without it."}},
    {.name = "BusesThatAreNotThereATurkishDesktopAndABlankInTheHome",
     .environment = {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=<here>/gone"},
                     {"AT_SPI_BUS_ADDRESS", "unix:path=<here>/gone"},
                     {"LC_ALL", "tr_TR.UTF-8"}},
     .home = "bir ev, i\xCC\x87\xC4\xB1 \xFF"},
    {.name = "BusesWithoutSenseNoFontsNoIconsAnArabicDesktopAndALongHome",
     .environment = {{"DBUS_SESSION_BUS_ADDRESS", "no address at all"},
                     {"AT_SPI_BUS_ADDRESS", ";,=:%"},
                     {"FONTCONFIG_FILE", "<here>/no fonts"},
                     {"XDG_DATA_DIRS", "<here>"},
                     {"LC_ALL", "ar_EG.UTF-8"}},
     .home = std::string(150, 'h') + "/" + std::string(150, 'o'),
     .says = {"There are no fonts, so nothing that the deck writes can be read."}},
    {.name = "NothingNamedAndNewFilesForTheOwnerOnly",
     .environment = {{"DBUS_SESSION_BUS_ADDRESS", {}},
                     {"AT_SPI_BUS_ADDRESS", {}},
                     {"XDG_RUNTIME_DIR", {}},
                     {"XDG_CURRENT_DESKTOP", {}},
                     {"XDG_DATA_DIRS", {}},
                     {"XDG_DATA_HOME", {}},
                     {"XDG_CONFIG_DIRS", {}},
                     {"LANG", {}},
                     {"LC_ALL", "C"}},
     .newFilesForTheOwnerOnly = true},
};

INSTANTIATE_TEST_SUITE_P(With, OddSurroundings, testing::ValuesIn(kSurroundings),
                         [](const auto& odd) { return odd.param.name; });

}  // namespace
}  // namespace tavlo::test
