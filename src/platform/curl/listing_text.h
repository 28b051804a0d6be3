#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tavlo::platform {

/// Keeps the beginning of a listing as it comes.
class ListingText {
 public:
  /// So many bytes are kept, and no more memory is taken, however long the listing is.
  explicit ListingText(std::size_t most) : most_(most) {}

  void Take(std::string_view bytes);
  /// All bytes that came.
  std::uint64_t Came() const { return came_; }
  const std::string& Kept() const { return kept_; }

  /// The names with CR LF behind each. In a listing with CR LF in it a lone LF is part of a name;
  /// one that has none gets it for each LF.
  std::string Names() const;

 private:
  const std::size_t most_;
  std::uint64_t came_ = 0;
  std::string kept_;
};

/// The line about a file with this name, without its end, in a listing of that file alone. Empty
/// when there is none.
std::string LineAbout(std::string_view listing, std::string_view name);
/// The line that a listing would have for a file of which only the length is known.
std::string LineAbout(std::int64_t length, std::string_view name);

}  // namespace tavlo::platform
