#include "accessibility/screen_reader.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <sstream>

#include "support/send_signal.h"

namespace tavlo::test {
namespace {

std::vector<std::string> Split(const std::string& line, char between) {
  std::vector<std::string> parts;
  std::stringstream in(line + between);
  for (std::string part; std::getline(in, part, between);) parts.push_back(part);
  return parts;
}

}  // namespace

ScreenReader::ScreenReader() {
  int commands[2];
  int answers[2];
  if (pipe2(commands, O_CLOEXEC) != 0 || pipe2(answers, O_CLOEXEC) != 0) {
    ADD_FAILURE() << "no pipe for the screen reader";
    return;
  }
  process_ = fork();
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(commands[0], STDIN_FILENO);
    dup2(answers[1], STDOUT_FILENO);
    execl("/usr/bin/python3", "python3", TAVLO_SCREEN_READER, nullptr);
    _exit(127);
  }
  close(commands[0]);
  close(answers[1]);
  to_ = fdopen(commands[1], "w");
  from_ = fdopen(answers[0], "r");
  EXPECT_EQ(ReadLine(), "ready") << "the screen reader does not start";
}

ScreenReader::~ScreenReader() {
  if (to_) std::fclose(to_);
  if (from_) std::fclose(from_);
  if (SendSignal(process_, SIGTERM)) waitpid(process_, nullptr, 0);
}

std::string ScreenReader::ReadLine() {
  std::string line;
  for (int c = 0; from_ && (c = std::fgetc(from_)) != EOF && c != '\n';) {
    line += static_cast<char>(c);
  }
  return line;
}

std::vector<std::string> ScreenReader::Ask(const std::string& command) {
  std::fprintf(to_, "%s\n", command.c_str());
  std::fflush(to_);
  std::vector<std::string> lines;
  for (std::string line = ReadLine(); line != "."; line = ReadLine()) {
    if (std::feof(from_)) {
      ADD_FAILURE() << "the screen reader ended at: " << command;
      break;
    }
    lines.push_back(line);
  }
  return lines;
}

std::vector<HeardNode> ScreenReader::Tree() {
  std::vector<HeardNode> nodes;
  for (const std::string& line : Ask("tree")) {
    const std::vector<std::string> part = Split(line, '|');
    if (part.size() != 8) {
      ADD_FAILURE() << line;
      continue;
    }
    nodes.push_back({.depth = std::stoi(part[0]),
                     .role = part[1],
                     .name = part[2],
                     .description = part[3],
                     .states = part[4],
                     .value = part[5],
                     .minimum = part[6],
                     .maximum = part[7]});
  }
  return nodes;
}

HeardNode ScreenReader::Find(const std::string& role, const std::string& name) {
  for (const HeardNode& node : Tree()) {
    if (node.role == role && node.name == name) return node;
  }
  return {};
}

std::vector<std::vector<std::string>> ScreenReader::Table(const std::string& name) {
  std::vector<std::vector<std::string>> rows;
  for (const std::string& line : Ask("table " + name)) rows.push_back(Split(line, '\t'));
  return rows;
}

std::vector<HeardCell> ScreenReader::Grid(const std::string& name) {
  std::vector<HeardCell> cells;
  for (const std::string& line : Ask("grid " + name)) {
    std::vector<std::string> part = Split(line, '|');
    part.resize(6);
    cells.push_back({.asked = part[0],
                     .found = part[1],
                     .named = part[2],
                     .header = part[3],
                     .text = part[4],
                     .child = part[5]});
  }
  return cells;
}

void ScreenReader::Set(const std::string& name, int value) {
  for (const std::string& fault : Ask("set " + name + " " + std::to_string(value))) {
    ADD_FAILURE() << name << ": " << fault;
  }
}

void ScreenReader::Press(const std::string& name) {
  for (const std::string& fault : Ask("press " + name)) ADD_FAILURE() << name << ": " << fault;
}

std::string ScreenReader::Text(const std::string& name) {
  std::string text;
  for (const std::string& line : Ask("text " + name)) text += line;
  return text;
}

std::vector<std::string> ScreenReader::Typed() { return Ask("typed"); }

std::vector<std::string> ScreenReader::Heard() { return Ask("heard"); }

}  // namespace tavlo::test
