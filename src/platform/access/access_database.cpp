#include "platform/access/access_database.h"

#include <chrono>
#include <memory>
#include <utility>
#include <vector>

#include "platform/access/access_rows.h"
#include "platform/access/program_output.h"
#include "platform/access/read_tables.h"
#include "store/settings_fields.h"

namespace tavlo::platform {
namespace {

/// An errand is given up after five seconds without a sign.
constexpr std::chrono::milliseconds kLongestReading{4000};
/// Our tables have less than a hundred rows with some short values in each.
constexpr std::size_t kMostOutput = std::size_t{16} * 1024 * 1024;

}  // namespace

store::OpenedDatabase OpenAccessDatabase(const std::string& path, const std::string& reader) {
  std::vector<std::string> arguments{path};
  for (const store::TableShape& shape : store::kTables) arguments.emplace_back(shape.name);
  const std::string output =
      OutputOf(reader, arguments, {.time = kLongestReading, .bytes = kMostOutput});
  AccessTables tables = ReadTables(output);
  if (tables.empty()) {
    return {{}, "The old settings database " + path + " can not be read."};
  }
  return {std::make_unique<AccessRows>(std::move(tables), path), {}};
}

}  // namespace tavlo::platform
