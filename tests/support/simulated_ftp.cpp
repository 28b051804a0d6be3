#include "support/simulated_ftp.h"

#include <algorithm>
#include <utility>

#include "window/guards.h"

namespace tavlo::test {
namespace {

bool MayNotTravel(const std::string& text) {
  return text.find_first_of(std::string("\r\n\0", 3)) != text.npos;
}

}  // namespace

bool SimulatedFtpClient::Misuses(const std::string& call) {
  if (waits_ || released_) misuses.push_back(call);
  return waits_ || released_;
}

bool SimulatedFtpClient::Asks(const std::string& call, base::Duration takes) {
  calls.push_back(call);
  if (Misuses(call)) return false;
  const window::Raised waiting(waits_);
  if (Meanwhile) Meanwhile();
  const base::MonotonicTime answer = loop_.Now() + takes;
  const auto isOver = [this] { return !attached || disk_.Crashed(); };
  loop_.TurnUntil([&] { return isOver() || loop_.Now() >= answer; }, answer);
  return !isOver();
}

bool SimulatedFtpClient::AsksServer(const std::string& call) {
  const bool silent = connected_ && server.down;
  if (!Asks(call, silent ? kSilenceLimit : server.latency)) return false;
  if (server.down) LogOut();
  return connected_;
}

int SimulatedFtpClient::fceAttach(int channels) {
  if (missing || channels != 1) return kFirstOwn;
  attached = true;
  released_ = false;
  return 0;
}

void SimulatedFtpClient::fceRelease() {
  LogOut();
  attached = false;
  released_ = true;
}

int SimulatedFtpClient::fceConnect(const std::string& address, const std::string& user,
                                   const std::string& password) {
  LogOut();
  passive = 0;
  if (MayNotTravel(address + user + password)) return kTextRefused;
  const bool answers = !server.down && address == server.address;
  if (!Asks("connect", answers ? server.latency : kConnectLimit)) return kNotConnected;
  if (!answers) return kNoAnswer;
  if (user != server.user || password != server.password) return kLogInRefused;
  ++server.logIns;
  ++server.loggedIn;
  connected_ = true;
  inDirectory_ = server.directory.empty();
  return 0;
}

void SimulatedFtpClient::LogOut() {
  if (connected_) --server.loggedIn;
  connected_ = false;
  if (!transfer_) return;
  const std::string part = transfer_->contents.substr(0, static_cast<std::size_t>(moved_));
  transfer_.reset();
  if (OnCut) OnCut(part);
}

void SimulatedFtpClient::HangUp() {
  if (connected_) --server.loggedIn;
  connected_ = false;
}

void SimulatedFtpClient::ForgetProcess() {
  LogOut();
  attached = false;
}

void SimulatedFtpClient::fceClose() {
  calls.emplace_back("close");
  Misuses("close");
  LogOut();
}

int SimulatedFtpClient::fceSetLocalDir(const std::string& folder) {
  localFolder = folder;
  return disk_.Has(folder.substr(0, folder.size() - 1)) ? 0 : kNoFolder;
}

int SimulatedFtpClient::fceSetServerDir(const std::string& directory) {
  if (MayNotTravel(directory)) return kTextRefused;
  if (directory.empty()) return 0;
  if (!AsksServer("directory")) return kNotConnected;
  if (directory != server.directory) return kNoDirectory;
  inDirectory_ = true;
  return 0;
}

int SimulatedFtpClient::fceSetMode(char newMode) {
  mode = newMode;
  return 0;
}

int SimulatedFtpClient::fceSetInteger(int parameter, int value) {
  if (parameter == kPassive) passive = value;
  return parameter == kBlocking && value == 1 && refusesToBlock ? kNotConnected : 0;
}

std::int64_t SimulatedFtpClient::fceGetInteger(int parameter) const {
  return parameter == kBytesMoved ? movedBefore + moved_ : 0;
}

int SimulatedFtpClient::fceGetList(int kind, std::string& buffer, std::size_t size) {
  const std::string name = buffer.substr(0, buffer.find('\0'));
  if (kind == kOneFile && MayNotTravel(name)) return kTextRefused;
  if (!AsksServer(kind == kNames ? "list" : "length")) return kNotConnected;
  if (kind == kNames && server.failsListings) return kListingFailed;
  return kind == kNames ? NameList(buffer, size) : LineOf(buffer, size);
}

int SimulatedFtpClient::NameList(std::string& buffer, std::size_t size) const {
  std::string text;
  if (inDirectory_) {
    for (const auto& [name, contents] : server.files) text += name + "\r\n";
  }
  if (server.listing) text = *server.listing;
  text.resize(std::min(text.size(), size));
  std::ranges::copy(text, buffer.begin());
  return static_cast<int>(text.size());
}

int SimulatedFtpClient::LineOf(std::string& buffer, std::size_t size) const {
  const std::string name = buffer.substr(0, buffer.find('\0'));
  const auto found = server.files.find(name);
  if (found == server.files.end() || !server.tellsLengths) return 0;
  std::string line = "-rw-r--r-- 1 ftp ftp " + std::to_string(found->second.size()) +
                     " Mar 09 14:05 " + name + '\0';
  line.resize(std::min(line.size(), size));
  std::ranges::copy(line, buffer.begin());
  return static_cast<int>(line.size());
}

int SimulatedFtpClient::fceGetFile(const std::string& name, const std::string& landing) {
  if (MayNotTravel(name)) return kTextRefused;
  if (!AsksServer("get " + name)) return kNotConnected;
  const bool refuses = std::ranges::find(server.refused, name) != server.refused.end();
  const auto found = server.files.find(name);
  if (refuses || !inDirectory_ || found == server.files.end()) return kNotSent;
  const std::string path = localFolder + landing;
  if (disk_.Has(path)) return kLandingTaken;
  if (found->second.size() > room) return kNoRoom;
  if (!disk_.Has(localFolder.substr(0, localFolder.size() - 1))) return kNoFolder;
  disk_.WithFile(path, "");
  transfer_ = Transfer{.name = name,
                       .contents = found->second,
                       .path = path,
                       .file = disk_.NumberOf(path),
                       .begun = loop_.Now(),
                       .newsAt = loop_.Now()};
  moved_ = 0;
  if (OnBegun) OnBegun(path, transfer_->contents);
  return 0;
}

std::size_t SimulatedFtpClient::Come() const {
  const double seconds = std::chrono::duration<double>(loop_.Now() - transfer_->begun).count();
  return static_cast<std::size_t>(seconds * static_cast<double>(server.bytesPerSecond));
}

bool SimulatedFtpClient::Write() {
  if (!connected_ || server.down) return false;
  const std::size_t come = std::min(Come(), transfer_->contents.size());
  const bool breaks = server.breaksAfter && come >= *server.breaksAfter;
  const auto moved = static_cast<std::int64_t>(breaks ? *server.breaksAfter : come);
  if (moved != moved_) {
    transfer_->newsAt = loop_.Now();
    moved_ = moved;
    // Whoever has a file open writes on wherever it is moved to.
    const std::string path = disk_.PathOf(transfer_->file);
    const std::string part = transfer_->contents.substr(0, static_cast<std::size_t>(moved));
    if (!path.empty()) disk_.Write(path, part);
  }
  return !breaks && loop_.Now() - transfer_->newsAt < kSilenceLimit;
}

int SimulatedFtpClient::fceDriver() {
  Misuses("driver");
  if (!transfer_) return kNotConnected;
  if (disk_.Crashed()) return 1;
  if (!Write()) {
    LogOut();
    return kLost;
  }
  if (moved_ < static_cast<std::int64_t>(transfer_->contents.size()) || roundsBefore-- > 0) {
    return 1;
  }
  if (transfer_->name == server.growing) {
    LogOut();
    return kGrown;
  }
  const Transfer whole = *std::exchange(transfer_, {});
  server.sent.push_back(whole.name);
  if (OnLanded) OnLanded(whole.name, whole.contents);
  return 0;
}

void SimulatedFtpClient::fceDelFile(const std::string& name) {
  calls.push_back("delete " + name);
  Misuses("delete " + name);
  const auto found = server.files.find(name);
  if (!connected_ || disk_.Crashed() || server.refusesDeletes || found == server.files.end()) {
    return;
  }
  server.deleted.push_back(name);
  if (OnDeleted) OnDeleted(found->second);
  server.files.erase(found);
}

std::string SimulatedFtpClient::fceErrorText(int code) const {
  switch (code) {
    case kTextRefused:
      return "The text has a line break in it.";
    case kNotConnected:
      return "The connection is closed.";
    case kLandingTaken:
      return "A file of that name stands there already.";
    case kNoRoom:
      return "The disk has no room for this file.";
    case kNoAnswer:
      return "The server gives no answer.";
    case kLogInRefused:
      return "The server refuses this user and password.";
    case kNoDirectory:
      return "The server has no such directory.";
    case kListingFailed:
      return "The server does not list its files.";
    case kNotSent:
      return "The server does not send this file.";
    case kLost:
      return "The connection was lost.";
    case kGrown:
      return "The file is longer than the server said.";
    case kNoFolder:
      return "The landing folder is missing.";
    default:
      return {};
  }
}

}  // namespace tavlo::test
