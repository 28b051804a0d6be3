#include "platform/desktop/bus_messages.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

namespace tavlo::platform::desktop {
namespace {

constexpr char kOurByteOrder = std::endian::native == std::endian::little ? 'l' : 'B';
constexpr char kProtocolVersion = 1;
constexpr std::size_t kMostBytes = std::size_t{128} * 1024 * 1024;

// Kinds of message.
constexpr char kCall = 1;
constexpr char kReply = 2;
constexpr char kError = 3;

// What stands at the front of each message, by its place.
constexpr std::size_t kKindAt = 1;
constexpr std::size_t kBodyLengthAt = 4;
constexpr std::size_t kFieldsLengthAt = 12;
constexpr std::size_t kFrontLength = 16;

/// A field of a message's header.
struct Field {
  char code;
  char type;
  std::string_view value;
};

std::size_t RoundUp(std::size_t length) { return (length + 7) / 8 * 8; }

void AddNumber(std::string& bytes, std::uint32_t number) {
  std::array<char, sizeof number> raw{};
  std::memcpy(raw.data(), &number, sizeof number);
  bytes.append(raw.data(), raw.size());
}

std::uint32_t NumberAt(std::string_view bytes, std::size_t place) {
  std::uint32_t number = 0;
  std::memcpy(&number, bytes.data() + place, sizeof number);
  return number;
}

void AddField(std::string& bytes, const Field& field) {
  bytes.resize(RoundUp(bytes.size()));
  bytes += {field.code, 1, field.type, '\0'};
  AddNumber(bytes, static_cast<std::uint32_t>(field.value.size()));
  bytes += field.value;
  bytes += '\0';
}

}  // namespace

std::string CallOfTheBus(std::uint32_t serial, std::string_view method) {
  constexpr std::string_view kBus = "org.freedesktop.DBus";
  std::string fields;
  for (const Field& field : {Field{1, 'o', "/org/freedesktop/DBus"}, Field{2, 's', kBus},
                             Field{3, 's', method}, Field{6, 's', kBus}}) {
    AddField(fields, field);
  }
  std::string message{kOurByteOrder, kCall, 0, kProtocolVersion};
  AddNumber(message, 0);
  AddNumber(message, serial);
  AddNumber(message, static_cast<std::uint32_t>(fields.size()));
  message += fields;
  message.resize(RoundUp(message.size()));
  return message;
}

void BusAnswers::Take(std::string_view bytes) {
  waiting_ += bytes;
  while (TakeMessage()) {
  }
}

/// Takes the first message off what is waiting; false when it is not there as a whole.
bool BusAnswers::TakeMessage() {
  if (garbled_ || waiting_.size() < kFrontLength) return false;
  const std::size_t length = kFrontLength + RoundUp(NumberAt(waiting_, kFieldsLengthAt)) +
                             NumberAt(waiting_, kBodyLengthAt);
  garbled_ = waiting_.front() != kOurByteOrder || length > kMostBytes;
  if (garbled_ || waiting_.size() < length) return false;
  const char kind = waiting_[kKindAt];
  if (kind == kReply || kind == kError) ++count_;
  waiting_.erase(0, length);
  return true;
}

}  // namespace tavlo::platform::desktop
