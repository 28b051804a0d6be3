#include "platform/curl/reply_reader.h"

#include <algorithm>
#include <utility>

namespace tavlo::platform {
namespace {

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

/// The code at the beginning of a line; 0 when there is none.
int CodeOf(std::string_view line) {
  if (line.size() < 3 || !std::ranges::all_of(line.substr(0, 3), IsDigit)) return 0;
  if (line.size() > 3 && line[3] != ' ' && line[3] != '-') return 0;
  const int code = (line[0] - '0') * 100 + (line[1] - '0') * 10 + (line[2] - '0');
  return code >= 100 && code < 600 ? code : 0;
}

}  // namespace

std::size_t ReplyReader::Take(std::string_view bytes) {
  std::size_t taken = 0;
  while (taken < bytes.size() && !whole_ && !nonsense_) {
    const std::size_t lineEnd = bytes.find('\n', taken);
    const std::size_t end = std::min(lineEnd, bytes.size());
    line_.append(bytes.substr(taken, std::min(end - taken, kKept - line_.size())));
    const bool ends = lineEnd != bytes.npos;
    taken_ += end - taken + (ends ? 1 : 0);
    taken = end + (ends ? 1 : 0);
    if (ends) EndLine();
    if (taken_ > kLongestReply) nonsense_ = true;
  }
  return taken;
}

void ReplyReader::EndLine() {
  std::string line = std::exchange(line_, {});
  if (line.ends_with('\r')) line.pop_back();
  const int code = CodeOf(line);
  const bool goesOn = line.size() > 3 && line[3] == '-';
  if (reply_.code == 0) {
    reply_.code = code;
    nonsense_ = code == 0;
    whole_ = !goesOn;
  } else {
    whole_ = code == reply_.code && !goesOn;
  }
  if (reply_.text.size() + line.size() < kKept) reply_.text += line + '\n';
}

std::optional<ServerReply> ReplyReader::Next() {
  if (!whole_ || nonsense_) return {};
  whole_ = false;
  taken_ = 0;
  return std::exchange(reply_, {});
}

}  // namespace tavlo::platform
