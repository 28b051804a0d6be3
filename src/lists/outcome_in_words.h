#pragma once

#include <string>
#include <string_view>

#include "store/disk.h"
#include "store/file_moves.h"
#include "store/work_folders.h"

/// What the quiet line says when the files did not become what a key asked for. `name` is the bare
/// file name of the document that the key was for.
namespace tavlo::lists {

/// Of the rename that was to put the position into the name.
std::string SaveFailureInWords(const store::Moved& moved, const std::string& name);
/// For a name whose position can not be read back.
std::string NamelessPositionInWords(const std::string& name);

/// Where a document was to be moved: what Complete and Return to Queue do.
enum class Trip { ToCompleted, ToQueue };
/// Empty when the move did just what was asked for.
std::string MoveInWords(Trip trip, const store::Moved& moved, const std::string& name,
                        const store::WorkFolders& folders);

/// `asked`: with OutOfReach, the delete or an earlier one may still happen.
std::string DeleteFailureInWords(store::DiskResult result, bool asked, const std::string& name);
std::string DeleteAllFailureInWords(store::DiskResult result);

/// What stands in a list without rows when it is not known what its folder holds.
inline constexpr std::string_view kListIsNotWhole =
    "This list is not whole\nIt shows what is there once it can be read again.";
/// `list` is "Queue" or "Completed".
std::string CutShortInWords(std::string_view list);

}  // namespace tavlo::lists
