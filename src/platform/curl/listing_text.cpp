#include "platform/curl/listing_text.h"

#include <algorithm>

namespace tavlo::platform {

void ListingText::Take(std::string_view bytes) {
  came_ += bytes.size();
  kept_.append(bytes.substr(0, most_ - kept_.size()));
}

std::string ListingText::Names() const {
  std::string names;
  const bool hasBoth = kept_.find("\r\n") != kept_.npos;
  if (hasBoth) {
    names = kept_;
  } else {
    const auto lines = static_cast<std::size_t>(std::ranges::count(kept_, '\n'));
    names.reserve(kept_.size() + lines + 2);
    for (const char character : kept_) {
      if (character == '\n') names += '\r';
      names += character;
    }
  }
  // The last name of some listings has nothing behind it; that of one that was cut is no name.
  const bool whole = came_ == kept_.size();
  if (whole && !names.empty() && !names.ends_with("\r\n")) {
    names += names.ends_with('\r') ? "\n" : "\r\n";
  }
  names.resize(std::min(names.size(), most_));
  return names;
}

std::string LineAbout(std::string_view listing, std::string_view name) {
  while (!listing.empty()) {
    const std::size_t end = std::min(listing.find('\n'), listing.size());
    std::string_view line = listing.substr(0, end);
    listing.remove_prefix(std::min(end + 1, listing.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.size() <= name.size() || !line.ends_with(name)) continue;
    const char before = line[line.size() - name.size() - 1];
    if (before == ' ' || before == '/') return std::string(line);
  }
  return {};
}

std::string LineAbout(std::int64_t length, std::string_view name) {
  return "- 1 ftp ftp " + std::to_string(length) + " bytes " + std::string(name);
}

}  // namespace tavlo::platform
