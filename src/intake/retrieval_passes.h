#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/loop.h"
#include "intake/carried.h"
#include "intake/carrier.h"
#include "intake/claims.h"
#include "intake/conversion.h"
#include "intake/file_being_received.h"
#include "intake/import_chain.h"
#include "intake/passes_front.h"
#include "intake/retrieval.h"
#include "store/disk.h"
#include "store/file_moves.h"
#include "store/work_folders.h"

namespace tavlo::intake {

/// How a pass ended.
enum class PassEnd {
  Over,
  /// Its folder could not be listed, or not to its end, or gave no answer. Was told.
  NetworkFault,
  /// A step on a file failed that no rule covers: no other pass of this run follows. Was told; the
  /// command that runs the passes goes on as after a normal run.
  EndsTheRun,
};

/// The passes over the drop folders. They decide by the end of a file's name alone, and leave alone
/// what is still being written. The patterns know no upper and lower case, while what is compared
/// and replaced in a name does. On the loop's thread, which breathes at each file, so nothing
/// interleaves; a run that is asked for within a run, in a wait of the import, does nothing.
class RetrievalPasses : public Retrieval, public FtpSort {
 public:
  /// All of them must outlive it.
  struct Edges {
    base::Loop& loop;
    store::Disk& disk;
    store::WorkFolders& folders;
    store::FileMoves& moves;
    Claims& claims;
    Conversion& conversion;
    ImportChain& importChain;
    PassesFront& front;
    const FileBeingReceived& receiving;
  };
  explicit RetrievalPasses(const Edges& edges);

  /// Nothing ever sets it. This is our own decision: that pass looks into the process's current
  /// folder.
  const std::string Ee2QueuePath;

  /// All six, in this order: what the second one sorts reaches the Queue by those after it.
  void RunRetrievalPasses() override;
  /// The first two: what belongs before a list of the import directories.
  void RunImportPasses();
  void RunFtpSort() override;

  PassEnd RetrieveEe2Files();
  PassEnd SortFtpQueue();
  PassEnd RetrieveDs2Files();
  PassEnd AutoImportAll();
  PassEnd RetrieveEu2Files();
  PassEnd RetrieveEw2Files();

 private:
  struct DropFolder {
    const char* networkPrefix;
    const std::string& path;
    const char* ending;
    /// A failure is passed over, and the file goes to the rescue folder.
    bool ignoresFailures = false;
  };
  struct Found {
    std::vector<std::string> names;
    store::Listing listing;
  };
  using Treat = std::function<Carried(const std::string& entry, std::size_t index)>;

  Found Enumerate(const DropFolder& folder);
  /// Treats each file that is free.
  PassEnd TreatEach(const DropFolder& folder, const Found& found, const Treat& treat);
  PassEnd Sweep(const DropFolder& folder, const Treat& treat);
  PassEnd EndOfEnumeration(const DropFolder& folder, const store::Listing& listing);
  /// Treats a file if it is free. Nothing when the pass goes on with the next one.
  std::optional<PassEnd> TreatIfFree(const DropFolder& folder, const std::string& entry,
                                     std::size_t index, const Treat& treat);
  std::optional<PassEnd> Settle(const DropFolder& folder, const std::string& entry,
                                const Carried& carried);
  std::optional<PassEnd> SettleIgnored(const DropFolder& folder, const std::string& entry,
                                       const Carried& carried);
  PassEnd TellNetworkFault(const DropFolder& folder);
  std::string TargetOfSorted(const std::string& entry, double stamp) const;
  double StampOfNow() const;
  void RunInOrder(const std::vector<PassEnd (RetrievalPasses::*)()>& passes);

  const Edges edges_;
  Carrier carrier_;
  bool running_ = false;
};

}  // namespace tavlo::intake
