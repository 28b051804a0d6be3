#include "store/document_name.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "base/text.h"

namespace tavlo::store {

namespace {

/// The fields of a longer name are not read.
constexpr std::size_t kLongestNameInCharacters = 255;
constexpr std::size_t kLongestSubjectInCharacters = 15;

/// base::NumberValue, with a short cut for the plain whole numbers that nearly all fields are.
double NumberIn(std::string_view text) {
  constexpr std::size_t kShort = 9;
  std::int32_t value = 0;
  if (text.empty() || text.size() > kShort) return base::NumberValue(text);
  for (const char c : text) {
    if (c < '0' || c > '9') return base::NumberValue(text);
    value = value * 10 + (c - '0');
  }
  return value;
}

/// A field that is read as a number. A scan asks for the number often, so it is read once.
struct NumberField {
  explicit NumberField(std::string_view itsText) : text(itsText), value(NumberIn(itsText)) {}

  std::string_view text;
  double value;
};

bool Within(const NumberField& field, double lowest, double highest) {
  return field.value >= lowest && field.value <= highest;
}

bool AtMost(const NumberField& field, double highest) { return field.value <= highest; }

/// Rounds to a whole number. False, and nothing is stored, when that does not fit.
template <typename Whole>
bool Store(double number, Whole& field) {
  const double value = std::nearbyint(number);
  const bool fits =
      value >= std::numeric_limits<Whole>::min() && value <= std::numeric_limits<Whole>::max();
  if (fits) field = static_cast<Whole>(value);
  return fits;
}

/// The zero goes by value and not by length: "03" becomes "003".
std::string Padded(const NumberField& field) {
  std::string padded(field.value < 10 ? 1 : 0, '0');
  return padded += field.text;
}

std::string TwoDigits(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

void Join(std::string& result, std::initializer_list<std::string_view> parts) {
  result.clear();
  for (const auto part : parts) result += part;
}

void SetDisplayDate(std::string& result, bool monthFirst, std::string_view month,
                    std::string_view day, std::string_view year) {
  Join(result, {monthFirst ? month : day, "/", monthFirst ? day : month, "/", year});
}

/// The last three characters. Plain ASCII, which each of them as a rule is, needs no look at the
/// characters before.
std::string_view ExtensionOf(std::string_view name) {
  constexpr std::size_t kLength = 3;
  if (name.size() < kLength) return name;
  const auto last = name.substr(name.size() - kLength);
  const bool ascii = std::all_of(last.begin(), last.end(),
                                 [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  return ascii ? last : base::LastCharacters(name, kLength);
}

}  // namespace

/// Hands out the fields of a head or a tail from left to right, each closed by one blank; the last
/// one is what remains.
class FieldReader {
 public:
  explicit FieldReader(std::string_view text) : rest_(text) {}

  std::string_view Next() {
    const auto blank = rest_.find(' ');
    const auto field = rest_.substr(0, blank);
    rest_.remove_prefix(blank == rest_.npos ? rest_.size() : blank + 1);
    return field;
  }

  NumberField NextNumber() { return NumberField(Next()); }

 private:
  std::string_view rest_;
};

namespace {

/// The tail that a dictation system may have left is tested and then forgotten.
bool TailIsValid(std::string_view tail) {
  if (std::count(tail.begin(), tail.end(), ' ') != 7) return false;
  FieldReader fields(tail);
  fields.Next();
  const bool valid = Within(fields.NextNumber(), 901, 989) && Within(fields.NextNumber(), 1, 12) &&
                     Within(fields.NextNumber(), 1, 31) &&
                     Within(fields.NextNumber(), 1995, 2100) && AtMost(fields.NextNumber(), 24) &&
                     AtMost(fields.NextNumber(), 59);
  if (!valid) return false;
  const auto last = fields.Next();
  const auto dot = last.find('.');
  return dot != last.npos && AtMost(NumberField(last.substr(0, dot)), 59);
}

bool SystemIdIsValid(std::string_view systemId) {
  const double value = NumberIn(systemId);
  return value <= 9999 && (value != 0 || systemId.starts_with('0'));
}

}  // namespace

bool HasDocumentBlanks(std::string_view name) {
  const auto head = name.substr(0, name.find('_'));
  if (std::count(head.begin(), head.end(), ' ') != 15) return false;
  const auto behind = std::count(head.end(), name.end(), ' ');
  return behind == 0 || behind == 7;
}

bool DocumentNames::ParseDocumentName(std::string_view name) {
  const bool holds = Read(name);
  if (!holds) FallBack();
  return holds;
}

bool DocumentNames::Read(std::string_view name) {
  if (name.size() > kLongestNameInCharacters &&
      base::CharacterCount(name) > kLongestNameInCharacters)
    return false;
  Record.Extension = ExtensionOf(name);
  if (!HasDocumentBlanks(name)) return false;
  const auto headEnd = name.find('_');
  if (!ReadHead(name.substr(0, headEnd)) || headEnd == name.npos) return false;
  const auto behind = name.substr(headEnd + 1);
  return behind.starts_with('.') || TailIsValid(behind);
}

bool DocumentNames::ReadHead(std::string_view head) {
  FieldReader fields(head);
  Record.SystemId = fields.Next();
  if (!SystemIdIsValid(Record.SystemId)) return false;
  fields.Next();
  Record.Field2 = "0";
  Record.AuthorName = fields.Next();
  const auto authorId = fields.NextNumber();
  if (!Within(authorId, 1, 999'999) || !Store(authorId.value, Record.AuthorId)) return false;
  const auto month = fields.Next();
  const auto day = fields.Next();
  const auto year = fields.Next();
  if (!ReadDate(month, day, year)) return false;
  const auto hour = fields.NextNumber();
  const auto minute = fields.NextNumber();
  const auto second = fields.NextNumber();
  if (!AtMost(hour, 24) || !AtMost(minute, 59) || !AtMost(second, 59)) return false;
  const auto paddedHour = Padded(hour);
  const auto paddedMinute = Padded(minute);
  const auto paddedSecond = Padded(second);
  Join(Record.DictationTime, {paddedHour, ":", paddedMinute, ":", paddedSecond});
  Record.DictationStamp.append(paddedHour).append(paddedMinute).append(paddedSecond);
  return ReadDemographics(fields);
}

bool DocumentNames::ReadDate(std::string_view monthText, std::string_view dayText,
                             std::string_view yearText) {
  const NumberField month(monthText);
  const NumberField day(dayText);
  const NumberField year(yearText);
  if (!Within(month, 1, 12) || !Within(day, 1, 31) || !Within(year, 1995, 2100)) return false;
  const auto paddedMonth = Padded(month);
  const auto paddedDay = Padded(day);
  SetDisplayDate(Record.DictationDate, DateFormat == "MMDDYY", paddedMonth, paddedDay, year.text);
  // The date's part of the stamp is its key, too; the time comes behind it.
  Join(Record.DictationStamp, {year.text, paddedMonth, paddedDay});
  return Store(NumberIn(Record.DictationStamp), Record.DictationDateKey);
}

bool DocumentNames::ReadDemographics(FieldReader& fields) {
  const auto department = fields.NextNumber();
  if (!Within(department, 1, 99) || !Store(department.value, Record.Department)) return false;
  const auto reserved = fields.NextNumber();
  if (!AtMost(reserved, 89) || !Store(reserved.value, Record.Field12)) return false;
  const auto workType = fields.NextNumber();
  if (!AtMost(workType, 99) || !Store(workType.value, Record.WorkType)) return false;
  Record.Subject = fields.Next();
  const bool longSubject = Record.Subject.size() > kLongestSubjectInCharacters &&
                           base::CharacterCount(Record.Subject) > kLongestSubjectInCharacters;
  if (longSubject || !Store(fields.NextNumber().value, Record.SavedPosition)) return false;
  Record.Priority = fields.Next();
  return Record.Priority == "P" || Record.Priority == "0";
}

void DocumentNames::FallBack() {
  const base::CalendarTime now = loop_.WallClock();
  const auto month = TwoDigits(now.month);
  const auto day = TwoDigits(now.day);
  const auto year = std::to_string(now.year);
  const auto hour = TwoDigits(now.hour);
  const auto minute = TwoDigits(now.minute);
  const auto second = TwoDigits(now.second);
  Record.Field2 = "0";
  Record.AuthorName = "Unknown";
  Record.AuthorId = 999'999;
  Record.DictationDateKey = now.year * 10'000 + now.month * 100 + now.day;
  SetDisplayDate(Record.DictationDate, DateFormat == "MMDDYY", month, day, year);
  Join(Record.DictationTime, {hour, ":", minute, ":", second});
  Join(Record.DictationStamp, {year, month, day, hour, minute, second});
  Record.Department = 1;
  Record.Field12 = 0;
  Record.WorkType = 0;
  Record.Subject = "0";
  Record.SavedPosition = 0;
  Record.Priority = "0";
  Record.FormatPrefix = "e";
  Record.FormatSuffix = "2";
  if (Record.Extension == "wav") {
    Record.FormatLetter = "W";
    Record.SystemId = "9999";
    return;
  }
  constexpr std::array<std::string_view, 6> kKnownLetters{"E", "W", "L", "U", "S", "A"};
  if (std::find(kKnownLetters.begin(), kKnownLetters.end(), Record.FormatLetter) ==
      kKnownLetters.end()) {
    Record.FormatLetter = "U";
  }
}

std::string ComposeDocumentName(const NewDocument& document) {
  const base::CalendarTime& at = document.sentAt;
  const std::size_t idLength = base::CharacterCount(document.systemId);
  std::string name = idLength == 1 ? "000" : idLength == 2 ? "00" : "";
  name += document.systemId;
  name += " 0 ";
  name += document.authorName + " " + document.authorId;
  for (const int part : {at.month, at.day, at.year, at.hour, at.minute, at.second}) {
    name += " " + std::to_string(part);
  }
  name += " " + document.department + " 0 " + document.workType + " " + document.subject;
  name += document.priority ? " 0 P_" : " 0 0_";
  name += base::LastCharacters(document.sourceName, 4);
  return name;
}

}  // namespace tavlo::store
