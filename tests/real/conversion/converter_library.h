#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "conversion_code.h"
#include "support/temporary_folder.h"

namespace tavlo::test {

using conversion::ConversionCode;

/// A conversion library as it is installed.
class ConverterLibrary {
 public:
  explicit ConverterLibrary(const std::string& name)
      : library_(::dlopen((std::string(TAVLO_LIBRARIES "/") + name + ".so").c_str(), RTLD_NOW)) {
    EXPECT_NE(library_, nullptr) << ::dlerror();
  }

  ConversionCode WriteFile(const std::string& source, const std::string& destination) const {
    return static_cast<ConversionCode>(
        Call<std::int32_t>("_WriteFile")(source.c_str(), destination.c_str()));
  }
  ConversionCode AddHdr(const std::string& source, const std::string& destination) const {
    return static_cast<ConversionCode>(
        Call<std::uint8_t>("AddHdr")(source.c_str(), destination.c_str()));
  }

  void Prepare(const char* source) const {
    reinterpret_cast<void (*)(const char*)>(::dlsym(library_, "_Prepare"))(source);
  }

  template <typename Result>
  auto Call(const char* name) const -> Result (*)(const char*, const char*) {
    return reinterpret_cast<Result (*)(const char*, const char*)>(::dlsym(library_, name));
  }

 private:
  void* const library_;
};

/// The names of all that stands in a folder, those with a dot too.
inline std::vector<std::string> NamesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().filename());
  }
  return names;
}

/// The samples of a wave of 16 bits that has nothing but the plain header of 44 bytes.
inline std::vector<std::int16_t> SamplesOf(const std::string& wave) {
  std::vector<std::int16_t> samples(wave.size() < 44 ? 0 : (wave.size() - 44) / 2);
  std::memcpy(samples.data(), wave.data() + 44, 2 * samples.size());
  return samples;
}

}  // namespace tavlo::test
