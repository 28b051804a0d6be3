#include "platform/libraries/library_head.h"

#include <elf.h>
#include <link.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>

#include "platform/disk/open_plain_file.h"

namespace tavlo::platform {
namespace {

using Head = ElfW(Ehdr);

enum class Reading { Whole, Short, Failed };

Reading ReadHead(const std::string& path, Head& head) {
  const FileHandle file = OpenPlainFile(path, Links::Followed);
  if (!file) return Reading::Failed;
  const ssize_t got = ::pread(file.Get(), &head, sizeof head, 0);
  if (got < 0) return Reading::Failed;
  return static_cast<std::size_t>(got) == sizeof head ? Reading::Whole : Reading::Short;
}

/// Magic bytes, width of an address, order of bytes.
bool SameKind(const Head& one, const Head& other) {
  return std::equal(std::begin(one.e_ident), std::begin(one.e_ident) + EI_DATA + 1,
                    std::begin(other.e_ident));
}

}  // namespace

store::LibraryFit FitByHead(const std::string& path) {
  Head own{};
  Head head{};
  if (ReadHead("/proc/self/exe", own) != Reading::Whole) return store::LibraryFit::NotKnown;
  const Reading reading = ReadHead(path, head);
  if (reading == Reading::Failed) return store::LibraryFit::NotKnown;
  const bool fits = reading == Reading::Whole && SameKind(head, own) && head.e_type == ET_DYN &&
                    head.e_machine == own.e_machine;
  return fits ? store::LibraryFit::Fits : store::LibraryFit::Foreign;
}

}  // namespace tavlo::platform
