#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "intake/conversion_libraries.h"
#include "platform/reach/place_errands.h"
#include "store/work_folders.h"

namespace tavlo::platform {

/// The conversion libraries of the root. Each is loaded by its fixed path when it is first needed,
/// and stays loaded until the process ends, since it may have threads. Loading and calling is done
/// by a thread beside those of the places, so that a claim on the source can be renewed meanwhile.
/// What can not stall is waited for; of the rest, that which uses no processor for the patience of
/// errands is left behind, and no conversion of that place is begun until it has returned.
class PluginConversionLibraries : public intake::ConversionLibraries {
 public:
  /// Both must outlive it.
  PluginConversionLibraries(PlaceErrands& errands, const store::WorkFolders& folders)
      : errands_(errands), folders_(folders) {}

  std::optional<std::int32_t> WriteFile(std::string_view rate, const std::string& source,
                                        const std::string& destination) override;
  /// Not where a call may stall: it would hold up the one that is waited for.
  void Prepare(std::string_view rate, const std::string& source,
               const std::string& destination) override;
  std::optional<std::uint8_t> AddHdr(const std::string& source,
                                     const std::string& destination) override;

 private:
  using Convert = std::function<std::int32_t(void* call)>;

  std::optional<std::int32_t> Run(const std::string& library, const char* name,
                                  const std::string& source, const std::string& destination,
                                  Convert convert);
  /// Whose thread makes the calls for files of this place.
  Place PlaceOfCalls(const std::string& library, const std::string& source,
                     const std::string& destination) const;

  PlaceErrands& errands_;
  const store::WorkFolders& folders_;
};

}  // namespace tavlo::platform
