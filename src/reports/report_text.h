#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/time.h"
#include "forms/controls.h"

namespace tavlo::reports {

/// The two lists of which there are reports.
enum class ReportKind { Queue, Completed };

/// What a report says besides its rows.
struct ReportFacts {
  std::string programVersionText;
  std::string dateFormat;  ///< "MMDDYY" puts the month first, anything else the day.
  base::CalendarTime created;
  std::string totalLength;  ///< Of all rows, hours:minutes:seconds.
};

/// The whole text of a report: headings, a line for each row of the list with its texts at fixed
/// columns, and a last line. Rows have the columns of forms::document_column; nothing is read but
/// the rows. `breathe` is called again and again, and the rows must stay as they are meanwhile.
std::string ReportText(ReportKind kind, const ReportFacts& facts,
                       const std::vector<forms::Row>& rows, const std::function<void()>& breathe);

}  // namespace tavlo::reports
