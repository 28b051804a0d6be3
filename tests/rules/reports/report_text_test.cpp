#include "reports/report_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "forms/document_columns.h"
#include "rules/reports/golden.h"

namespace tavlo::test {
namespace {

using reports::ReportFacts;
using reports::ReportKind;
using reports::ReportText;
using Texts = std::vector<std::string>;

/// In the order of the report's columns: priority, saved, author, author id, date, time, system id,
/// department, work type, subject, length.
forms::Row RowOf(const Texts& texts) {
  namespace column = forms::document_column;
  const auto order = {column::PrioritySort, column::Saved,   column::Author, column::Id,
                      column::Date,         column::Time,    column::System, column::Department,
                      column::Work,         column::Subject, column::Length};
  forms::Row row;
  row.cells.resize(column::StampSort + 1);
  auto text = texts.begin();
  for (const int cell : order) row.cells[static_cast<std::size_t>(cell)].text = *text++;
  // What sorts and what only shows is not in a report.
  row.cells[column::Priority].text = "not this one";
  row.cells[column::FileName].text = "nor this one";
  row.cells[column::StampSort].text = "nor that one";
  return row;
}

const Texts kUsual{"Pri",  "Saved", "Brown", "1234",   "03/09/2004", "14:05:12",
                   "0007", "2",     "17",    "cardio", "00:00:10"};

std::vector<forms::Row> ManyRows() {
  std::vector<forms::Row> rows;
  for (const Texts& texts : {
           kUsual,
           Texts{"Pri", "", "Okafor", "5", "03/09/2004", "14:06:00", "0012", "0", "0", "ward round",
                 "01:02:03"},
           Texts{"", "Saved", "", "0", "", "", "", "0", "0", "", "00:00:00"},
           Texts{"", "", "Åström", "77", "03/08/2004", "09:00:00", "0007", "255", "99",
                 "Höftplastik", "00:04:05"},
           Texts{"", "", "山田太郎", "78", "03/08/2004", "09:00:01", "0007", "1", "1", "心臓",
                 "00:04:06"},
           Texts{"", "", "Featherstonehau", "1234", "03/08/2004", "09:00:02", "0007", "2", "17",
                 "cardio", "00:00:11"},
           Texts{"", "", "Featherstonehaugh", "1234", "03/08/2004", "09:00:03", "0007", "2", "17",
                 "cardio", "00:00:12"},
           Texts{"", "", "Brown", "2147483647", "03/08/2004", "09:00:04", "0007", "2", "17",
                 "a subject that is longer than its column", "00:00:13"},
           Texts{"Priority", "Saved now", "Featherstonehaugh", "2147483647",
                 "Monday the 8th of March", "after nine", "000000007", "1000", "10000",
                 "a subject that is longer", "100:00:00"},
           Texts{"", "",
                 "a\nb\tc\x7F\u0085\u2028\x1B\xFC"
                 "d\xED\xA0\x80"
                 "e",
                 "1", "03/08/2004", "09:00:05", "0007", "2", "3", "x", "00:00:14"},
       }) {
    rows.push_back(RowOf(texts));
  }
  return rows;
}

ReportFacts Facts(const std::string& dateFormat, base::CalendarTime created,
                  const std::string& totalLength) {
  return {.programVersionText = "03.08.00.TD   1.2.3",
          .dateFormat = dateFormat,
          .created = created,
          .totalLength = totalLength};
}
const base::CalendarTime kShortDate{2004, 3, 9, 14, 5, 12};
const base::CalendarTime kLongDate{2024, 12, 31, 9, 4, 5};
const base::CalendarTime kMidnight{2024, 12, 31, 0, 0, 0};

std::string Text(ReportKind kind, const ReportFacts& facts, const std::vector<forms::Row>& rows) {
  return ReportText(kind, facts, rows, [] {});
}

TEST(ReportText, QueueWithTheMonthFirst) {
  EXPECT_EQ(Text(ReportKind::Queue, Facts("MMDDYY", kShortDate, "101:10:14"), ManyRows()),
            Golden("queue_month_first"));
}

TEST(ReportText, QueueWithTheDayFirst) {
  EXPECT_EQ(Text(ReportKind::Queue, Facts("DDMMYY", kLongDate, "101:10:14"), ManyRows()),
            Golden("queue_day_first"));
}

TEST(ReportText, CompletedWithTheMonthFirst) {
  EXPECT_EQ(Text(ReportKind::Completed, Facts("MMDDYY", kShortDate, "101:10:14"), ManyRows()),
            Golden("completed_month_first"));
}

TEST(ReportText, CompletedWithTheDayFirst) {
  EXPECT_EQ(Text(ReportKind::Completed, Facts("DDMMYY", kLongDate, "101:10:14"), ManyRows()),
            Golden("completed_day_first"));
}

TEST(ReportText, OneRow) {
  const ReportFacts facts = Facts("MMDDYY", kMidnight, "00:00:10");
  EXPECT_EQ(Text(ReportKind::Queue, facts, {RowOf(kUsual)}), Golden("queue_one_row"));
  EXPECT_EQ(Text(ReportKind::Completed, facts, {RowOf(kUsual)}), Golden("completed_one_row"));
}

TEST(ReportText, NoRow) {
  EXPECT_EQ(Text(ReportKind::Queue, Facts("", kShortDate, "00:00:00"), {}), Golden("queue_no_row"));
}

TEST(ReportText, RowThatLacksColumnsHasThemEmpty) {
  Texts empty(kUsual.size());
  const ReportFacts facts = Facts("MMDDYY", kMidnight, "00:00:00");
  EXPECT_EQ(Text(ReportKind::Queue, facts, {forms::Row{}}),
            Text(ReportKind::Queue, facts, {RowOf(empty)}));
}

TEST(ReportText, TenThousandRowsAreTenThousandLinesAndTheirSeparators) {
  const std::vector<forms::Row> rows(10'000, RowOf(kUsual));
  int breaths = 0;
  const std::string text = ReportText(ReportKind::Queue, Facts("MMDDYY", kShortDate, "27:46:40"),
                                      rows, [&breaths] { ++breaths; });
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 8 + 2 * 10'000 + 2);
  EXPECT_NE(text.find("\nQueue:  10000   27:46:40\n"), text.npos);
  // A few hundred rows between two breaths.
  EXPECT_GE(breaths, 25);
  EXPECT_LE(breaths, 50);
}

}  // namespace
}  // namespace tavlo::test
