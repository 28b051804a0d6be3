#include "platform/curl/curl_ftp_client.h"

#include <algorithm>
#include <string_view>
#include <system_error>
#include <utility>

#include "ftp/server_address.h"
#include "platform/curl/ftp_failures.h"
#include "platform/curl/received_file.h"

namespace tavlo::platform {
namespace {

using base::operator""ms;

/// Between a limit of the thread and the loop's own.
constexpr base::Duration kGrace = 3000ms;
/// For news in a round of the driver.
constexpr std::chrono::milliseconds kMoment{1};

/// Whether a text may go to a server: none of its characters ends it there.
bool CanBeSent(std::string_view text) {
  return text.find_first_of(std::string_view("\r\n\0", 3)) == text.npos;
}

base::Duration PatienceFor(const FtpLimits& limits) {
  return std::max({limits.connect, limits.greeting, limits.silence}) + kGrace;
}

}  // namespace

CurlFtpClient::CurlFtpClient(base::Loop& loop, DescriptorWaits& waits, TrustStore trust,
                             FtpLimits limits)
    : loop_(loop),
      waits_(waits),
      trust_(std::move(trust)),
      limits_(limits),
      patience_(PatienceFor(limits)) {}

CurlFtpClient::~CurlFtpClient() { CurlFtpClient::fceRelease(); }

int CurlFtpClient::fceAttach(int channels) {
  if (channels != 1) return kNotOffered;
  try {
    bell_ = std::make_shared<Bell>();
  } catch (const std::system_error&) {
    return kProcessInTrouble;
  }
  answersWait_ = waits_.WaitFor(bell_->Descriptor(), "An answer of a server",
                                [bell = bell_] { bell->Silence(); });
  return 0;
}

void CurlFtpClient::fceRelease() {
  Abandon();
  answersWait_.reset();
  bell_.reset();
}

void CurlFtpClient::Abandon() {
  if (transfer_) transfer_->End(kNotConnected);
  if (const auto session = std::exchange(session_, {})) session->Cut();
}

int CurlFtpClient::fceConnect(const std::string& server, const std::string& user,
                              const std::string& password) {
  if (!CanBeSent(server) || !CanBeSent(user) || !CanBeSent(password)) return kTextRefused;
  if (waiting_) return kBusy;
  fceClose();
  passive_ = false;
  const auto address = ftp::ReadServerAddress(server);
  if (!address) return kNoAddress;
  if (!bell_) return kNotConnected;
  try {
    session_ = std::make_shared<SessionThread>(limits_, bell_);
  } catch (const std::system_error&) {
    return kProcessInTrouble;
  }
  if (!session_->Start()) {
    session_.reset();
    return kProcessInTrouble;
  }
  const int result = Ask([address = *address, trust = trust_, user, password](FtpSession& session) {
    return session.Connect(address, trust, user, password);
  });
  if (result != 0) Abandon();
  return result;
}

void CurlFtpClient::fceClose() {
  if (waiting_ || IsReceiving()) return Abandon();
  if (const auto session = std::exchange(session_, {})) session->Finish();
}

int CurlFtpClient::Ask(std::function<int(FtpSession&)> work) {
  const auto order = std::make_shared<FtpOrder>();
  order->work = std::move(work);
  return Ask(order);
}

int CurlFtpClient::Ask(const std::shared_ptr<FtpOrder>& order) {
  if (!session_) return kNotConnected;
  if (waiting_ || IsReceiving()) return kBusy;
  const std::shared_ptr<SessionThread> session = session_;
  session->Take(order);
  waiting_ = true;
  const int result = Await(session, *order);
  waiting_ = false;
  return result;
}

int CurlFtpClient::Await(const std::shared_ptr<SessionThread>& session, const FtpOrder& order) {
  const auto over = [&] { return order.returned || session_ != session; };
  std::uint64_t heard = 0;
  do {
    heard = session->Signs();
    // A loop that ends before the limit is not turned any more.
    const base::MonotonicTime limit = loop_.Now() + patience_;
    if (loop_.TurnUntil(over, limit)) return order.returned ? order.result : kNotConnected;
    if (loop_.Now() < limit) break;
  } while (session->Signs() != heard);
  Abandon();
  return kStalled;
}

int CurlFtpClient::fceSetLocalDir(const std::string& folder) {
  if (!CanBeSent(folder)) return kTextRefused;
  return Ask([folder](FtpSession& session) { return session.SetLocalFolder(folder); });
}

int CurlFtpClient::fceSetServerDir(const std::string& directory) {
  if (!CanBeSent(directory)) return kTextRefused;
  if (directory.empty()) return session_ ? 0 : kNotConnected;
  return Ask([directory](FtpSession& session) { return session.ChangeDirectory(directory); });
}

int CurlFtpClient::fceSetMode(char mode) { return mode == 'B' ? 0 : kNotOffered; }

int CurlFtpClient::fceSetInteger(int parameter, int value) {
  if (parameter == kPassive) passive_ = value != 0;
  // A get never blocks here.
  return parameter == kPassive || parameter == kBlocking ? 0 : kNotOffered;
}

std::int64_t CurlFtpClient::fceGetInteger(int parameter) const {
  if (parameter == kBytesMoved) return transfer_ ? transfer_->Moved() : 0;
  if (parameter == kPassive) return passive_ ? 1 : 0;
  return kNotOffered;
}

int CurlFtpClient::fceGetList(int kind, std::string& buffer, std::size_t size) {
  if (kind == kNames) return ListNames(buffer, size);
  return kind == kOneFile ? Describe(buffer, size) : static_cast<int>(kNotOffered);
}

int CurlFtpClient::ListNames(std::string& buffer, std::size_t size) {
  const auto order = std::make_shared<FtpOrder>();
  // The order holds its text, and itself only until it is done.
  order->work = [&text = order->text, passive = passive_, size](FtpSession& session) {
    return session.ListNames(passive, size, text);
  };
  const int result = Ask(order);
  if (result != 0) return result;
  buffer = std::move(order->text);
  return static_cast<int>(buffer.size());
}

int CurlFtpClient::Describe(std::string& buffer, std::size_t size) {
  const std::string name = buffer.substr(0, buffer.find('\0'));
  if (!CanBeSent(name) || name.empty()) return kTextRefused;
  const auto order = std::make_shared<FtpOrder>();
  order->work = [&text = order->text, passive = passive_, name](FtpSession& session) {
    return session.Describe(passive, name, text);
  };
  const int result = Ask(order);
  if (result != 0) return result;
  buffer = order->text.substr(0, size);
  return static_cast<int>(buffer.size());
}

int CurlFtpClient::fceGetFile(const std::string& name, const std::string& landing) {
  if (!CanBeSent(name) || name.empty() || !CanBeSent(landing)) return kTextRefused;
  if (!IsLandingName(landing)) return kLandingFailed;
  const auto order = std::make_shared<FtpOrder>();
  order->transfer = std::make_shared<Transfer>();
  order->work = [passive = passive_, name, landing](FtpSession& session) {
    return session.BeginFile(passive, name, landing);
  };
  const int result = Ask(order);
  if (result == kBusy) return result;
  transfer_ = order->transfer;
  seen_ = 0;
  heardAt_ = loop_.Now();
  if (result != 0) transfer_->End(result);
  return result;
}

bool CurlFtpClient::IsReceiving() const { return transfer_ && transfer_->GoesOn(); }

int CurlFtpClient::fceDriver() {
  if (!session_ || !transfer_) return kNotConnected;
  const int state = transfer_->AwaitNews(seen_, kMoment);
  seen_ = transfer_->Moved();
  if (state != Transfer::kGoesOn) return state;
  const base::MonotonicTime now = loop_.Now();
  const std::uint64_t signs = session_->Signs();
  if (std::exchange(heard_, signs) != signs) heardAt_ = now;
  if (now - heardAt_ < patience_) return state;
  Abandon();
  return kStalled;
}

void CurlFtpClient::fceDelFile(const std::string& name) {
  if (!session_ || !CanBeSent(name) || name.empty()) return;
  const auto order = std::make_shared<FtpOrder>();
  order->work = [name](FtpSession& session) {
    session.Delete(name);
    return 0;
  };
  session_->Take(order);
}

std::string CurlFtpClient::fceErrorText(int code) const { return std::string(WordsFor(code)); }

}  // namespace tavlo::platform
