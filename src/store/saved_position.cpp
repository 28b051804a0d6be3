#include "store/saved_position.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>

#include "base/text.h"
#include "store/document_name.h"

namespace tavlo::store {
namespace {

/// The first `count` characters.
std::string_view FirstCharacters(std::string_view text, std::size_t count) {
  const std::size_t whole = base::CharacterCount(text);
  if (whole <= count) return text;
  return text.substr(0, text.size() - base::LastCharacters(text, whole - count).size());
}

}  // namespace

std::string WithSavedPosition(const std::string& name, double position) {
  if (!HasDocumentBlanks(name)) return name;
  const std::string_view text = name;
  const std::size_t lastBlank = text.rfind(' ');
  const std::size_t fieldBegin = text.rfind(' ', lastBlank - 1) + 1;
  // As many characters are kept behind the field as stand before its end: all, in any name whose
  // head is longer than its priority and extension.
  const std::size_t kept = base::CharacterCount(text.substr(0, lastBlank)) + 1;
  // Beyond the parser's last number the name would not parse any more.
  const double parsed = std::min(position, double{std::numeric_limits<std::int32_t>::max()});
  return std::string(text.substr(0, fieldBegin)) + base::NumberText(parsed) +
         std::string(FirstCharacters(text.substr(lastBlank), kept));
}

std::string CompletedName(const std::string& name) {
  const std::string newName = WithSavedPosition(name, 0);
  return newName.size() > kMostBytesOfAName ? name : newName;
}

Moved WriteSavedPosition(double position, std::string& selectedQueueFile,
                         const WorkFolders& folders, FileMoves& moves) {
  const std::string newName = WithSavedPosition(selectedQueueFile, position);
  if (newName == selectedQueueFile) return {};
  Moved moved = moves.Move(folders.InQueuePath + selectedQueueFile, folders.InQueuePath + newName,
                           InTheWay::Stays);
  if (moved.result == DiskResult::Done) selectedQueueFile = newName;
  return moved;
}

}  // namespace tavlo::store
