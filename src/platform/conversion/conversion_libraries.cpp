#include "platform/conversion/conversion_libraries.h"

#include <dlfcn.h>

#include "conversion_code.h"
#include "platform/disk/open_plain_file.h"

namespace tavlo::platform {
namespace {

using conversion::ConversionCode;

/// `Result` is what the call is declared to return.
template <typename Result>
Result Call(const char* name, const std::string& libraryPath, const std::string& source,
            const std::string& destination) {
  // A pipe would keep the loader waiting for good.
  if (!OpenPlainFile(libraryPath, Links::Followed)) {
    return static_cast<Result>(ConversionCode::LibraryMissing);
  }
  void* const library = ::dlopen(libraryPath.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (library == nullptr) return static_cast<Result>(ConversionCode::LibraryBroken);
  using Convert = Result (*)(const char*, const char*);
  const auto convert = reinterpret_cast<Convert>(::dlsym(library, name));
  const Result result = convert == nullptr ? static_cast<Result>(ConversionCode::LibraryBroken)
                                           : convert(source.c_str(), destination.c_str());
  ::dlclose(library);
  return result;
}

}  // namespace

std::int32_t CallWriteFile(const std::string& libraryPath, const std::string& source,
                           const std::string& destination) {
  return Call<std::int32_t>("_WriteFile", libraryPath, source, destination);
}

std::uint8_t CallAddHdr(const std::string& libraryPath, const std::string& source,
                        const std::string& destination) {
  return Call<std::uint8_t>("AddHdr", libraryPath, source, destination);
}

}  // namespace tavlo::platform
