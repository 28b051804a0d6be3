#include "platform/bus/portal_session.h"

#include <algorithm>
#include <array>
#include <random>
#include <string_view>
#include <utility>

namespace tavlo::platform {
namespace {

using remote::KeyGrant;
using remote::KeyState;

constexpr const char* kRegistryInterface = "org.freedesktop.host.portal.Registry";
constexpr const char* kProperties = "org.freedesktop.DBus.Properties";
/// The name of the desktop entry.
constexpr const char* kEntry = "tavlodeck";
/// One request is under way, so one response is awaited.
constexpr std::size_t kMostEarly = 4;

/// Unique, and not to be guessed by others on the bus.
std::string NewToken() {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::random_device chance;
  std::string token = "tavlodeck_";
  for (int digits = 0; digits < 16; ++digits) token += kDigits[chance() % kDigits.size()];
  return token;
}

/// The portal is no more there, rather than of another opinion.
bool SaysThatItIsGone(sd_bus_message& reply) {
  constexpr std::array kNames{
      "org.freedesktop.DBus.Error.ServiceUnknown", "org.freedesktop.DBus.Error.NameHasNoOwner",
      "org.freedesktop.DBus.Error.NoReply", "org.freedesktop.DBus.Error.Disconnected"};
  return std::ranges::any_of(
      kNames, [&](const char* name) { return sd_bus_message_is_method_error(&reply, name) > 0; });
}

bool SaysThatThereIsNoSuchThing(sd_bus_message& reply) {
  constexpr std::array kNames{"org.freedesktop.DBus.Error.UnknownInterface",
                              "org.freedesktop.DBus.Error.UnknownMethod",
                              "org.freedesktop.DBus.Error.UnknownObject"};
  return std::ranges::any_of(
      kNames, [&](const char* name) { return sd_bus_message_is_method_error(&reply, name) > 0; });
}

bool IsRefusal(sd_bus_message& reply) {
  return sd_bus_message_is_method_error(&reply, nullptr) > 0;
}

}  // namespace

PortalSession::PortalSession(sd_bus& bus, std::string owner,
                             const std::vector<remote::KeyWish>& wishes, Host& host)
    : bus_(bus), owner_(std::move(owner)), wishes_(wishes), host_(host) {
  for (const remote::KeyWish& wish : wishes_) {
    grants_.push_back({.action = wish.action, .state = KeyState::Asked});
  }
}

/// Its own name can be no other's, so nobody else is heard; one for signals to the deck alone, too.
template <auto Member>
BusSlot PortalSession::Hear(const char* interface, const char* member) {
  sd_bus_slot* ear = nullptr;
  sd_bus_match_signal_async(&bus_, &ear, owner_.c_str(), nullptr, interface, member,
                            CallMember<Member, PortalSession>, TakeNoNotice, this);
  return BusSlot(ear);
}

template <auto Member>
void PortalSession::Call(const BusMessage& call) {
  if (call) question_ = Ask<Member>(bus_, *call, *this);
  if (!question_) host_.SessionEnded(End::Refused);
}

BusMessage PortalSession::NewCall(const char* interface, const char* member) const {
  sd_bus_message* call = nullptr;
  sd_bus_message_new_method_call(&bus_, &call, owner_.c_str(), kPortalPath, interface, member);
  return BusMessage(call);
}

void PortalSession::Say(const std::string& path, const char* interface, const char* member) const {
  sd_bus_message* call = nullptr;
  sd_bus_message_new_method_call(&bus_, &call, owner_.c_str(), path.c_str(), interface, member);
  const BusMessage said(call);
  if (!said) return;
  sd_bus_message_set_expect_reply(call, 0);
  sd_bus_send(&bus_, call, nullptr);
}

std::string PortalSession::PathOf(const char* kind, const std::string& token) const {
  const char* name = nullptr;
  sd_bus_get_unique_name(&bus_, &name);
  std::string sender = name ? name + 1 : "";
  std::ranges::replace(sender, '.', '_');
  return std::string(kPortalPath) + "/" + kind + "/" + sender + "/" + token;
}

void PortalSession::Begin() {
  ears_.push_back(Hear<&PortalSession::HandleResponse>(kRequestInterface, "Response"));
  ears_.push_back(Hear<&PortalSession::HandleClosed>(kSessionInterface, "Closed"));
  ears_.push_back(Hear<&PortalSession::HandleActivated>(kShortcutsInterface, "Activated"));
  ears_.push_back(Hear<&PortalSession::HandleDeactivated>(kShortcutsInterface, "Deactivated"));
  ears_.push_back(Hear<&PortalSession::HandleChanged>(kShortcutsInterface, "ShortcutsChanged"));
  BusMessage call = NewCall(kRegistryInterface, "Register");
  if (call && sd_bus_message_append(call.get(), "sa{sv}", kEntry, 0) < 0) call.reset();
  Call<&PortalSession::HandleRegistered>(call);
}

/// Few portals take such a name, and one that does not gives keys all the same.
void PortalSession::HandleRegistered(sd_bus_message& reply) {
  question_.reset();
  if (SaysThatItIsGone(reply)) return host_.SessionEnded(End::Lost);
  BusMessage call = NewCall(kProperties, "Get");
  if (call && sd_bus_message_append(call.get(), "ss", kShortcutsInterface, "version") < 0) {
    call.reset();
  }
  Call<&PortalSession::HandleVersion>(call);
}

void PortalSession::HandleVersion(sd_bus_message& reply) {
  question_.reset();
  if (SaysThatItIsGone(reply)) return host_.SessionEnded(End::Lost);
  version_ = IsRefusal(reply) ? 0 : ReadNumber(reply);
  if (version_ == 0) return host_.SessionEnded(End::Missing);
  Create();
}

void PortalSession::Create() {
  const std::string token = NewToken();
  const std::string sessionToken = NewToken();
  BusMessage call = NewCall(kShortcutsInterface, "CreateSession");
  if (call && sd_bus_message_append(call.get(), "a{sv}", 2, "handle_token", "s", token.c_str(),
                                    "session_handle_token", "s", sessionToken.c_str()) < 0) {
    call.reset();
  }
  session_ = PathOf("session", sessionToken);
  request_ = Request{.path = PathOf("request", token), .take = &PortalSession::TakeCreated};
  Call<&PortalSession::HandleRequested>(call);
}

void PortalSession::TakeCreated(const PortalAnswer& answer) {
  if (!answer.yes || answer.sessionHandle.empty()) return host_.SessionEnded(End::Refused);
  session_ = answer.sessionHandle;
  Bind();
}

void PortalSession::Bind() {
  const std::string token = NewToken();
  BusMessage call = NewCall(kShortcutsInterface, "BindShortcuts");
  const bool whole =
      call && sd_bus_message_append(call.get(), "o", session_.c_str()) >= 0 &&
      AppendWishes(*call, wishes_) >= 0 &&
      sd_bus_message_append(call.get(), "sa{sv}", "", 1, "handle_token", "s", token.c_str()) >= 0;
  if (!whole) call.reset();
  request_ = Request{.path = PathOf("request", token), .take = &PortalSession::TakeBound};
  Call<&PortalSession::HandleRequested>(call);
}

void PortalSession::TakeBound(const PortalAnswer& answer) {
  if (!answer.yes) return host_.SessionEnded(End::Refused);
  bound_ = true;
  for (KeyGrant& grant : grants_) grant.state = KeyState::Refused;
  TakeGiven(answer.shortcuts);
  host_.SessionNews();
}

void PortalSession::HandleRequested(sd_bus_message& reply) {
  question_.reset();
  if (IsRefusal(reply)) return Fail(reply);
  const std::string path = ReadPath(reply);
  if (path.empty()) return host_.SessionEnded(End::Refused);
  request_->path = path;
  const auto early = std::ranges::find_if(early_, [&](const BusMessage& response) {
    return path == sd_bus_message_get_path(response.get());
  });
  if (early == early_.end()) {
    early_.clear();
    return host_.SessionNews();
  }
  const BusMessage response = std::move(*early);
  TakeAnswer(*response);
}

void PortalSession::HandleResponse(sd_bus_message& signal) {
  if (!request_) return;
  if (request_->path == sd_bus_message_get_path(&signal)) return TakeAnswer(signal);
  if (Owes() && early_.size() < kMostEarly) early_.emplace_back(sd_bus_message_ref(&signal));
}

void PortalSession::TakeAnswer(sd_bus_message& response) {
  question_.reset();
  early_.clear();
  const auto take = request_->take;
  request_.reset();
  (this->*take)(ReadAnswer(response));
}

void PortalSession::HandleActivated(sd_bus_message& signal) { HandleKey(signal, true); }

void PortalSession::HandleDeactivated(sd_bus_message& signal) { HandleKey(signal, false); }

void PortalSession::HandleKey(sd_bus_message& signal, bool down) {
  const auto told = ReadKeySignal(signal);
  if (!told || !bound_ || told->sessionHandle != session_) return;
  const KeyGrant* const grant = GrantOf(told->id);
  if (grant && grant->state == KeyState::Held) host_.KeyTold(grant->action, down);
}

void PortalSession::HandleChanged(sd_bus_message& signal) {
  const auto told = ReadChange(signal);
  if (!told || !bound_ || told->sessionHandle != session_) return;
  TakeGiven(told->shortcuts);
  host_.SessionNews();
}

void PortalSession::HandleClosed(sd_bus_message& signal) {
  if (session_ == sd_bus_message_get_path(&signal)) host_.SessionEnded(End::Lost);
}

/// A key that is another now was let go of, for nobody may tell of the old one any more.
void PortalSession::TakeGiven(const std::vector<PortalShortcut>& shortcuts) {
  for (const PortalShortcut& shortcut : shortcuts) {
    KeyGrant* const grant = GrantOf(shortcut.id);
    if (!grant) continue;
    grant->state = KeyState::Held;
    if (std::exchange(grant->given, shortcut.trigger) != shortcut.trigger) {
      host_.KeyTold(grant->action, false);
    }
  }
}

KeyGrant* PortalSession::GrantOf(const std::string& id) {
  const auto action = ActionOf(id);
  const auto grant = std::ranges::find_if(
      grants_, [&](const KeyGrant& of) { return action && of.action == *action; });
  return grant == grants_.end() ? nullptr : &*grant;
}

void PortalSession::Fail(sd_bus_message& reply) {
  if (SaysThatItIsGone(reply)) return host_.SessionEnded(End::Lost);
  host_.SessionEnded(SaysThatThereIsNoSuchThing(reply) ? End::Missing : End::Refused);
}

void PortalSession::Configure() {
  const BusMessage call = NewCall(kShortcutsInterface, "ConfigureShortcuts");
  if (!call || sd_bus_message_append(call.get(), "osa{sv}", session_.c_str(), "", 0) < 0) return;
  sd_bus_message_set_expect_reply(call.get(), 0);
  sd_bus_send(&bus_, call.get(), nullptr);
}

void PortalSession::Close() {
  if (request_) Say(request_->path, kRequestInterface, "Close");
  if (!session_.empty()) Say(session_, kSessionInterface, "Close");
}

}  // namespace tavlo::platform
