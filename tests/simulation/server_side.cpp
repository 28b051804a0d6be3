#include "simulation/server_side.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <iterator>

#include "simulation/names.h"

namespace tavlo::simulation {
namespace {

constexpr std::size_t kMostFiles = 12;
/// A file that stays on the server is cleared away once it was fetched so often. Nobody else would
/// keep a deck that looks every few seconds from fetching it for ever.
constexpr int kFetchedOftenEnough = 2;
/// What the program reads of a listing.
constexpr std::size_t kMostOfAListing = 25'000;
constexpr std::size_t kPlentyOfRoom = 1'000'000'000;
/// Bytes of a second. Few dictations here have more than a hundred.
constexpr std::array<std::size_t, 4> kLines{30, 100, 400, 1'000'000};
constexpr std::array<std::size_t, 4> kSlowLines{0, 3, 40, 1000};
constexpr std::array<const char*, 4> kStrangeListings{
    "no line ends here", "total 0\r\nis not there.eW2\r\n", "..\r\n.\r\n", "\n\n\n\r\n \r\nlost"};

bool CanBeAskedFor(const std::string& name) {
  return name.find_first_of(std::string("\r\n\0", 3)) == name.npos;
}

}  // namespace

ServerSide::ServerSide(Desk& desk, Ledger& ledger, const Conditions& conditions, Chance chance,
                       Trace& trace)
    : desk_(desk), ledger_(ledger), chance_(chance), trace_(trace), line_(chance_.Pick(kLines)) {
  std::ranges::copy_if(Events(), std::back_inserter(possible_),
                       [&](const Event& event) { return !event.needs || conditions.*event.needs; });
  MendServer();
  desk_.ftp.OnBegun = [this](const std::string& path, const std::string& contents) {
    desk_.landing.Begun(path);
    ledger_.ComesIn(contents, path);
  };
  desk_.ftp.OnLanded = [this](const std::string& name, const std::string& contents) {
    ledger_.HasComeIn(desk_.disk, contents);
    Sent(name, contents);
  };
  desk_.ftp.OnCut = [this](const std::string& part) {
    Note("a transfer is cut behind " + std::to_string(part.size()) + " bytes");
    ledger_.HasComeIn(desk_.disk, part);
    // Its author comes to an end, too.
    desk_.ftp.server.growing.clear();
  };
  desk_.ftp.OnDeleted = [this](const std::string& contents) { desk_.landing.Deleted(contents); };
}

const std::vector<ServerSide::Event>& ServerSide::Events() {
  static const std::vector<Event> events{
      {"a file comes", 20, nullptr, &ServerSide::PutFile},
      {"many files come", 1, nullptr, &ServerSide::PutMany},
      {"a file is dictated anew", 3, nullptr, &ServerSide::PutAnew},
      {"a file is taken away", 3, nullptr, &ServerSide::TakeAway},
      {"it fails", 6, &Conditions::serverFails, &ServerSide::Fail},
      {"a line breaks", 2, &Conditions::serverFails, &ServerSide::Break},
      {"it is mended", 5, &Conditions::serverFails, &ServerSide::MendServer},
  };
  return events;
}

void ServerSide::Act() {
  const Event& event = chance_.PickByWeight(possible_);
  Note(event.name);
  (this->*event.happen)();
}

void ServerSide::PutFile() {
  auto& files = desk_.ftp.server.files;
  if (files.size() >= kMostFiles) return;
  const std::string name = DrawServerName(chance_);
  if (name.empty() || files.contains(name)) return;
  files[name] = NewContents();
  trace_.Fold(name);
}

void ServerSide::PutMany() {
  auto& files = desk_.ftp.server.files;
  for (int count = 20 + chance_.Below(30); count > 0; --count) {
    files.try_emplace("batch " + std::to_string(count) + ".eU2", NewContents());
  }
}

void ServerSide::PutAnew() {
  // One that the program has just fetched and is about to delete could go unseen: no server can be
  // asked to delete what it sent and nothing else.
  const std::string name = SomeFile();
  if (!name.empty() && !desk_.ftp.LoggedIn()) desk_.ftp.server.files[name] = NewContents();
}

void ServerSide::TakeAway() {
  const std::string name = SomeFile();
  if (!name.empty()) desk_.ftp.server.files.erase(name);
}

void ServerSide::Fail() {
  test::SimulatedFtpServer& server = desk_.ftp.server;
  switch (chance_.Below(11)) {
    case 0:
      server.password = "changed by the clinic";
      break;
    case 1:
      server.directory = "elsewhere";
      break;
    case 2:
      server.failsListings = true;
      break;
    case 3:
      if (const std::string name = SomeFile(); !name.empty()) server.refused.push_back(name);
      break;
    case 4:
      server.refusesDeletes = true;
      break;
    case 5:
      server.tellsLengths = false;
      break;
    case 6:
      server.latency = std::chrono::milliseconds{chance_.Below(20'000)};
      break;
    case 7:
      server.growing = SomeFile();
      break;
    case 8:
      desk_.ftp.room = static_cast<std::size_t>(chance_.Below(100));
      break;
    case 9:
      server.bytesPerSecond = chance_.Pick(kSlowLines);
      break;
    default:
      server.listing = chance_.Pick(kStrangeListings);
      break;
  }
}

void ServerSide::Break() {
  test::SimulatedFtpServer& server = desk_.ftp.server;
  switch (chance_.Below(3)) {
    case 0:
      server.down = true;
      break;
    case 1:
      server.breaksAfter = static_cast<std::size_t>(chance_.Below(120));
      break;
    default:
      desk_.ftp.HangUp();
      break;
  }
}

void ServerSide::MendServer() {
  test::SimulatedFtpServer& server = desk_.ftp.server;
  const test::SimulatedFtpServer asNew;
  server.password = asNew.password;
  server.directory = asNew.directory;
  server.listing.reset();
  server.tellsLengths = true;
  server.refusesDeletes = false;
  server.refused.clear();
  server.down = false;
  server.failsListings = false;
  server.breaksAfter.reset();
  server.growing.clear();
  desk_.ftp.room = kPlentyOfRoom;
  server.latency = asNew.latency;
  server.bytesPerSecond = line_;
}

void ServerSide::Mend() {
  MendServer();
  std::erase_if(desk_.ftp.server.files,
                [](const auto& file) { return !CanBeAskedFor(file.first); });
}

void ServerSide::Sent(const std::string& name, const std::string& contents) {
  Note("has sent " + Readable(name));
  if (++sent_[contents] < kFetchedOftenEnough) return;
  auto& files = desk_.ftp.server.files;
  if (const auto found = files.find(name); found != files.end() && found->second == contents) {
    files.erase(found);
  }
}

std::string ServerSide::LeftThere(bool deletes) const {
  const auto& files = desk_.ftp.server.files;
  std::size_t listing = 0;
  for (const auto& [name, contents] : files) listing += name.size() + 2;
  if (listing > kMostOfAListing) return "";
  for (const auto& [name, contents] : files) {
    if (deletes) return "Not deleted on the server: " + Readable(name);
    if (Ledger::FilesOf(desk_.disk, contents).empty()) return "Not fetched: " + Readable(name);
  }
  return "";
}

std::string ServerSide::SomeFile() {
  const auto& files = desk_.ftp.server.files;
  if (files.empty()) return "";
  return std::next(files.begin(), chance_.Below(static_cast<int>(files.size())))->first;
}

}  // namespace tavlo::simulation
