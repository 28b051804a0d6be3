#include "reports/start_command.h"

#include <utility>

namespace tavlo::reports {
namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view WithoutBlanksAround(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// Takes the first word off a text that does not begin with a blank.
std::string TakeWord(std::string_view& text) {
  std::string word;
  std::size_t at = 0;
  while (at < text.size() && kBlanks.find(text[at]) == kBlanks.npos) {
    const bool quote = text[at] == '"' || text[at] == '\'';
    const std::size_t partner = quote ? text.find(text[at], at + 1) : text.npos;
    if (partner == text.npos) {
      word += text[at++];
    } else {
      word += text.substr(at + 1, partner - at - 1);
      at = partner + 1;
    }
  }
  text = WithoutBlanksAround(text.substr(at));
  return word;
}

}  // namespace

std::vector<StartCommand> ReadStartCommand(std::string_view text) {
  std::string_view rest = WithoutBlanksAround(text);
  if (rest.empty()) return {};
  std::vector<StartCommand> commands{{std::string(rest), {}}};
  StartCommand split{TakeWord(rest), {}};
  while (!rest.empty()) split.arguments.push_back(TakeWord(rest));
  if (!split.program.empty() && split != commands.front()) commands.push_back(std::move(split));
  return commands;
}

}  // namespace tavlo::reports
