#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

#include "base/loop.h"
#include "platform/bus/bus_connection.h"
#include "platform/bus/key_presses.h"
#include "platform/bus/portal_owner.h"
#include "platform/bus/portal_session.h"
#include "platform/reach/hush.h"
#include "remote/global_keys.h"

namespace tavlo::platform {

/// How often somebody at the desktop may be asked for keys.
struct PortalPatience {
  /// Wishes are asked for when they have stood still for so long, but for the first one of a run,
  /// which nobody is just making. Shorter costs a window of the desktop for each key that is
  /// chosen.
  base::Duration still = std::chrono::seconds(3);
  /// Until keys are asked for again that the desktop took back; it doubles each time.
  base::Duration firstRetry = std::chrono::seconds(1);
  /// So often in a row; then no more by itself.
  int retries = 6;
  /// What stood for so long begins a new row.
  base::Duration stood = std::chrono::minutes(1);
  /// A bus that does not answer for so long is none, until it does.
  base::Duration bus = std::chrono::seconds(5);
};

/// Keys of all windows as the desktop's portal gives them. It is asked for nothing, and nothing is
/// on the bus, as long as no key is wished for. One session at a time holds all keys; for other
/// wishes it is closed and a new one asked for, once they stand still and the portal has confirmed
/// what it was asked before.
///
/// What somebody at the desktop has refused is not asked for again before another wish or
/// `TryAgain`. What the portal takes back by its own end, or the bus by its, is, a few times.
class PortalKeys : public remote::GlobalKeys,
                   public WatchedFoot,
                   private BusUser,
                   private PortalOwner::Host,
                   private PortalSession::Host {
 public:
  /// Loop and bus must outlive this.
  PortalKeys(base::Loop& loop, BusConnection& bus, const PortalPatience& patience = {});
  ~PortalKeys() override;
  PortalKeys(const PortalKeys&) = delete;

  void Tell(base::Listener& listener) override { listener_ = &listener; }
  void Wish(const std::vector<remote::KeyWish>& wishes) override;
  void TryAgain() override;
  remote::KeyWay Way() const override;
  std::vector<remote::KeyGrant> Grants() const override;
  std::optional<remote::KeyEvent> Next() override { return presses_.Next(); }
  bool CanConfigure() const override { return session_ && session_->CanConfigure(); }
  void Configure() override;

  /// While a key is held, and acts so, this takes what waits on the bus: the loop only breathes
  /// then.
  bool LetGo() override;

 private:
  /// All that a listener may have looked at.
  struct Picture {
    remote::KeyWay way = remote::KeyWay::Portal;
    std::vector<remote::KeyGrant> grants;
    bool canConfigure = false;
    bool operator==(const Picture&) const = default;
  };

  void Connected(sd_bus& bus) override;
  void Lost() override;
  void OwnerChanged() override;
  void NoOwner() override;
  void SessionNews() override;
  void SessionEnded(PortalSession::End how) override;
  void KeyTold(remote::AfarAction action, bool down) override;

  /// Asks for what is wished, unless that was done, has to wait, or can not be done now.
  void GoOn();
  void AskAfter(base::Duration length);
  void Begin(sd_bus& bus);
  /// Asks anew, later each time that this is a retry.
  void AskAgain();
  /// As many retries as there may be have followed each other.
  bool RowIsOver();
  /// The portal or the bus took back what was asked for.
  void Retry();
  void DropSession();
  void Leave();
  /// Tells the listener when an event is news, or the picture is another.
  void TellNews(bool event);
  remote::KeyGrant GrantOf(const remote::KeyWish& wish) const;

  base::Loop& loop_;
  BusConnection& bus_;
  const PortalPatience patience_;
  base::Listener* listener_ = nullptr;
  Picture told_;
  KeyPresses presses_;

  std::vector<remote::KeyWish> wishes_;
  bool everWished_ = false;
  bool attached_ = false;
  PortalOwner owner_{*this};
  std::unique_ptr<PortalSession> session_;

  /// What was asked for last, by action. Then a session is there, or one is about to be, or this
  /// says how it ended: `Lost` after too many retries.
  std::vector<remote::KeyWish> asked_;
  std::optional<PortalSession::End> ended_;
  base::MonotonicTime askedAt_;
  int retries_ = 0;
  bool portalMissing_ = false;
  bool busMissing_ = false;

  base::Timer tmrPortalAsk_;
  base::Timer tmrPortalBus_;
};

}  // namespace tavlo::platform
