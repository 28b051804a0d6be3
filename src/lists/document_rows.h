#pragma once

#include <functional>
#include <string>
#include <vector>

#include "forms/controls.h"
#include "store/document_name.h"

/// The rows and columns that the Queue and the Completed list have in common.
namespace tavlo::lists {

/// Columns by forms::document_column. `savedWidth` is that of the Saved column.
std::vector<forms::Column> DocumentColumns(const std::string& subjectHeading,
                                           forms::Twips savedWidth);

/// The row of a document: priority documents are red, the word Saved is blue.
forms::Row DocumentRow(const store::DocumentRecord& record, const std::string& fileName,
                       const std::string& lengthHMS);

/// What stands above a list: how many documents, and how long they take together.
std::string ListCaption(const std::string& list, int count, double totalMilliseconds);

/// The order in which the user first sees a list: priority documents first, each group oldest
/// dictation first. `breathe` is as `Table::Sort` takes it.
void SortByPriorityAndAge(forms::Table& list, const std::function<void()>& breathe);

}  // namespace tavlo::lists
