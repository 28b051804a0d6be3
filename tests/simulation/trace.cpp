#include "simulation/trace.h"

#include <cstddef>
#include <cstdio>

namespace tavlo::simulation {
namespace {

constexpr std::size_t kLinesKept = 120;
constexpr std::size_t kLongestReadable = 400;

}  // namespace

void Trace::Note(std::string_view line) {
  Fold(line);
  lines_.push_back(Readable(line));
  if (lines_.size() > kLinesKept) lines_.pop_front();
  if (aloud_) std::printf("%s\n", lines_.back().c_str());
}

void Trace::Fold(std::string_view detail) {
  for (const char c : detail) digest_ = (digest_ ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
}

std::string Trace::LastLines() const {
  std::string text;
  for (const std::string& line : lines_) text += line + "\n";
  return text;
}

std::string Readable(std::string_view bytes) {
  std::string text;
  for (const char c : bytes.substr(0, kLongestReadable)) {
    if (c >= ' ' && c <= '~') {
      text += c;
      continue;
    }
    char number[8];
    std::snprintf(number, sizeof number, "\\x%02X", static_cast<unsigned char>(c));
    text += number;
  }
  if (bytes.size() > kLongestReadable) text += "...";
  return text;
}

}  // namespace tavlo::simulation
