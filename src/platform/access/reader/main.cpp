// Reads tables of an Access file and tells their rows on the standard output.
//
//     read_access_database FILE TABLE...
#include <cstdio>
#include <string>
#include <string_view>

#include "platform/access/reader/access_file.h"
#include "platform/access/reader/own_limits.h"
#include "platform/access/token_stream.h"

namespace {

using tavlo::platform::AccessFile;
namespace tokens = tavlo::platform::tokens;

/// More than any of our tables has.
constexpr int kMostRows = 1000;

void Tell(std::string_view token) {
  const std::string written = tokens::Written(token);
  std::fwrite(written.data(), 1, written.size(), stdout);
}

void TellTable(AccessFile& file, const std::string& name) {
  Tell(tokens::kTable);
  Tell(name);
  file.ReadTable(
      name, kMostRows,
      [](const std::string& field, const std::string& value) {
        Tell(tokens::kField);
        Tell(field);
        Tell(value);
      },
      [] {
        Tell(tokens::kRowEnd);
        // What was read whole is told even if the library does not survive the next row.
        std::fflush(stdout);
      });
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  tavlo::platform::LimitOwnProcess();
  AccessFile file(argv[1]);
  if (!file.IsOpen()) return 1;
  for (int table = 2; table < argc; ++table) TellTable(file, argv[table]);
  return 0;
}
