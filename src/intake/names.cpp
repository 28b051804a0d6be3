#include "intake/names.h"

namespace tavlo::intake {
std::string WithEachReplaced(std::string_view text, std::string_view what, std::string_view by) {
  std::string result;
  for (auto at = text.find(what); at != text.npos; at = text.find(what)) {
    result.append(text.substr(0, at)).append(by);
    text.remove_prefix(at + what.size());
  }
  return result.append(text);
}

}  // namespace tavlo::intake
