#pragma once

namespace tavlo::forms {

/// Columns of the Queue list (and of the Completed list, whose Saved column has no width). The last
/// three have no width either: the file that a row stands for, and two that only sort.
namespace document_column {
enum {
  Priority,
  Saved,
  Author,
  Id,
  Department,
  Work,
  Subject,
  Length,
  Date,
  Time,
  System,
  FileName,
  PrioritySort,
  StampSort
};
}

}  // namespace tavlo::forms
