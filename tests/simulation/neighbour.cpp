#include "simulation/neighbour.h"

namespace tavlo::simulation {
namespace {

constexpr const char* kRootOfNeighbour = "/home/neighbour/Lyrane/TavloDeck";
/// Operations of a run that meets a few files.
constexpr int kMostOperationsToLive = 60;

}  // namespace

std::string Neighbour::InQueue() { return std::string(kRootOfNeighbour) + "/Files/InQueue/"; }

bool Neighbour::Sweep(bool mayBeKilled) {
  const bool isReachable =
      desk_.Rooms() && !desk_.disk.Places.AnyStalls() && !desk_.disk.Places.AnyOwes();
  if (atWork_ || !isReachable || desk_.disk.Crashed()) return false;
  trace_.Note("  neighbour: sweeps");
  const bool dies = mayBeKilled && chance_.OneIn(3);
  operationsToLive_ = dies ? chance_.Below(kMostOperationsToLive) : -1;
  atWork_ = desk_.neighbourIsAtWork = true;
  bool killed = false;
  try {
    Start();
    deck_->passes.RunRetrievalPasses();
  } catch (const Killed&) {
    trace_.Note("  neighbour: is killed");
    killed = true;
    deck_.reset();
  }
  atWork_ = desk_.neighbourIsAtWork = false;
  return killed;
}

void Neighbour::Start() {
  if (!deck_) {
    deck_ = std::make_unique<test::IntakeDeck>(
        loop_, desk_.disk, kRootOfNeighbour,
        intake::ClaimOwner{.host = "neighbour", .process = ++process_});
  }
  const store::WorkFolders& shared = desk_.Rooms()->folders;
  deck_->folders.Ew2QueuePath = shared.Ew2QueuePath;
  deck_->folders.Ds2QueuePath = shared.Ds2QueuePath;
  deck_->folders.Eu2QueuePath = shared.Eu2QueuePath;
  loop_.Shown.clear();
  deck_->front.said.clear();
  deck_->front.howFar.clear();
  deck_->libraries.calls.clear();
}

void Neighbour::BeforeOperation() {
  if (operationsToLive_ < 0) return;
  if (operationsToLive_-- == 0) throw Killed{};
}

}  // namespace tavlo::simulation
