#include <algorithm>
#include <cctype>
#include <cmath>
#include <string>
#include <string_view>
#include <tuple>

#include "base/one_line.h"
#include "base/text.h"
#include "fuzz/promise.h"
#include "store/document_name.h"
#include "store/purge_date.h"
#include "store/saved_position.h"
#include "support/simulated_loop.h"

namespace tavlo::fuzz {
namespace {

using store::DocumentRecord;

constexpr std::size_t kMostBytesOfAName = 255;

/// Hands out what an input is made of, up to one line end after the other.
class Lines {
 public:
  explicit Lines(std::string_view rest) : rest_(rest) {}

  std::string_view Next() {
    const std::size_t end = std::min(rest_.find('\n'), rest_.size());
    const std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    return line;
  }

 private:
  std::string_view rest_;
};

/// A folder can hold any name but one with these bytes in it.
bool IsPath(std::string_view name) { return name.find_first_of({"/\0", 2}) != name.npos; }

/// Whether the position of the name is the head's and nothing behind it is ever cut: behind it are
/// no more characters than before it.
bool HoldsPositionsWhole(std::string_view name) {
  const std::size_t headEnd = name.find('_');
  if (headEnd == name.npos || name.find(' ', headEnd) != name.npos) return false;
  const std::size_t lastBlank = name.rfind(' ');
  const std::size_t fieldBegin = name.rfind(' ', lastBlank - 1) + 1;
  return base::CharacterCount(name.substr(lastBlank)) <=
         base::CharacterCount(name.substr(0, fieldBegin));
}

/// The record but for the saved position.
auto Meaning(const DocumentRecord& record) {
  return std::tuple(record.SystemId, record.AuthorName, record.AuthorId, record.Department,
                    record.Field12, record.WorkType, record.Subject, record.Priority,
                    record.DictationDate, record.DictationTime, record.DictationDateKey,
                    record.DictationStamp, record.Extension);
}

class NameCheck {
 public:
  void Check(std::string_view input) {
    Lines lines(input);
    const std::string_view name = lines.Next();
    if (!IsPath(name)) CheckName(std::string(name), base::NumberValue(lines.Next()));
    CheckComposed(lines);
  }

 private:
  /// Whether the name holds to the grammar.
  bool Parse(std::string_view name) {
    // Only the fallback writes this field.
    names_.Record.FormatPrefix.clear();
    const bool holds = names_.ParseDocumentName(name);
    Promise(holds == names_.Record.FormatPrefix.empty(), "who holds to the grammar is no stranger");
    return holds;
  }

  void CheckName(const std::string& name, double number) {
    const bool valid = Parse(name);
    const DocumentRecord record = names_.Record;
    CheckBounds(record);
    if (const auto dictated = store::PurgeDate(name)) {
      Promise(store::MinutesBetween(*dictated, *dictated) == 0, "the day of a purge exists");
    }
    const std::string line = base::OneLine(name);
    Promise(line.find_first_of({"\n\r\0", 3}) == line.npos, "a name in the log is one line");
    Promise(base::OneLine(line) == line, "and proper text");
    const double position = std::clamp(std::trunc(number), 0.0, 2147483647.0);
    const std::string saved = store::WithSavedPosition(name, position);
    Promise(!IsPath(saved), "a saved position makes no path");
    if (!store::HasDocumentBlanks(name)) Promise(saved == name, "other names stay as they are");
    if (!valid || !HoldsPositionsWhole(name) || saved.size() > kMostBytesOfAName) return;
    Promise(Parse(saved), "a name with a saved position is a document's");
    Promise(names_.Record.SavedPosition == static_cast<std::int32_t>(position),
            "the position is read as it was written");
    Promise(Meaning(names_.Record) == Meaning(record), "a saved position changes nothing else");
    Promise(store::WithSavedPosition(saved, position) == saved, "the same position is no change");
  }

  static void CheckBounds(const DocumentRecord& record) {
    Promise(record.AuthorId >= 1 && record.AuthorId <= 999'999, "the author's id is in range");
    Promise(record.Department >= 1 && record.Department <= 99, "the department is in range");
    Promise(record.WorkType <= 99, "the work type is in range");
    Promise(record.Priority == "P" || record.Priority == "0", "a document has priority or has not");
    Promise(base::CharacterCount(record.Subject) <= 15, "the subject is short");
  }

  /// What the boxes of the author profile let through, made into a name and read again.
  void CheckComposed(Lines& lines) {
    store::NewDocument document{.systemId = Number(lines.Next(), 99),
                                .authorName = LettersAndDigits(lines.Next(), 14),
                                .authorId = Number(lines.Next(), 999'999),
                                .sentAt = loop_.WallClock(),
                                .department = Number(lines.Next(), 99),
                                .workType = Number(lines.Next(), 99),
                                .subject = LettersAndDigits(lines.Next(), 14),
                                .priority = lines.Next().starts_with('Y'),
                                .sourceName = std::string(lines.Next())};
    if (IsPath(document.sourceName)) return;
    if (document.authorId == "0") document.authorId = "1";
    if (document.department == "0") document.department = "1";
    const std::string name = store::ComposeDocumentName(document);
    Promise(!IsPath(name), "a composed name is no path");
    const std::string_view ending = base::LastCharacters(document.sourceName, 4);
    if (!ending.starts_with('.') || ending.find(' ') != ending.npos) return;
    Promise(Parse(name), "a composed name is a document's");
    const DocumentRecord& record = names_.Record;
    Promise(store::PurgeDate(name).has_value(), "the purge knows the day of a composed name");
    Promise(record.AuthorName == document.authorName, "the author is read as it was written");
    Promise(std::to_string(record.AuthorId) == document.authorId, "so is the id");
    Promise(std::to_string(record.Department) == document.department, "so is the department");
    Promise(std::to_string(record.WorkType) == document.workType, "so is the work type");
    Promise(record.Subject == document.subject, "so is the subject");
    Promise(record.Priority == (document.priority ? "P" : "0"), "so is the priority");
    Promise(record.SavedPosition == 0, "a new document stands at its beginning");
  }

  static std::string LettersAndDigits(std::string_view text, std::size_t longest) {
    std::string kept;
    for (const char c : text.substr(0, longest)) {
      if (std::isalnum(static_cast<unsigned char>(c)) != 0) kept += c;
    }
    return kept;
  }

  static std::string Number(std::string_view text, std::int64_t highest) {
    return std::to_string(std::clamp<std::int64_t>(base::WholeNumberValue(text), 0, highest));
  }

  test::SimulatedLoop loop_;
  store::DocumentNames names_{loop_};
};

}  // namespace
}  // namespace tavlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const tavlo::fuzz::Promptness promptness;
  // The names before leave their mark on the record, so every input begins with a fresh one.
  tavlo::fuzz::NameCheck().Check({reinterpret_cast<const char*>(data), size});
  return 0;
}
