#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <string>

#include "base/loop.h"
#include "intake/carried.h"
#include "intake/claims.h"
#include "intake/conversion_libraries.h"
#include "intake/import_conversion.h"
#include "intake/passes_front.h"
#include "store/disk.h"
#include "store/file_moves.h"
#include "store/work_folders.h"

namespace tavlo::intake {

/// Makes waves of what the player does not play, by the libraries of the root. A wave is made
/// behind a dot in its folder and takes its name once it is whole and on the disk; only then does
/// its source go. So no list shows half a wave, a document of that name is set aside instead of
/// overwritten, and what a library leaves behind that failed is deleted. On the loop's thread.
class Conversion : public ImportConversion {
 public:
  /// All of them must outlive it.
  struct Edges {
    base::Loop& loop;
    store::Disk& disk;
    store::WorkFolders& folders;
    store::FileMoves& moves;
    Claims& claims;
    ConversionLibraries& libraries;
    PassesFront& front;
  };
  explicit Conversion(const Edges& edges);

  /// The rate that selects the library, in kHz. Always "11", whatever is set for `WavConvMode`.
  std::string ConversionRate;
  /// Of the latest call of a DSS library. A number that does not fit is cut, as it is shown.
  std::int16_t ConversionStatus = 0;
  /// Of the latest call of the header library.
  std::uint8_t AddHdrResult = 0;

  /// A file of the recorders' folder, into the Queue. Shows what its library could not do. It may
  /// prepare meanwhile what of that folder is likely to be converted `next`.
  Carried ConvertDs2File(const std::string& entry, std::span<const std::string> next);
  /// A file without a header, into the Queue. Shows that it failed.
  Carried AddHeaderToEu2File(const std::string& entry);
  void ConvertImportDssFile(std::string& fileName) override;

 private:
  enum class Called { Success, Failure, NoAnswer };
  using Call = std::function<Called(const std::string& source, const std::string& destination)>;

  Called ConvertDssFile(const std::string& source, const std::string& destination);
  Called AddHdr(const std::string& source, const std::string& destination);
  Carried Convert(const std::string& folder, const std::string& entry, const std::string& target,
                  const Call& call);
  /// The wave is what the library says it made of the claimed file.
  Carried PutInPlace(const std::string& claimed, const std::string& wave,
                     const std::string& target);
  Carried Fail(store::DiskResult why, const store::Moved& moved = {});
  Carried LeaveBehind(const store::Moved& moved);
  void TellOfImport(const std::string& folder, const std::string& source, const Carried& carried);
  void TidyUpAtTimes(const std::string& folder);
  void ShowConversionError(const std::string& words, const std::string& title);

  const Edges edges_;
  /// Folders of waves, and when they were tidied up last.
  std::map<std::string, base::MonotonicTime> tidied_;
};

}  // namespace tavlo::intake
