#include "lists/document_rows.h"

#include <string>
#include <string_view>

#include "base/text.h"
#include "forms/main_form.h"

namespace tavlo::lists {
namespace {

using forms::Colour;

constexpr Colour kBlack = 0x000000;
constexpr Colour kRed = 0xFF0000;
constexpr Colour kBlue = 0x0000FF;

}  // namespace

std::vector<forms::Column> DocumentColumns(const std::string& subjectHeading,
                                           forms::Twips savedWidth) {
  return {
      {"Pri", 375},
      {"Saved", savedWidth},
      {"Author", 1500},
      {.title = "Id", .width = 850, .figures = true},
      {.title = "Dept", .width = 600, .figures = true},
      {.title = "Work", .width = 600, .figures = true},
      {subjectHeading, 1500},
      {.title = "Length", .width = 900, .figures = true},
      {"Date", 1100},
      {"Time", 900},
      {"System", 800},
      {"File Name", 0},
      {"", 0},
      {"", 0},
  };
}

forms::Row DocumentRow(const store::DocumentRecord& record, const std::string& fileName,
                       const std::string& lengthHMS) {
  const bool priority = record.Priority == "P";
  const Colour colour = priority ? kRed : kBlack;
  const std::string_view mark = priority ? "Pri" : "";
  forms::Row row;
  row.cells.resize(forms::document_column::StampSort + 1);
  auto next = row.cells.begin();
  const auto add = [&next](std::string_view text, Colour cellColour) {
    next->text = text;
    next->colour = cellColour;
    ++next;
  };
  add(mark, colour);
  add(record.SavedPosition != 0 ? "Saved" : "", kBlue);
  add(record.AuthorName, colour);
  add(std::to_string(record.AuthorId), colour);
  add(std::to_string(record.Department), colour);
  add(std::to_string(record.WorkType), colour);
  add(record.Subject, colour);
  add(lengthHMS, colour);
  add(record.DictationDate, colour);
  add(record.DictationTime, colour);
  add(record.SystemId, colour);
  add(fileName, colour);
  add(mark, kBlack);
  add(record.DictationStamp, kBlack);
  return row;
}

std::string ListCaption(const std::string& list, int count, double totalMilliseconds) {
  return list + ":     " + std::to_string(count) + "     " + base::FormatHMS(totalMilliseconds);
}

void SortByPriorityAndAge(forms::Table& list, const std::function<void()>& breathe) {
  list.Sort(forms::document_column::StampSort, forms::SortOrder::Ascending, breathe);
  list.Sort(forms::document_column::PrioritySort, forms::SortOrder::Descending, breathe);
}

}  // namespace tavlo::lists
