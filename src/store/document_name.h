#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/loop.h"

/// A document's demographics live in its file name and nowhere else. A name has a head of 16 fields
/// with one blank between each two, closed by the first `_`; an optional tail of 8 fields; a dot
/// and the extension:
///
///     0007 0 Brown 1234 3 9 2004 14 5 12 2 0 17 cardio 0 P_.wav
///
/// The fields of the head: system id, reserved, author, author id, month, day, year, hour, minute,
/// second, department, reserved, work type, subject, saved position (in samples), priority.
///
/// Names are bytes, for a file is listed and played whatever its name holds. Where the grammar
/// counts characters, a text is UTF-8 where it can be and a stray byte counts as one.
namespace tavlo::store {

class FieldReader;

/// What the last parsed name said.
struct DocumentRecord {
  std::string FormatLetter;  ///< This and the next two are set by the fallback only.
  std::string FormatPrefix;
  std::string FormatSuffix;
  std::string SystemId;
  std::string Field2;
  std::string AuthorName;
  std::int32_t AuthorId = 0;
  std::uint8_t Department = 0;
  std::uint8_t WorkType = 0;
  std::string Subject;
  std::int16_t Field12 = 0;
  std::string Priority;       ///< "P" or "0".
  std::string DictationDate;  ///< For display; the order of day and month is `DateFormat`'s.
  std::string DictationTime;  ///< hh:mm:ss
  std::int32_t DictationDateKey = 0;  ///< yyyymmdd
  std::int32_t SavedPosition = 0;     ///< In samples; not 0 means that the document is Saved.
  std::string Extension;              ///< The name's last three characters.
  std::string DictationStamp;         ///< yyyymmddhhmmss, by which the lists sort.
};

/// The parser and its one shared record. On the loop's thread.
class DocumentNames {
 public:
  /// The wall clock dates the names that do not parse; it is read for those only.
  explicit DocumentNames(const base::Loop& loop) : loop_(loop) {}

  /// "MMDDYY" puts the month first in `DictationDate`, anything else the day.
  std::string DateFormat = "MMDDYY";

  /// Valid until the next parse: its reader takes the values at once.
  DocumentRecord Record;

  /// Fills `Record` from a bare file name and says whether the name holds to the grammar. One that
  /// does not gives the record of an unknown author, dated now. Then `SystemId` is "9999" for a
  /// "wav"; for any other extension it stays what the last name that got so far gave it.
  /// `Extension` stays as it was for a name of over 255 characters.
  bool ParseDocumentName(std::string_view name);

 private:
  bool Read(std::string_view name);
  bool ReadHead(std::string_view head);
  bool ReadDate(std::string_view month, std::string_view day, std::string_view year);
  bool ReadDemographics(FieldReader& fields);
  void FallBack();

  const base::Loop& loop_;
};

/// The parts of a new document's name, as the author profile shows them.
struct NewDocument {
  std::string systemId;  ///< The number of the import directory, unpadded.
  std::string authorName;
  std::string authorId;
  base::CalendarTime sentAt;
  std::string department;
  std::string workType;
  std::string subject;
  bool priority = false;
  std::string sourceName;  ///< Its last four characters end the new name.
};

std::string ComposeDocumentName(const NewDocument& document);

/// True when the blanks of a name stand as the grammar wants them: 15 before the first `_`, none or
/// 7 behind it.
bool HasDocumentBlanks(std::string_view name);

}  // namespace tavlo::store
