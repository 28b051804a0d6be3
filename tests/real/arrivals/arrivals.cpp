#include "arrivals/arrivals.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/sound_files.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

void ForEachFile(const std::vector<std::string>& folders,
                 const std::function<void(const fs::path&)>& take) {
  for (const std::string& folder : folders) {
    std::error_code missing;
    for (const auto& entry : fs::directory_iterator(folder, missing)) {
      if (entry.is_regular_file()) take(entry.path());
    }
  }
}

}  // namespace

Arrivals::Arrivals(const std::vector<std::string>& folders) {
  ForEachFile(folders, [this](const fs::path& path) {
    if (path.filename().string().starts_with(".TavloWave ")) return;
    pathsByBytes_[ReadFile(path)].push_back(path);
    ++count_;
  });
}

const std::vector<std::string>& Arrivals::Of(const std::string& bytes) const {
  static const std::vector<std::string> kNone;
  const auto found = pathsByBytes_.find(bytes);
  return found == pathsByBytes_.end() ? kNone : found->second;
}

void ExpectEachOnce(const std::vector<Delivery>& deliveries,
                    const std::vector<std::string>& folders,
                    const std::function<bool(std::size_t)>& mayDiffer) {
  const Arrivals arrivals(folders);
  EXPECT_EQ(arrivals.Count(), std::ssize(deliveries));
  for (std::size_t at = 0; at < deliveries.size(); ++at) {
    const auto& paths = arrivals.Of(deliveries[at].arrived);
    if (paths.empty() && mayDiffer(at)) continue;
    EXPECT_EQ(paths.size(), 1U) << deliveries[at].name << " " << testing::PrintToString(paths);
  }
}

int NamesIn(const std::vector<std::string>& folders) {
  int count = 0;
  ForEachFile(folders, [&count](const fs::path&) { ++count; });
  return count;
}

}  // namespace tavlo::test
