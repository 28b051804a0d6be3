#include "reports/report_text.h"

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "forms/document_columns.h"
#include "reports/column_text.h"

namespace tavlo::reports {
namespace {

namespace column = forms::document_column;

/// A text of a row, and the column of the report at which it begins.
struct Field {
  std::size_t at;
  std::size_t cell;
};

constexpr std::array kQueueFields{
    Field{2, column::PrioritySort}, Field{6, column::Saved},       Field{12, column::Author},
    Field{27, column::Id},          Field{34, column::Date},       Field{45, column::Time},
    Field{54, column::System},      Field{59, column::Department}, Field{64, column::Work},
    Field{69, column::Subject},     Field{84, column::Length},
};
constexpr std::array kCompletedFields{
    Field{2, column::PrioritySort}, Field{6, column::Author}, Field{21, column::Id},
    Field{28, column::Date},        Field{39, column::Time},  Field{48, column::System},
    Field{53, column::Department},  Field{58, column::Work},  Field{63, column::Subject},
    Field{78, column::Length},
};

struct Layout {
  std::string_view title;
  std::string_view countLabel;
  /// The right edge by which version and date are set.
  std::size_t base;
  std::size_t underscores;
  std::string_view heading;
  std::string_view separator;
  std::span<const Field> fields;
  std::size_t endAt;
  std::string_view end;
};

constexpr Layout kQueueLayout{
    .title = "Queue Report",
    .countLabel = "Queue:  ",
    .base = 98,
    .underscores = 92,
    .heading =
        " PRI SAVED AUTHOR         A-ID   DATE       TIME     S-ID DEPT WORK SUBJECT        LENGTH "
        " "
        " ",
    .separator =
        "+---+-----+--------------+------+----------+--------+----+----+----+--------------+-------"
        "-"
        "+",
    .fields = kQueueFields,
    .endAt = 74,
    .end = "End of Queue Report",
};
constexpr Layout kCompletedLayout{
    .title = "Completed Report",
    .countLabel = "Documents Completed:  ",
    .base = 90,
    .underscores = 86,
    .heading =
        " PRI AUTHOR         A-ID   DATE       TIME     S-ID DEPT WORK SUBJECT        LENGTH   ",
    .separator =
        "+---+--------------+------+----------+--------+----+----+----+--------------+--------+",
    .fields = kCompletedFields,
    .endAt = 64,
    .end = "End of Completed Report",
};

/// Some milliseconds of work.
constexpr std::size_t kRowsBetweenBreaths = 256;

std::string DateText(const base::CalendarTime& time, const std::string& dateFormat) {
  const std::string month = std::to_string(time.month);
  const std::string day = std::to_string(time.day);
  const bool monthFirst = dateFormat == "MMDDYY";
  return (monthFirst ? month + "/" + day : day + "/" + month) + "/" + std::to_string(time.year);
}

std::string TimeText(const base::CalendarTime& time) {
  const auto twoDigits = [](int number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
  };
  return twoDigits(time.hour) + ":" + twoDigits(time.minute) + ":" + twoDigits(time.second);
}

void PutLine(ColumnText& report, std::string_view text) {
  report.Put(text);
  report.EndLine();
}

void PutHeadings(ColumnText& report, const Layout& layout, const ReportFacts& facts,
                 std::size_t count) {
  const std::string date = DateText(facts.created, facts.dateFormat);
  const std::string time = TimeText(facts.created);
  const std::size_t right = layout.base - date.size() - time.size() - 20;
  report.Put("Tavlo Deck");
  report.PutAt(right, "Version " + facts.programVersionText);
  report.EndLine();
  report.Put(layout.title);
  report.PutAt(right, "Created on " + date + " at " + time);
  report.EndLine();
  report.EndLine();
  PutLine(report,
          std::string(layout.countLabel) + std::to_string(count) + "   " + facts.totalLength);
  PutLine(report, std::string(layout.underscores, '_'));
  report.EndLine();
  PutLine(report, layout.heading);
  PutLine(report, layout.separator);
}

void PutRow(ColumnText& report, const Layout& layout, const forms::Row& row) {
  for (const Field& field : layout.fields) {
    const bool there = field.cell < row.cells.size();
    report.PutAt(field.at, there ? std::string_view(row.cells[field.cell].text) : "");
  }
  report.EndLine();
  PutLine(report, layout.separator);
}

}  // namespace

std::string ReportText(ReportKind kind, const ReportFacts& facts,
                       const std::vector<forms::Row>& rows, const std::function<void()>& breathe) {
  const Layout& layout = kind == ReportKind::Queue ? kQueueLayout : kCompletedLayout;
  ColumnText report;
  PutHeadings(report, layout, facts, rows.size());
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (row % kRowsBetweenBreaths == 0) breathe();
    PutRow(report, layout, rows[row]);
  }
  PutLine(report, std::string(layout.underscores, '_'));
  report.PutAt(layout.endAt, layout.end);
  report.EndLine();
  return report.Text();
}

}  // namespace tavlo::reports
