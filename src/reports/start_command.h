#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavlo::reports {

/// A program, and the arguments that it gets in front of others.
struct StartCommand {
  std::string program;
  std::vector<std::string> arguments;
  bool operator==(const StartCommand&) const = default;
};

/// What the text of a start command may mean, in the order in which it is tried. First the whole
/// text is a program, for paths hold blanks; then it is split at blanks and tabs that stand outside
/// of quotes. Single and double quotes hold together what is between them and go themselves, and
/// nothing between them makes an empty argument; one without a partner is a character like others,
/// as in a path with an apostrophe. Nothing else has a meaning: no shell ever sees the text. Empty
/// for a text of blanks.
std::vector<StartCommand> ReadStartCommand(std::string_view text);

}  // namespace tavlo::reports
