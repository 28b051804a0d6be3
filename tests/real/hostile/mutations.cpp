#include "hostile/mutations.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace tavlo::test {
namespace {

/// How much of a file its headers take.
constexpr std::size_t kHeaders = 256;
/// One in so many is longer than a 32-bit number can say.
constexpr int kEveryHuge = 100;
constexpr std::uint64_t kHuge = (std::uint64_t{1} << 32) + 4096;

using std::string_view_literals::operator""sv;

/// A folder may hold all of these.
constexpr std::array kOddNames{
    "two\nlines"sv,           "tab\tand bell\a"sv, "\x1B[31mred\x1B[0m"sv,  "not \xFF\xFE text"sv,
    "\xE2\x80\xAEreversed"sv, "-rf --help"sv,      "$(reboot) `id` %s%n"sv, "'quoted' \"twice\""sv,
    "up\\..\\.."sv,           "file:%2F%2Fhost"sv, "concat:a|b"sv,          "   "sv,
};

}  // namespace

Mutations::Mutations(std::vector<Original> originals, std::string script, unsigned seed)
    : originals_(std::move(originals)), script_(std::move(script)), random_(seed) {}

Mutant Mutations::Next() {
  const Original& original = Any();
  Mutant mutant{.name = NameFor(original.name), .bytes = original.bytes};
  using Change = void (Mutations::*)(std::string&);
  constexpr std::array<Change, 6> kChanges{
      &Mutations::FlipBits,        &Mutations::Cut,    &Mutations::Splice,
      &Mutations::DriveToExtremes, &Mutations::Repeat, &Mutations::PutScript,
  };
  // Every eighth keeps what it is: a name alone may do harm, and so may hours of silence.
  const std::size_t changes = UpTo(8) == 0 ? 0 : 1 + UpTo(2);
  for (std::size_t i = 0; i < changes; ++i) (this->*kChanges[UpTo(kChanges.size())])(mutant.bytes);
  if (made_ % kEveryHuge == 0) mutant.size = kHuge;
  return mutant;
}

std::size_t Mutations::UpTo(std::size_t end) { return random_() % std::max<std::size_t>(end, 1); }

const Original& Mutations::Any() { return originals_[UpTo(originals_.size())]; }

void Mutations::FlipBits(std::string& bytes) {
  const std::size_t front = UpTo(2) == 0 ? std::min(bytes.size(), kHeaders) : bytes.size();
  for (std::size_t left = 1 + UpTo(16); left > 0 && front > 0; --left) {
    const std::size_t at = UpTo(front);
    bytes[at] = static_cast<char>(bytes[at] ^ 1 << UpTo(8));
  }
}

void Mutations::Cut(std::string& bytes) {
  bytes.resize(UpTo(UpTo(2) == 0 ? std::min(bytes.size(), kHeaders) : bytes.size()));
}

void Mutations::Splice(std::string& bytes) {
  const std::string& other = Any().bytes;
  bytes.resize(UpTo(bytes.size()));
  bytes += other.substr(UpTo(other.size()));
}

void Mutations::DriveToExtremes(std::string& bytes) {
  constexpr std::array kExtremes{
      "\0\0\0\0"sv,         "\1\0\0\0"sv,         "\0\0\0\1"sv,         "\xFF\xFF\xFF\xFF"sv,
      "\xFF\xFF\xFF\x7F"sv, "\x7F\xFF\xFF\xFF"sv, "\x80\x00\x00\x00"sv, "\0\0\0\x80"sv,
  };
  const std::size_t front = std::min(bytes.size(), kHeaders);
  for (std::size_t left = 1 + UpTo(3); left > 0 && front >= 4; --left) {
    bytes.replace(2 * UpTo(front / 2 - 1), 4, kExtremes[UpTo(kExtremes.size())]);
  }
}

void Mutations::Repeat(std::string& bytes) {
  const std::size_t begin = UpTo(std::min(bytes.size(), 2 * kHeaders));
  const std::string part = bytes.substr(begin, 1 + UpTo(64));
  for (std::size_t left = UpTo(500); left > 0; --left) bytes.insert(begin, part);
}

void Mutations::PutScript(std::string& bytes) {
  const std::size_t at = UpTo(3) == 0 ? 0 : UpTo(bytes.size());
  bytes.replace(at, std::min(script_.size(), bytes.size() - at), script_);
}

std::string Mutations::NameFor(const std::string& original) {
  const std::string number = std::to_string(++made_);
  // The ending may belong to another kind of sound.
  const std::string& ending = UpTo(4) == 0 ? Any().name : original;
  const std::string extension = ending.substr(ending.rfind('.'));
  switch (UpTo(4)) {
    case 0:
      return std::string(kOddNames[UpTo(kOddNames.size())]) + number + extension;
    case 1: {
      constexpr std::size_t kLongest = 255;
      return number + std::string(kLongest - number.size() - extension.size(), 'x') + extension;
    }
    default:
      return "0007 0 Brown " + number + " 3 9 2004 14 5 12 2 0 17 cardio 0 0_" + extension;
  }
}

}  // namespace tavlo::test
