#include "platform/ffmpeg/container_format.h"

#include <array>
#include <string_view>

#include "platform/ffmpeg/bytes.h"

namespace tavlo::platform {
namespace {

using std::string_view_literals::operator""sv;

/// A format by its marks; an empty second mark always fits.
struct Mark {
  std::size_t offset = 0;
  std::string_view text;
  std::size_t secondOffset = 0;
  std::string_view secondText;
  ContainerFormat format;
};

constexpr std::array kMarks{
    Mark{0, "RIFF"sv, 8, "WAVE"sv, {"wav", false}},
    Mark{0, "RF64"sv, 8, "WAVE"sv, {"wav", false}},
    Mark{0, "riff\x2E\x91\xCF\x11"sv, 0, ""sv, {"w64", false}},
    Mark{0, "RIFF"sv, 8, "AVI "sv, {"avi", false}},
    Mark{0, "fLaC"sv, 0, ""sv, {"flac", false}},
    Mark{0, "OggS"sv, 0, ""sv, {"ogg", false}},
    Mark{4, "ftyp"sv, 0, ""sv, {"mov", false}},
    Mark{0, "\x30\x26\xB2\x75\x8E\x66\xCF\x11"sv, 0, ""sv, {"asf", false}},
    Mark{0, "FORM"sv, 8, "AIF"sv, {"aiff", false}},
    Mark{0, ".snd"sv, 0, ""sv, {"au", false}},
    Mark{0, "caff"sv, 0, ""sv, {"caf", false}},
    Mark{0, "#!AMR"sv, 0, ""sv, {"amr", true}},
    Mark{0, "\xFF\xF0"sv, 0, ""sv, {"aac", true}},
    Mark{0, "\xFF\xF1"sv, 0, ""sv, {"aac", true}},
    Mark{0, "\xFF\xF8"sv, 0, ""sv, {"aac", true}},
    Mark{0, "\xFF\xF9"sv, 0, ""sv, {"aac", true}},
};

}  // namespace

const ContainerFormat* FindContainerFormat(Bytes head) {
  for (const Mark& mark : kMarks) {
    if (HasMark(head, mark.offset, mark.text) && HasMark(head, mark.secondOffset, mark.secondText))
      return &mark.format;
  }
  return nullptr;
}

}  // namespace tavlo::platform
