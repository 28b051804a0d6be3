#include "forms/accessible_name.h"

#include <algorithm>

namespace tavlo::forms {
namespace {

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c < 0; }

std::string NameOf(const Control& control, std::string caption) {
  if (!control.Heard.Get().empty()) return control.Heard;
  std::erase(caption, '&');
  const bool speaks = std::any_of(caption.begin(), caption.end(), IsLetter);
  return speaks ? caption : control.Tooltip.Get();
}

}  // namespace

std::string AccessibleName(const Command& command) { return NameOf(command, command.Caption); }

std::string AccessibleName(const Choice& choice) { return NameOf(choice, choice.Caption); }

std::string AccessibleName(const Range& range) { return NameOf(range, {}); }

std::string AccessibleName(const Table& table) { return NameOf(table, {}); }

std::string AccessibleName(const Text& box) { return NameOf(box, {}); }

}  // namespace tavlo::forms
