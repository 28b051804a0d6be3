#include "bus/message_text.h"

#include <cstdint>
#include <sstream>

namespace tavlo::test {
namespace {

std::string NextValue(sd_bus_message* message);

std::string Rest(sd_bus_message* message, const char* separator) {
  std::string text;
  while (sd_bus_message_at_end(message, 0) == 0) {
    const std::string value = NextValue(message);
    if (value.empty()) return text + "(unreadable)";
    text += (text.empty() ? "" : separator) + value;
  }
  return text;
}

std::string Plain(sd_bus_message* message, char type) {
  union {
    const char* text;
    double number;
    std::int64_t large;
    std::uint32_t count;
    int truth;
  } value{};
  if (sd_bus_message_read_basic(message, type, &value) <= 0) return "(unreadable)";
  std::ostringstream shown;
  switch (type) {
    case 's':
      shown << '"' << value.text << '"';
      break;
    case 'o':
      shown << value.text;
      break;
    case 'd':
      shown << value.number;
      break;
    case 'x':
      shown << value.large;
      break;
    case 'u':
      shown << value.count;
      break;
    case 'b':
      shown << (value.truth ? "true" : "false");
      break;
    default:
      shown << "(a " << type << ")";
  }
  return shown.str();
}

std::string Inside(sd_bus_message* message, char type, const std::string& contents) {
  sd_bus_message_enter_container(message, type, contents.c_str());
  std::string text;
  if (type == 'v') text = contents + " " + NextValue(message);
  if (type == 'e') text = Rest(message, ": ");
  if (type == 'a' && contents.starts_with("{")) text = "{" + Rest(message, ", ") + "}";
  if (type == 'a' && !contents.starts_with("{")) text = "[" + Rest(message, ", ") + "]";
  sd_bus_message_exit_container(message);
  return text;
}

std::string NextValue(sd_bus_message* message) {
  char type = 0;
  const char* contents = nullptr;
  if (sd_bus_message_peek_type(message, &type, &contents) <= 0) return {};
  return contents ? Inside(message, type, contents) : Plain(message, type);
}

}  // namespace

std::string TextOf(sd_bus_message* message) {
  sd_bus_message_rewind(message, 1);
  return Rest(message, ", ");
}

}  // namespace tavlo::test
