#include "simulation/names.h"

#include <array>
#include <vector>

#include "simulation/places.h"
#include "store/saved_position.h"
#include "support/documents.h"

namespace tavlo::simulation {
namespace {

constexpr std::array kAuthors{"Brown", "Okafor", "O'Neill", "", "Ångström", "\xFF\xFE", "a\nb"};
constexpr std::array kMoments{"3 9 2004 14 5 12", "2 29 2004 23 59 59", "12 31 1999 0 0 0",
                              "13 40 20040 25 61 61", "x y z a b c"};
constexpr std::array kEndings{".wav", ".mp3", ".WAV", "", ".dss"};
constexpr std::array kForeign{"letter to the bank.mp3",
                              "notes.txt",
                              " ",
                              "a  b   c    d",
                              "\n",
                              "line\nbreak.wav",
                              "\xC3\x28.wav",
                              "tab\there",
                              "%s%n%d.wav",
                              "\"quoted\".wav",
                              ".hidden dictation.wav",
                              "back\\slash",
                              "_._",
                              "P_P_P_.wav",
                              "~",
                              "0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0_.wav",
                              "very.many.dots.in.a.name.wav",
                              "wav",
                              ".wav",
                              "no wave.wav.bak",
                              "trailing blank.wav "};

constexpr std::array kServerEndings{".eW2", ".eW2", ".dS2", ".eU2", ".EW2", ".wav",
                                    ".mp3", ".wma", ".avi", ".dss", ".vox", ""};

const std::vector<std::string>& HostileNames() {
  static const std::vector<std::string> names{"..",
                                              "../../../Lyrane_Tavlo_Deck.mdb",
                                              "/etc/cron.d/deck.eW2",
                                              "ward/seven/a.wav",
                                              "ward_seven_a.wav",
                                              "..\\..\\InQueue\\a.eW2",
                                              "//",
                                              ".hidden.eW2",
                                              ".TavloClaim desk 41 a.eW2",
                                              ".TavloDeckMove",
                                              "C:\\a.dS2",
                                              "c:a.mp3",
                                              "bell\a.wav",
                                              "\x7F\x1B[2J.eU2",
                                              "line\nfeed.eW2",
                                              "carriage\rreturn.wav",
                                              std::string("nul\0.wav", 8),
                                              std::string(300, 'x') + ".eW2",
                                              std::string(290, 'y') + "." + std::string(20, 'z'),
                                              std::string(255, '.')};
  return names;
}

/// Half of them lie in the weeks before a day begins, for the ages by which a purge decides.
std::string DrawMoment(Chance& chance) {
  if (chance.OneIn(2)) return chance.Pick(kMoments);
  const bool thisMonth = chance.OneIn(2);
  const int day = 1 + chance.Below(thisMonth ? 9 : 29);
  return (thisMonth ? "3 " : "2 ") + std::to_string(day) + " 2004 " +
         std::to_string(chance.Below(24)) + " 30 0";
}

std::string Composed(Chance& chance) {
  test::Document document;
  document.By(chance.Pick(kAuthors)).Id(chance.Below(3000)).At(DrawMoment(chance));
  document.Department(chance.Below(100)).WorkType(chance.Below(100));
  if (chance.OneIn(3)) document.Priority();
  if (chance.OneIn(6)) document.Saved(chance.Below(200'000));
  if (chance.OneIn(40)) document.Field(15, "2147483648");
  if (chance.OneIn(6)) document.Tail(" 7 0 0");
  return document.Ending(chance.Pick(kEndings)).Name();
}

/// As long as a name may be, so that one more digit does not fit.
std::string LongestComposed(Chance& chance) {
  test::Document document;
  document.Id(chance.Below(3000)).About("");
  const std::size_t room = kMostBytesOfAName - document.Name().size();
  return document.About(std::string(room, 'x')).Name();
}

}  // namespace

std::string DrawName(Chance& chance) {
  const int kind = chance.Below(12);
  if (kind == 0) return LongestComposed(chance);
  if (kind == 1) return std::string(kMostBytesOfAName, static_cast<char>('a' + chance.Below(26)));
  if (kind < 4) return chance.Pick(kForeign);
  return Composed(chance);
}

std::string DrawServerName(Chance& chance) {
  const int kind = chance.Below(8);
  if (kind == 0) return DrawName(chance);
  if (kind == 1) return chance.Pick(HostileNames());
  const char* const ending = chance.Pick(kServerEndings);
  // Few names, so that one comes again while its file of before still waits.
  if (kind < 5) return "memo " + std::to_string(chance.Below(9)) + ending;
  return test::Document().Id(chance.Below(9)).Ending(ending).Name();
}

std::string DrawLookAlike(const std::string& name, Chance& chance) {
  std::string alike = name;
  switch (chance.Below(5)) {
    case 0:
      alike = store::WithSavedPosition(name, chance.Below(200'000));
      break;
    case 1:
      for (char& c : alike) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
      break;
    case 2:
      alike += ' ';
      break;
    case 3:
      // The ring as a sign of its own behind the letter.
      if (const auto at = alike.find("\xC3\x85"); at != alike.npos)
        alike.replace(at, 2, "A\xCC\x8A");
      break;
    default:
      break;
  }
  return alike.size() > kMostBytesOfAName ? "" : alike;
}

}  // namespace tavlo::simulation
