#include "intake/names.h"

#include <algorithm>

namespace tavlo::intake {
namespace {

char LowerOf(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

bool EndsInPattern(std::string_view name, std::string_view ending) {
  if (name.size() < ending.size()) return false;
  return std::ranges::equal(name.substr(name.size() - ending.size()), ending,
                            [](char a, char b) { return LowerOf(a) == LowerOf(b); });
}

std::string WithEachReplaced(std::string_view text, std::string_view what, std::string_view by) {
  std::string result;
  for (auto at = text.find(what); at != text.npos; at = text.find(what)) {
    result.append(text.substr(0, at)).append(by);
    text.remove_prefix(at + what.size());
  }
  return result.append(text);
}

}  // namespace tavlo::intake
