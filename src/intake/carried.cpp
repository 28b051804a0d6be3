#include "intake/carried.h"

#include "store/disk_words.h"

namespace tavlo::intake {
namespace {

std::string Because(store::DiskResult why) { return std::string(store::WhyNot(why)) + "."; }

/// What happened to the file, without the reason.
std::string Happened(const std::string& source, const Carried& carried) {
  if (carried.outcome == Carried::Outcome::OutOfReach && carried.asked) {
    return "It is not known whether the file " + source + " was retrieved: ";
  }
  if (carried.arrived) {
    return "The file " + source + " was retrieved, but it was not deleted where it was: ";
  }
  return "The file " + source + " was not retrieved: ";
}

}  // namespace

base::MessageBox RetrievalFault(const std::string& source, const Carried& carried) {
  const bool unknown = carried.outcome == Carried::Outcome::OutOfReach;
  return {.title = "Tavlo Deck - Retrieval",
          .text = Happened(source, carried) +
                  Because(unknown ? store::DiskResult::OutOfReach : carried.why) +
                  "\n\nThe retrieval ends here. The next one tries it again.",
          .icon = base::Icon::Warning};
}

base::MessageBox NetworkFault(const std::string& prefix, const std::string& folder) {
  // The wording is kept as users know it, the carriage return included.
  return {.title = "Tavlo Deck - Network Fault",
          .text = prefix + folder +
                  " can not be found.\n\n\r"
                  "The network may be down.  Please try again later, or enter the configuration "
                  "menu to check the settings for this path",
          .icon = base::Icon::Warning};
}

std::string MayNotRenameInWords(const std::string& folder, store::DiskResult why) {
  return "Nothing was copied out of " + folder +
         ", for this deck can not rename its files: " + Because(why);
}

std::string NameTooLongInWords(const std::string& source) {
  return "The file " + source + " was not retrieved: its name is too long. Shorten it.";
}

std::string DisplacedInWords(const std::string& displaced) {
  return "A document of the same name came in anew; the one before is kept as " + displaced;
}

std::string KeptInWords(const std::string& source, const std::string& kept, bool arrived) {
  if (arrived)
    return "The file " + source + " was retrieved, but not deleted: it is kept as " + kept;
  return "The file " + source + " was not retrieved and is kept as " + kept;
}

std::string CutShortInWords(const std::string& folder) {
  return "Not all of " + folder +
         " was looked at: " + std::string(store::WhyNot(store::DiskResult::ProcessInTrouble)) +
         ". The next retrieval takes the rest.";
}

}  // namespace tavlo::intake
