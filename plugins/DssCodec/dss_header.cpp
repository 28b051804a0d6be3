#include "dss_header.h"

#include <array>
#include <string_view>

namespace tavlo::dss {
namespace {

// The first byte is the number of header blocks; a mark of three letters follows it.
constexpr std::size_t kMarkOffset = 1;
constexpr std::size_t kMarkBytes = 3;
constexpr int kFewestHeaderBlocks = 2;
constexpr int kMostHeaderBlocks = 3;
constexpr int kOtherMakersVersion = 6;

constexpr std::size_t kLengthOffset = 62;  // Six digits: hours, minutes, seconds.
constexpr std::size_t kModeOffset = 676;

/// Two digits; nothing when they are none.
std::optional<int> TwoDigits(Bytes at) {
  const auto isDigit = [](std::uint8_t byte) { return byte >= '0' && byte <= '9'; };
  if (!isDigit(at[0]) || !isDigit(at[1])) return std::nullopt;
  return (at[0] - '0') * 10 + at[1] - '0';
}

std::optional<int> LengthFrom(Bytes field) {
  const std::optional<int> hours = TwoDigits(field.first(2));
  const std::optional<int> minutes = TwoDigits(field.subspan(2, 2));
  const std::optional<int> seconds = TwoDigits(field.subspan(4, 2));
  if (!hours || !minutes || !seconds || *minutes > 59 || *seconds > 59) return std::nullopt;
  return *hours * 3600 + *minutes * 60 + *seconds;
}

/// What the mark and the number of blocks tell of the kind.
ConversionCode CheckKind(Bytes head) {
  if (head.size() < kMarkOffset + kMarkBytes) return ConversionCode::NotDss;
  const std::string_view mark(reinterpret_cast<const char*>(head.data()) + kMarkOffset, kMarkBytes);
  if (mark == "ds2") return ConversionCode::Ds2;
  if (mark == "enc") return ConversionCode::Encrypted;
  if (mark != "dss") return ConversionCode::NotDss;
  if (head[0] == kOtherMakersVersion) return ConversionCode::OtherMaker;
  const bool known = head[0] >= kFewestHeaderBlocks && head[0] <= kMostHeaderBlocks;
  return known ? ConversionCode::Done : ConversionCode::UnknownVersion;
}

}  // namespace

std::optional<Mode> ModeFrom(std::uint8_t figure) {
  switch (static_cast<Mode>(figure)) {
    case Mode::StandardPlay:
    case Mode::LongPlay:
      return static_cast<Mode>(figure);
  }
  return std::nullopt;
}

ConversionCode ReadHeader(Bytes head, DssHeader& header) {
  const ConversionCode kind = CheckKind(head);
  if (kind != ConversionCode::Done) return kind;
  header.bytes = head[0] * kBlockBytes;
  if (head.size() < header.bytes) return ConversionCode::CutOff;
  const std::optional<Mode> mode = ModeFrom(head[kModeOffset]);
  if (!mode) return ConversionCode::UnknownCoding;
  header.mode = *mode;
  header.toldSeconds = LengthFrom(head.subspan(kLengthOffset, 6));
  return ConversionCode::Done;
}

}  // namespace tavlo::dss
