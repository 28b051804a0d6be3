#pragma once

#include <systemd/sd-bus.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/bus/bus_call.h"
#include "platform/bus/portal_messages.h"
#include "remote/global_keys.h"

namespace tavlo::platform {

/// One talk with one portal about some keys: from saying who the deck is over its session to the
/// keys that come of it. It keeps one request under way, and believes nothing but what this portal
/// says of this session. On the loop's thread; nothing waits, and a portal that never answers is
/// never answered for.
class PortalSession {
 public:
  enum class End {
    Missing,  ///< The portal knows no such keys.
    Refused,  ///< It, or somebody at the desktop, gives none.
    Lost,     ///< There were some, or would have been, and the portal took them back.
  };

  /// Any of these may destroy the session, but for `KeyTold`.
  class Host {
   public:
    /// `Grants`, `Version`, `CanConfigure` or `Owes` answer otherwise than before.
    virtual void SessionNews() = 0;
    /// Nothing more comes of it.
    virtual void SessionEnded(End how) = 0;
    /// A key that was given goes down or up. Going up it may be up already.
    virtual void KeyTold(remote::AfarAction action, bool down) = 0;

   protected:
    ~Host() = default;
  };

  /// `owner` is the portal's own name on the bus. The bus must stay open for as long as this lives.
  PortalSession(sd_bus& bus, std::string owner, const std::vector<remote::KeyWish>& wishes,
                Host& host);
  PortalSession(const PortalSession&) = delete;

  /// Begins the talk.
  void Begin();
  /// Takes back what was asked for, as far as the portal has a notion of it. To be destroyed then.
  void Close();

  /// The portal has not even confirmed what it was asked last.
  bool Owes() const { return question_ != nullptr; }
  /// Of its keys; 0 as long as it is not known.
  unsigned Version() const { return version_; }
  const std::vector<remote::KeyWish>& Wishes() const { return wishes_; }
  /// One for each wish, in its order.
  const std::vector<remote::KeyGrant>& Grants() const { return grants_; }
  bool CanConfigure() const { return bound_ && version_ >= kVersionWithPage; }
  void Configure();

 private:
  static constexpr unsigned kVersionWithPage = 2;

  /// What somebody may have to think about. The portal tells of the end on a path of its own.
  struct Request {
    std::string path;
    void (PortalSession::*take)(const PortalAnswer&);
  };

  template <auto Member>
  BusSlot Hear(const char* interface, const char* member);
  template <auto Member>
  void Call(const BusMessage& call);
  BusMessage NewCall(const char* interface, const char* member) const;
  /// Says something that has no answer.
  void Say(const std::string& path, const char* interface, const char* member) const;
  /// A path that this connection alone may choose, for a request or a session.
  std::string PathOf(const char* kind, const std::string& token) const;

  void HandleRegistered(sd_bus_message& reply);
  void HandleVersion(sd_bus_message& reply);
  void Create();
  void TakeCreated(const PortalAnswer& answer);
  void Bind();
  void TakeBound(const PortalAnswer& answer);
  void HandleRequested(sd_bus_message& reply);
  void HandleResponse(sd_bus_message& signal);
  void TakeAnswer(sd_bus_message& response);
  void HandleActivated(sd_bus_message& signal);
  void HandleDeactivated(sd_bus_message& signal);
  void HandleChanged(sd_bus_message& signal);
  void HandleClosed(sd_bus_message& signal);
  void HandleKey(sd_bus_message& signal, bool down);
  void TakeGiven(const std::vector<PortalShortcut>& shortcuts);
  void Fail(sd_bus_message& reply);
  /// The grant of the wish of that id; null when there is none.
  remote::KeyGrant* GrantOf(const std::string& id);

  sd_bus& bus_;
  const std::string owner_;
  const std::vector<remote::KeyWish> wishes_;
  Host& host_;
  std::vector<remote::KeyGrant> grants_;
  unsigned version_ = 0;
  bool bound_ = false;
  /// Before the portal names it, the path that it should give it; empty when nothing was asked.
  std::string session_;
  std::optional<Request> request_;
  /// Responses on other paths than the one that was asked for, until the portal names the path.
  std::vector<BusMessage> early_;
  BusSlot question_;
  std::vector<BusSlot> ears_;
};

}  // namespace tavlo::platform
