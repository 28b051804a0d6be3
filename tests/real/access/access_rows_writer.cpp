#include "access/access_rows_writer.h"

#include <iconv.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <stdexcept>

namespace tavlo::test {
namespace {

constexpr std::size_t kLongestInRow = 64;
constexpr std::uint32_t kStandsInRow = 0x80000000;
constexpr std::uint32_t kStandsInOnePage = 0x40000000;

std::string Converted(const char* to, const std::string& text) {
  const iconv_t conversion = ::iconv_open(to, "UTF-8");
  std::string in = text;
  std::string out(text.size() * 4 + 4, '\0');
  char* from = in.data();
  char* into = out.data();
  std::size_t left = in.size();
  std::size_t room = out.size();
  const bool failed =
      ::iconv(conversion, &from, &left, &into, &room) == static_cast<std::size_t>(-1);
  ::iconv_close(conversion);
  if (failed) throw std::invalid_argument("The layout can not hold the text " + text);
  out.resize(out.size() - room);
  return out;
}

/// Letters below U+0100 as one byte, others as two; a byte 0 stands between the two kinds.
std::string Compressed(const std::string& wide) {
  std::string out = "\xff\xfe";
  bool single = true;
  for (std::size_t at = 0; at < wide.size(); at += 2) {
    const bool fits = wide[at + 1] == 0;
    if (fits != single) out.push_back('\0');
    single = fits;
    out.append(wide, at, fits ? 1 : 2);
  }
  return out;
}

std::string StoredNumeric(double hundredths) {
  std::string bytes(1, hundredths < 0 ? '\x80' : '\0');
  bytes.append(12, '\0');
  Put(bytes, static_cast<std::uint32_t>(std::fabs(hundredths)));
  return bytes;
}

std::string StoredNumber(AccessType type, double number) {
  std::string bytes;
  switch (type) {
    case AccessType::Money:
      Put(bytes, std::llround(number * 10000));
      break;
    case AccessType::Single:
      Put(bytes, std::bit_cast<std::uint32_t>(static_cast<float>(number)));
      break;
    case AccessType::Double:
    case AccessType::Date:
      Put(bytes, std::bit_cast<std::uint64_t>(number));
      break;
    case AccessType::Numeric:
      return StoredNumeric(number);
    default:
      Put(bytes, std::llround(number), FixedSize(type));
  }
  return bytes;
}

std::string KeptInPages(const std::string& bytes, const LongValues& longValues) {
  std::string place;
  if (bytes.size() <= longValues.room) {
    Put(place, static_cast<std::uint32_t>(bytes.size()) | kStandsInOnePage);
    Put(place, longValues.keep(bytes));
  } else {
    // The last piece first, since each tells where the next one stands.
    const std::size_t piece = longValues.room - 4;
    std::uint32_t next = 0;
    for (std::size_t at = (bytes.size() - 1) / piece * piece;; at -= piece) {
      std::string row;
      Put(row, next);
      next = longValues.keep(row + bytes.substr(at, piece));
      if (at == 0) break;
    }
    Put(place, static_cast<std::uint32_t>(bytes.size()));
    Put(place, next);
  }
  return place + std::string(4, '\0');
}

std::string StoredLong(const std::string& bytes, const LongValues& longValues) {
  if (bytes.size() > kLongestInRow) return KeptInPages(bytes, longValues);
  std::string stored;
  Put(stored, static_cast<std::uint32_t>(bytes.size()) | kStandsInRow);
  return stored + std::string(8, '\0') + bytes;
}

/// Where the values of changing length begin, and where the last one ends: one byte for each, from
/// the end to the beginning, and behind them at which of them the row passes 256, 512 and so on.
std::string OffsetsOfThird(const std::vector<std::size_t>& offsets, std::size_t maskSize) {
  const std::size_t end = offsets.back();
  std::size_t jumps = 0;
  while ((end + offsets.size() + jumps + maskSize) / 256 > jumps) ++jumps;
  std::string bytes;
  for (std::size_t at = offsets.size(); at-- > 0;) Put(bytes, offsets[at], 1);
  for (std::size_t jump = jumps; jump > 0; --jump) {
    const auto first =
        std::ranges::find_if(offsets, [&](std::size_t offset) { return offset >= 256 * jump; });
    Put(bytes, first == offsets.end() ? 0xff : first - offsets.begin(), 1);
  }
  Put(bytes, offsets.size() - 1, 1);
  return bytes;
}

std::string OffsetsOfFourth(const std::vector<std::size_t>& offsets) {
  std::string bytes;
  for (std::size_t at = offsets.size(); at-- > 0;) Put(bytes, offsets[at], 2);
  Put(bytes, offsets.size() - 1, 2);
  return bytes;
}

}  // namespace

std::size_t FixedSize(AccessType type) {
  switch (type) {
    case AccessType::Byte:
      return 1;
    case AccessType::Int:
      return 2;
    case AccessType::Long:
    case AccessType::Single:
      return 4;
    case AccessType::Money:
    case AccessType::Double:
    case AccessType::Date:
      return 8;
    case AccessType::Numeric:
      return 17;
    default:
      return 0;
  }
}

std::string StoredText(const AccessFileForm& form, const std::string& text) {
  if (form.layout == Jet::Three) return Converted("CP1252", text);
  const std::string wide = Converted("UTF-16LE", text);
  return form.compressedTexts ? Compressed(wide) : wide;
}

std::string StoredRow(const AccessFileForm& form, const std::vector<AccessColumn>& columns,
                      const AccessRow& values, const LongValues& longValues) {
  std::string mask((columns.size() + 7) / 8, '\0');
  std::string fixed;
  std::string changing;
  const std::size_t head = form.layout == Jet::Four ? 2 : 1;
  std::vector<std::size_t> ends{0};
  for (std::size_t at = 0; at < columns.size(); ++at) {
    const AccessType type = columns[at].type;
    const AccessValue& value = values.at(at);
    const bool* const truth = std::get_if<bool>(&value);
    if (truth ? *truth : value.index() != 0) mask[at / 8] |= static_cast<char>(1 << (at % 8));
    if (type == AccessType::Bool) continue;
    if (FixedSize(type) > 0) {
      const double* const number = std::get_if<double>(&value);
      fixed += StoredNumber(type, number ? *number : 0);
      continue;
    }
    if (const std::string* const text = std::get_if<std::string>(&value)) {
      const bool isBytes = type == AccessType::Ole;
      const std::string stored = isBytes ? *text : StoredText(form, *text);
      changing += type == AccessType::Text ? stored : StoredLong(stored, longValues);
    }
    ends.push_back(changing.size());
  }
  std::string row;
  Put(row, columns.size(), head);
  row += fixed + changing;
  for (std::size_t& offset : ends) offset += head + fixed.size();
  if (ends.size() > 1) {
    row += form.layout == Jet::Four ? OffsetsOfFourth(ends) : OffsetsOfThird(ends, mask.size());
  }
  return row + mask;
}

}  // namespace tavlo::test
