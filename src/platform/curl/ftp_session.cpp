#include "platform/curl/ftp_session.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

#include "platform/curl/ftp_failures.h"
#include "platform/curl/server_replies.h"

namespace tavlo::platform {
namespace {

using ftp::FtpClient;
using How = Received::How;

/// Of the types that FTP has.
constexpr char kText = 'A';
constexpr char kBinary = 'I';

/// More at once does not come faster.
constexpr std::size_t kReadAtOnce = 256 * 1024;
/// A hundred times a directory of ten thousand documents.
constexpr std::uint64_t kLongestListing = 100'000'000;
/// A line about one file, with whatever stands around it.
constexpr std::size_t kLongestLine = 8192;
/// For a server that has been told good-bye.
constexpr std::chrono::milliseconds kMomentAtGoodbye{2000};

/// The server does not know the command, or not with this argument.
bool IsUnknown(const ServerReply& reply) { return reply.code >= 500 && reply.code <= 504; }

/// Servers take some signs of a listed name for a pattern or an option.
bool CanBeListed(const std::string& name) {
  return !name.starts_with('-') && name.find_first_of("*?[]{}~\\") == name.npos;
}

}  // namespace

FtpSession::FtpSession(const FtpLimits& limits, std::shared_ptr<Tether> tether)
    : limits_(limits), tether_(std::move(tether)), control_(limits_, *tether_) {}

int FtpSession::Lose(int fault) {
  control_.Close(fault);
  return fault;
}

int FtpSession::Connect(const ftp::ServerAddress& server, const TrustStore& trust,
                        const std::string& user, const std::string& password) {
  if (const int failure = control_.Open(server, trust)) return failure;
  if (const int failure = LogIn(user, password)) return Lose(failure);
  return 0;
}

int FtpSession::LogIn(const std::string& user, const std::string& password) {
  auto reply = control_.Ask("USER " + user);
  if (reply && reply->code == 331) reply = control_.Ask("PASS " + password);
  if (!reply) return control_.Fault() == kConnectionLost ? kServerBusy : control_.Fault();
  if (!reply->IsGood()) {
    const bool plain = control_.Party() == nullptr;
    return plain && WantsProtection(*reply) ? kProtectionWanted : kLogInRefused;
  }
  return control_.Party() == nullptr ? 0 : Protect();
}

int FtpSession::Protect() {
  // Its answer says nothing: under TLS there is no other size than this.
  if (!control_.Ask("PBSZ 0")) return control_.Fault();
  const auto reply = control_.Ask("PROT P");
  if (!reply) return control_.Fault();
  return reply->IsGood() ? 0 : kNoProtection;
}

int FtpSession::SetLocalFolder(const std::string& path) {
  auto folder = std::make_shared<LandingFolder>(path);
  if (!folder->IsOpen()) return kNoLocalFolder;
  folder_ = std::move(folder);
  return 0;
}

int FtpSession::ChangeDirectory(const std::string& directory) {
  const auto reply = control_.Ask("CWD " + directory);
  if (!reply) return control_.Fault();
  return reply->IsGood() ? 0 : kNoDirectory;
}

int FtpSession::SetType(char type) {
  if (type_ == type) return 0;
  const auto reply = control_.Ask(std::string("TYPE ") + type);
  if (!reply) return control_.Fault();
  if (!reply->IsGood()) return kNotOffered;
  type_ = type;
  return 0;
}

int FtpSession::Begin(bool passive, const std::string& command, int refused, Sending& sending) {
  DataPort port(control_, limits_, *tether_);
  int failure = passive ? port.PreparePassive() : port.PrepareActive();
  if (failure != 0) return failure;
  auto reply = control_.Ask(command);
  if (!reply) return control_.Fault();
  sending.reply = std::move(*reply);
  if (sending.reply.code >= 300) return sending.reply.code == 425 ? kNoDataConnection : refused;
  // A server that has nothing to send may say at once that it has sent all.
  sending.over = !sending.reply.IsInterim();
  if (sending.over) return 0;
  failure = port.Open(sending.link);
  // Of what the server sends on the way that was not opened nothing can be known.
  return failure != 0 ? Lose(failure) : 0;
}

int FtpSession::ReadAll(Sending& sending, Deadline end, const Sink& sink) {
  if (sending.over) return 0;
  std::vector<char> room(kReadAtOnce);
  while (true) {
    const Deadline deadline = std::min(end, In(limits_.silence));
    const Received received = sending.link.Receive(room, deadline, *tether_);
    sending.cutShort = received.how == How::CutShort;
    if (received.how == How::End || sending.cutShort) return 0;
    if (received.how == How::TimedOut || Deadline::clock::now() >= end) return kStalled;
    if (received.how == How::Broken) return kConnectionLost;
    if (const int failure = sink({room.data(), received.count})) return failure;
  }
}

int FtpSession::AwaitLastWord(const Sending& sending) {
  if (sending.over) return 0;
  const auto reply = control_.AwaitReply();
  if (!reply) return control_.Fault();
  return reply->IsGood() ? 0 : kFileCutShort;
}

int FtpSession::Receive(Sending& sending, Deadline end, const Sink& sink) {
  const int failure = ReadAll(sending, end, sink);
  sending.link.Close();
  return failure != 0 ? failure : AwaitLastWord(sending);
}

void FtpSession::GiveUp(Sending& sending) {
  sending.link.Close();
  if (!sending.over) control_.AwaitReply();
}

int FtpSession::List(bool passive, const std::string& command, ListingText& listing) {
  Sending sending;
  const int refused = Begin(passive, command, kListRefused, sending);
  if (refused == kListRefused && SaysNoFiles(sending.reply)) return 0;
  if (refused != 0) return refused;
  const int failure = Receive(sending, In(limits_.listing), [&](std::span<const char> bytes) {
    listing.Take({bytes.data(), bytes.size()});
    return listing.Came() > kLongestListing ? kListTooLong : 0;
  });
  if (failure == kFileCutShort) return kListRefused;
  return failure != 0 ? Lose(failure) : 0;
}

int FtpSession::ListNames(bool passive, std::size_t most, std::string& names) {
  if (const int failure = SetType(kText)) return failure;
  ListingText listing(most);
  if (const int failure = List(passive, "NLST", listing)) return failure;
  names = listing.Names();
  return 0;
}

std::optional<std::int64_t> FtpSession::AskLength(const std::string& name) {
  if (knowsSize_) {
    const auto reply = control_.Ask("SIZE " + name);
    if (!reply) return {};
    knowsSize_ = !IsUnknown(*reply);
    if (const auto size = SizeIn(*reply)) return size;
  }
  if (knowsFacts_) {
    const auto reply = control_.Ask("MLST " + name);
    if (!reply) return {};
    knowsFacts_ = !IsUnknown(*reply);
    if (const auto size = FactsSizeIn(*reply)) return size;
  }
  return {};
}

int FtpSession::Describe(bool passive, const std::string& name, std::string& line) {
  described_ = name;
  describedLength_ = -1;
  // In a transfer of text lengths are others, and some servers then tell none.
  if (const int failure = SetType(kBinary)) return failure;
  if (const auto length = AskLength(name)) {
    describedLength_ = *length;
    line = LineAbout(*length, name);
    return 0;
  }
  if (!control_.IsOpen()) return control_.Fault();
  if (knowsSize_ || knowsFacts_ || !CanBeListed(name)) return 0;
  ListingText listing(kLongestLine);
  if (const int failure = List(passive, "LIST " + name, listing)) {
    return failure == kListRefused ? 0 : failure;
  }
  line = LineAbout(listing.Kept(), name);
  return 0;
}

int FtpSession::BeginFile(bool passive, const std::string& name, const std::string& landing) {
  file_.reset();
  if (!control_.IsOpen()) return control_.Fault();
  if (!folder_) return kNoLocalFolder;
  auto file = std::make_unique<File>();
  if (described_ == name) file->length = describedLength_;
  if (folder_->Holds(landing)) return FtpClient::kLandingTaken;
  if (file->length > 0 && !folder_->HasRoomFor(file->length)) return FtpClient::kNoRoom;
  if (const int failure = SetType(kBinary)) return failure;
  if (const int failure = Begin(passive, "RETR " + name, kFileRefused, file->sending)) {
    return failure;
  }
  if (const int failure = Land(landing, *file)) {
    GiveUp(file->sending);
    return failure;
  }
  file_ = std::move(file);
  return 0;
}

int FtpSession::Land(const std::string& landing, File& file) const {
  if (file.length < 0) file.length = AnnouncedSize(file.sending.reply).value_or(-1);
  if (file.length > 0 && !folder_->HasRoomFor(file.length)) return FtpClient::kNoRoom;
  if (file.file.Create(*folder_, landing)) return 0;
  return errno == EEXIST ? FtpClient::kLandingTaken : kLandingFailed;
}

void FtpSession::ReceiveFile(Transfer& transfer) {
  const std::unique_ptr<File> file = std::move(file_);
  int failure = Receive(file->sending, Deadline::max(), [&](std::span<const char> bytes) -> int {
    const auto count = static_cast<std::int64_t>(bytes.size());
    // One that has grown since is no whole file, and one without an end would fill the disk.
    if (file->length >= 0 && transfer.Moved() + count > file->length) return kFileHasGrown;
    if (!file->file.Write(bytes)) return kDiskFailed;
    transfer.AddBytes(count);
    return 0;
  });
  // Where the length is known a file that is whole is whole, however its connection ended.
  const bool isCutShort = file->sending.over || file->sending.cutShort;
  const bool whole = file->length >= 0 ? transfer.Moved() == file->length : !isCutShort;
  if (failure == 0 && !whole) failure = kFileCutShort;
  if (failure == 0 && !file->file.Keep(*folder_, [this] { tether_->GiveSign(); })) {
    failure = kDiskFailed;
  }
  if (failure != 0) Lose(kConnectionLost);
  transfer.End(failure == 0 ? Transfer::kWhole : failure);
}

void FtpSession::Delete(const std::string& name) { control_.Ask("DELE " + name); }

void FtpSession::LogOut() {
  if (!control_.IsOpen()) return;
  control_.Tell("QUIT");
  // A connection that is closed over what was not read takes the good-bye along.
  tether_->Await(control_.Descriptor(), POLLIN, In(kMomentAtGoodbye));
  control_.Look();
  control_.Close(kConnectionLost);
}

}  // namespace tavlo::platform
