#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ftp/ftp_client.h"
#include "ftp/landing_name.h"
#include "ftp/server_address.h"
#include "fuzz/promise.h"
#include "platform/curl/listing_text.h"
#include "platform/curl/received_file.h"
#include "platform/curl/reply_reader.h"
#include "platform/curl/server_replies.h"

namespace tavlo::fuzz {
namespace {

constexpr std::size_t kMostOfAnAnswer = 128;
constexpr std::size_t kMostBytesOfAName = 255;
constexpr std::string_view kLineBreaks{"\r\n\0", 3};

std::string Names(std::string_view bytes, std::size_t most, std::size_t piece) {
  platform::ListingText listing(most);
  for (std::size_t at = 0; at < bytes.size(); at += piece) listing.Take(bytes.substr(at, piece));
  Promise(listing.Came() == bytes.size(), "every byte of a listing is counted");
  Promise(listing.Kept() == bytes.substr(0, most), "its beginning is kept as it came");
  return listing.Names();
}

void CheckLanding(std::string_view name) {
  const ftp::LandingName landing = ftp::LandingNameOf(name);
  const bool refused = name.empty() || name.find_first_of(kLineBreaks) != name.npos;
  Promise(refused == landing.name.empty(),
          "a name is refused for a line break and for nothing else");
  Promise(landing.why.empty() == (landing.name == name && !refused), "every change has a reason");
  if (refused) return;
  Promise(platform::IsLandingName(landing.name), "a file lands in the folder");
  Promise(landing.name.front() != '.' && landing.name.size() <= kMostBytesOfAName,
          "it is not hidden there and has a name that a folder takes");
  Promise(landing.name.find_first_of(kLineBreaks) == landing.name.npos, "which is one line");
  Promise(ftp::LandingNameOf(landing.name).why.empty(), "a harmless name stays as it is");
}

void CheckLengths(std::string_view line) {
  Promise(ftp::fceFileLength(line, 3, 7) >= 0, "a length is not negative");
  const std::string name(line.substr(0, line.find('\0')));
  for (const std::int64_t length : {std::int64_t{0}, std::int64_t{4711}}) {
    const std::string made = platform::LineAbout(length, name);
    Promise(ftp::fceFileLength(made, 3, 7) == length, "a length is read as it was written");
  }
  const std::string found = platform::LineAbout(line, "note.wav");
  Promise(found.empty() || found.ends_with("note.wav"), "a line about a file ends with its name");
}

void CheckListing(std::string_view bytes, std::size_t most) {
  const std::string names = Names(bytes, most, 1);
  Promise(names == Names(bytes, most, 1000), "a listing is the same however it comes");
  Promise(names.size() <= most, "it keeps to the buffer");
  for (const std::string_view name : ftp::LinesOf(names)) {
    Promise(ftp::fceMatchFile(names, 0, name, kMostOfAnAnswer) == name.substr(0, kMostOfAnAnswer),
            "each name is found in its listing");
    CheckLanding(name);
  }
}

void CheckReply(const platform::ServerReply& reply) {
  Promise(reply.code >= 100 && reply.code < 600, "an answer has a code");
  Promise(reply.text.size() <= platform::ReplyReader::kKept, "and takes little memory");
  const auto one = platform::PassivePort(reply);
  const auto other = platform::ExtendedPassivePort(reply);
  Promise(one.value_or(1) != 0 && other.value_or(1) != 0, "a port is one");
  for (const auto& size :
       {platform::SizeIn(reply), platform::FactsSizeIn(reply), platform::AnnouncedSize(reply)}) {
    Promise(size.value_or(0) >= 0, "a length that a server tells is not negative");
  }
  platform::WantsProtection(reply);
  platform::SaysNoFiles(reply);
}

std::vector<std::string> CheckReplies(std::string_view bytes, std::size_t piece) {
  std::vector<std::string> texts;
  platform::ReplyReader reader;
  for (std::size_t at = 0; at < bytes.size() && !reader.IsNonsense(); at += piece) {
    std::string_view rest = bytes.substr(at, piece);
    while (!rest.empty() && !reader.IsNonsense()) {
      rest.remove_prefix(reader.Take(rest));
      if (const auto reply = reader.Next()) {
        CheckReply(*reply);
        texts.push_back(reply->text);
      }
    }
  }
  return texts;
}

void CheckAddress(std::string_view text) {
  const auto address = ftp::ReadServerAddress(text);
  if (!address) return;
  Promise(address->port >= 1 && address->port <= 65535, "a server has a port");
  Promise(!address->host.empty() && address->host.find_first_of("\r\n /@%#?") == std::string::npos,
          "and a host that is one");
}

}  // namespace
}  // namespace tavlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavlo::fuzz;
  const Promptness promptness;
  std::string_view input(reinterpret_cast<const char*>(data), size);
  // The first byte says how much of a listing there is room for.
  const std::size_t most = input.empty() || input[0] == '\0' ? 25'000 : std::size_t{data[0]} * 4;
  input.remove_prefix(std::min<std::size_t>(1, input.size()));
  CheckListing(input, most);
  CheckLanding(input);
  CheckLengths(input);
  CheckAddress(input);
  Promise(CheckReplies(input, 1) == CheckReplies(input, 1000),
          "answers are the same however they come");
  return 0;
}
