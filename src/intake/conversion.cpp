#include "intake/conversion.h"

#include <algorithm>
#include <optional>
#include <tuple>

#include "base/text.h"
#include "intake/carrier.h"
#include "intake/names.h"

namespace tavlo::intake {
namespace {

using base::operator""s;
using store::DiskResult;
using Outcome = Carried::Outcome;

/// This is our own decision: the one rate that a document is converted to, whatever is set.
constexpr const char* kOnlyRate = "11";

constexpr std::uint8_t kHeaderAdded = 0;
/// The source had a header already and was taken as it is.
constexpr std::uint8_t kHadAHeader = 5;

std::string FolderOfPath(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

/// Says each second how long a conversion has taken, as long as it lives.
class HowFar {
 public:
  HowFar(base::Loop& loop, PassesFront& front, std::string entry)
      : loop_(loop),
        front_(front),
        entry_(std::move(entry)),
        begun_(loop.Now()),
        tick_(loop, "tmrHowFar", 1s, base::TimerKind::Feed) {
    tick_.OnTick = [this] { Say(); };
    tick_.Start();
  }
  ~HowFar() { front_.SayHowFar({}); }
  HowFar(const HowFar&) = delete;

 private:
  void Say() {
    const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(loop_.Now() - begun_);
    front_.SayHowFar("Converting " + entry_ + ": " +
                     base::FormatHMS(static_cast<double>(passed.count())));
  }

  base::Loop& loop_;
  PassesFront& front_;
  const std::string entry_;
  const base::MonotonicTime begun_;
  base::Timer tick_;
};

}  // namespace

Conversion::Conversion(const Edges& edges) : edges_(edges) {}

Conversion::Called Conversion::ConvertDssFile(const std::string& source,
                                              const std::string& destination) {
  ConversionRate = kOnlyRate;
  const auto& rates = store::kDssCodecRates;
  if (std::ranges::find(rates, ConversionRate) == rates.end()) return Called::Failure;
  const std::optional<std::int32_t> status =
      edges_.libraries.WriteFile(ConversionRate, source, destination);
  if (!status) return Called::NoAnswer;
  ConversionStatus = static_cast<std::int16_t>(*status);
  // A failure whose number is cut to 0 is still one: its source must not go.
  return *status == 0 ? Called::Success : Called::Failure;
}

Conversion::Called Conversion::AddHdr(const std::string& source, const std::string& destination) {
  const std::optional<std::uint8_t> result = edges_.libraries.AddHdr(source, destination);
  if (!result) return Called::NoAnswer;
  AddHdrResult = *result;
  const bool added = AddHdrResult == kHeaderAdded || AddHdrResult == kHadAHeader;
  return added ? Called::Success : Called::Failure;
}

Carried Conversion::ConvertDs2File(const std::string& entry, std::span<const std::string> next) {
  const store::WorkFolders& folders = edges_.folders;
  const std::string output = WithEachReplaced(entry, ".dS2", ".wav");
  const auto convert = [&](const std::string& source, const std::string& wave) {
    for (const std::string& name : next) {
      edges_.libraries.Prepare(kOnlyRate, folders.Ds2QueuePath + name, folders.InQueuePath);
    }
    return ConvertDssFile(source, wave);
  };
  const Carried carried =
      Convert(folders.Ds2QueuePath, entry, folders.InQueuePath + output, convert);
  if (carried.outcome == Outcome::NotConverted) {
    ShowConversionError("Dss to Wav Conversion error: ", "Tavlo Deck - Conversion");
  }
  return carried;
}

Carried Conversion::AddHeaderToEu2File(const std::string& entry) {
  const store::WorkFolders& folders = edges_.folders;
  const std::string output = entry.substr(0, entry.size() - 3) + "wav";
  const Carried carried =
      Convert(folders.Eu2QueuePath, entry, folders.InQueuePath + output,
              [this](const auto& source, const auto& wave) { return AddHdr(source, wave); });
  if (carried.outcome == Outcome::NotConverted) {
    // This is our own decision: the number is that of the latest DSS conversion here, too.
    ShowConversionError("Add Header error: ", "Tavlo Deck - Add Header");
  }
  return carried;
}

void Conversion::ConvertImportDssFile(std::string& fileName) {
  const std::string source = fileName;
  // The scan goes on under this name whatever comes of the conversion.
  fileName = source.substr(0, source.size() - 4) + ".wav";
  const std::string subdirectory = edges_.front.WavImportSubdirectory();
  const std::string folder =
      edges_.folders.WavQueuePath + (subdirectory == "0" ? "" : subdirectory + "/");
  const Carried carried =
      Convert(folder, source, folder + fileName,
              [this](const auto& from, const auto& wave) { return ConvertDssFile(from, wave); });
  TellOfImport(folder, source, carried);
}

void Conversion::TellOfImport(const std::string& folder, const std::string& source,
                              const Carried& carried) {
  if (!carried.displaced.empty()) edges_.front.Say(DisplacedInWords(carried.displaced));
  switch (carried.outcome) {
    case Outcome::Arrived:
    case Outcome::TakenByAnother:
    case Outcome::InUse:
      break;
    case Outcome::NameTooLong:
      edges_.front.Say(NameTooLongInWords(folder + source));
      break;
    case Outcome::NotConverted:
      ShowConversionError("Dss to Wav Conversion error: ", "Tavlo Deck - Import Conversion");
      break;
    case Outcome::MayNotClaim:
      edges_.front.Say(MayNotRenameInWords(folder, carried.why));
      [[fallthrough]];
    case Outcome::Failed:
    case Outcome::OutOfReach:
      edges_.loop.Show(RetrievalFault(folder + source, carried));
      break;
  }
}

Carried Conversion::Convert(const std::string& folder, const std::string& entry,
                            const std::string& target, const Call& call) {
  if (IsBeingWritten(edges_.disk, target)) return {.outcome = Outcome::InUse};
  const Claims::Taken claim = edges_.claims.Take(folder, entry);
  // What a library could not read either.
  if (claim.unreadable) return {.outcome = Outcome::NotConverted};
  if (claim.result != DiskResult::Done) {
    return NotClaimed(edges_.disk, folder + entry, claim);
  }
  TidyUpAtTimes(FolderOfPath(target));
  const std::string wave = edges_.claims.PathForWave(FolderOfPath(target));
  Called called = Called::NoAnswer;
  {
    const HowFar howFar(edges_.loop, edges_.front, entry);
    called = call(claim.path, wave);
  }
  // A library that was left behind may still write its wave, but nobody gives that a name.
  if (called == Called::NoAnswer) return Fail(DiskResult::OutOfReach);
  Carried carried{.outcome = Outcome::NotConverted};
  if (called == Called::Success) {
    carried = PutInPlace(claim.path, wave, target);
    const bool waveIsLeft = carried.outcome == Outcome::TakenByAnother ||
                            (carried.outcome == Outcome::Failed && !carried.arrived);
    if (!waveIsLeft) return carried;
  } else if (edges_.claims.WasGivenBack()) {
    // It failed because its source was taken away.
    edges_.claims.LetGo();
    carried.outcome = Outcome::TakenByAnother;
  } else {
    edges_.claims.GiveBack();
  }
  // What a library leaves behind that failed is no document.
  std::ignore = edges_.disk.Delete(wave);
  return carried;
}

Carried Conversion::PutInPlace(const std::string& claimed, const std::string& wave,
                               const std::string& target) {
  // A library that only says so would cost the dictation.
  const std::optional<store::FileFacts> made = edges_.disk.Facts(wave);
  if (!made && edges_.disk.OutOfReach(wave)) return Fail(DiskResult::OutOfReach);
  if (!made || made->size == 0) return Fail(DiskResult::Failed);
  // The source must not go before the wave is sure to stay: to add nothing writes what is there.
  const DiskResult written = edges_.disk.Append(wave, "");
  if (written != DiskResult::Done) return Fail(written);
  // What was not there any more has been made anew, without a sound in it.
  const std::optional<store::FileFacts> kept = edges_.disk.Facts(wave);
  if (!kept || kept->size != made->size) return Fail(DiskResult::Failed);
  if (edges_.claims.WasGivenBack()) {
    edges_.claims.LetGo();
    return {.outcome = Outcome::TakenByAnother};
  }
  // Where attributes can not be changed the file may be deleted all the same.
  std::ignore = edges_.disk.SetAttributesNormal(claimed);
  const store::Moved moved = edges_.moves.Replace(claimed, wave, target);
  const bool sourceHasGone = moved.arrived && moved.result == DiskResult::NotFound;
  if (moved.result == DiskResult::OutOfReach) return LeaveBehind(moved);
  if (moved.result != DiskResult::Done && !sourceHasGone) return Fail(moved.result, moved);
  edges_.claims.LetGo();
  return {.displaced = moved.displaced};
}

Carried Conversion::Fail(DiskResult why, const store::Moved& moved) {
  const std::string standsAt = edges_.claims.GiveBack();
  if (why == DiskResult::OutOfReach) {
    // The wave never gets its name.
    return {.outcome = Outcome::OutOfReach, .asked = false, .displaced = moved.displaced};
  }
  return {.outcome = Outcome::Failed,
          .why = why,
          .arrived = moved.arrived,
          .standsAt = standsAt,
          .displaced = moved.displaced};
}

/// What was asked for last may happen late. The source stays under its claim, which is given back
/// once nobody renews it; by then the wave is taken back, too, if the source still stands.
Carried Conversion::LeaveBehind(const store::Moved& moved) {
  edges_.claims.LetGo();
  return {.outcome = Outcome::OutOfReach, .displaced = moved.displaced};
}

void Conversion::TidyUpAtTimes(const std::string& folder) {
  const base::MonotonicTime now = edges_.loop.Now();
  const auto before = tidied_.find(folder);
  // Nothing in it can have grown old enough since.
  if (before != tidied_.end() && now - before->second < Claims::kAbandonedAfter) return;
  tidied_[folder] = now;
  edges_.claims.TidyUp(folder);
}

void Conversion::ShowConversionError(const std::string& words, const std::string& title) {
  // A number that is not negative has a blank in front of it.
  const std::string sign = ConversionStatus < 0 ? "" : " ";
  edges_.loop.Show({.title = title,
                    .text = words + sign + std::to_string(ConversionStatus),
                    .icon = base::Icon::Warning});
}

}  // namespace tavlo::intake
