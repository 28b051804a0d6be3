#include "hostile/system_calls.h"

#include <cctype>
#include <fstream>

namespace tavlo::test {
namespace {

/// The text behind the first `mark` of the arguments. The listener writes every byte of it as \x
/// and two digits.
std::string TextBehind(char mark, const std::string& arguments) {
  std::string text;
  std::size_t at = arguments.find(mark);
  if (at == arguments.npos) return text;
  for (++at; at + 4 <= arguments.size() && arguments[at] == '\\'; at += 4) {
    text += static_cast<char>(std::stoi(arguments.substr(at + 2, 2), nullptr, 16));
  }
  return text;
}

/// The path that is opened. A name that is no full path stands behind the folder that it is looked
/// up in, which the listener names between angle brackets.
std::string PathOf(const std::string& arguments) {
  const std::string text = TextBehind('"', arguments);
  if (text.empty() || text.starts_with('/')) return text;
  const std::string folder = TextBehind('<', arguments.substr(0, arguments.find('"')));
  return folder.empty() ? text : folder + "/" + text;
}

}  // namespace

std::vector<std::string> ListenedTo(const std::vector<std::string>& command,
                                    const std::string& logPath) {
  // Without a socket nothing can be sent anywhere, so the calls that send need no listening to; a
  // window and a sound server make thousands of them.
  std::vector<std::string> words{"strace",
                                 "-f",
                                 "--seccomp-bpf",
                                 "-qq",
                                 "-xx",
                                 "-y",
                                 "-s",
                                 "4096",
                                 "-e",
                                 "trace=open,openat,openat2,creat,execve,execveat,socket,connect,"
                                 "bind,listen",
                                 "-o",
                                 logPath};
  words.insert(words.end(), command.begin(), command.end());
  return words;
}

std::vector<SystemCall> ReadSystemCalls(const std::string& logPath) {
  std::vector<SystemCall> calls;
  std::ifstream log(logPath);
  for (std::string line; std::getline(log, line);) {
    // A line is the process, the call and its arguments. Of a call that was interrupted the first
    // half has them all.
    const std::size_t name = line.find_first_not_of(' ', line.find(' '));
    const std::size_t open = line.find('(');
    if (name == line.npos || open == line.npos || open <= name) continue;
    if (std::isalpha(static_cast<unsigned char>(line[name])) == 0) continue;
    const std::string arguments = line.substr(open + 1);
    calls.push_back({line.substr(name, open - name), PathOf(arguments), arguments});
  }
  return calls;
}

}  // namespace tavlo::test
