#include "platform/convert/plugin_conversion_libraries.h"

#include <dlfcn.h>

#include <memory>
#include <tuple>
#include <utility>

#include "platform/convert/life_signs.h"
#include "platform/disk/open_plain_file.h"

namespace tavlo::platform {
namespace {

using PrepareCall = void (*)(const char* source);
using WriteFileCall = std::int32_t (*)(const char* source, const char* destination);
using AddHdrCall = std::uint8_t (*)(const char* source, const char* destination);

/// Mounts have numbers from 0 on, and the disks of places that of their mount.
constexpr int kBesideThePlaces = -1'000'000;

struct Found {
  void* call = nullptr;
  std::int32_t why = 0;  ///< What is answered when there is no call.
};

Found Find(const std::string& library, const char* name) {
  // A pipe would keep the loader waiting for good.
  if (!OpenPlainFile(library, Links::Followed)) return {.why = intake::kLibraryMissing};
  void* const loaded = ::dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* const call = loaded == nullptr ? nullptr : ::dlsym(loaded, name);
  return {.call = call, .why = intake::kLibraryBroken};
}

}  // namespace

std::optional<std::int32_t> PluginConversionLibraries::WriteFile(std::string_view rate,
                                                                 const std::string& source,
                                                                 const std::string& destination) {
  return Run(folders_.DssCodecPath(rate), "_WriteFile", source, destination,
             [source, destination](void* call) {
               return reinterpret_cast<WriteFileCall>(call)(source.c_str(), destination.c_str());
             });
}

void PluginConversionLibraries::Prepare(std::string_view rate, const std::string& source,
                                        const std::string& destination) {
  const std::string library = folders_.DssCodecPath(rate);
  const Place place = PlaceOfCalls(library, source, destination);
  if (place.mayStall) return;
  std::ignore = errands_.Begin(place, [library, source](Errands::Sign&) {
    const Found found = Find(library, "_Prepare");
    if (found.call != nullptr) reinterpret_cast<PrepareCall>(found.call)(source.c_str());
  });
}

std::optional<std::uint8_t> PluginConversionLibraries::AddHdr(const std::string& source,
                                                              const std::string& destination) {
  const std::optional<std::int32_t> result =
      Run(folders_.MuLawHeaderPath(), "AddHdr", source, destination,
          [source, destination](void* call) -> std::int32_t {
            return reinterpret_cast<AddHdrCall>(call)(source.c_str(), destination.c_str());
          });
  if (!result) return {};
  return static_cast<std::uint8_t>(*result);
}

std::optional<std::int32_t> PluginConversionLibraries::Run(const std::string& library,
                                                           const char* name,
                                                           const std::string& source,
                                                           const std::string& destination,
                                                           Convert convert) {
  const auto answer = std::make_shared<std::int32_t>(0);
  // Work that is left behind may still write its answer, so it owns all of this.
  const auto work = [answer, library, name, convert = std::move(convert)](Errands::Sign& sign) {
    const LifeSigns signs(sign);
    const Found found = Find(library, name);
    *answer = found.call == nullptr ? found.why : convert(found.call);
  };
  const std::optional<PlaceErrands::Begun> begun =
      errands_.Begin(PlaceOfCalls(library, source, destination), work);
  if (!begun || !errands_.Await(*begun, [] { return false; })) return {};
  return *answer;
}

Place PluginConversionLibraries::PlaceOfCalls(const std::string& library, const std::string& source,
                                              const std::string& destination) const {
  const Place place = errands_.PlaceOf(source);
  const bool mayStall = place.mayStall || errands_.PlaceOf(destination).mayStall ||
                        errands_.PlaceOf(library).mayStall;
  return {.mount = kBesideThePlaces - place.mount, .mayStall = mayStall};
}

}  // namespace tavlo::platform
