#include "platform/bus/portal_keys.h"

#include <algorithm>
#include <utility>

namespace tavlo::platform {
namespace {

using base::Duration;
using base::operator""ms;
using remote::AfarAction;
using remote::KeyGrant;
using remote::KeyState;
using remote::KeyWay;
using remote::KeyWish;
using End = PortalSession::End;

/// One wish for each action, in the order of the actions.
std::vector<KeyWish> InOrder(std::vector<KeyWish> wishes) {
  std::ranges::stable_sort(wishes, {}, &KeyWish::action);
  const auto same = [](const KeyWish& one, const KeyWish& other) {
    return one.action == other.action;
  };
  wishes.erase(std::unique(wishes.begin(), wishes.end(), same), wishes.end());
  return wishes;
}

bool Holds(const std::vector<KeyWish>& wishes, const KeyWish& wish) {
  return std::ranges::find(wishes, wish) != wishes.end();
}

}  // namespace

PortalKeys::PortalKeys(base::Loop& loop, BusConnection& bus, const PortalPatience& patience)
    : loop_(loop),
      bus_(bus),
      patience_(patience),
      tmrPortalAsk_(loop, "tmrPortalAsk", patience.still),
      tmrPortalBus_(loop, "tmrPortalBus", patience.bus) {
  tmrPortalAsk_.OnTick = [this] {
    tmrPortalAsk_.Stop();
    GoOn();
    TellNews(false);
  };
  tmrPortalBus_.OnTick = [this] {
    tmrPortalBus_.Stop();
    busMissing_ = true;
    TellNews(false);
  };
}

PortalKeys::~PortalKeys() {
  if (attached_) Leave();
}

void PortalKeys::Wish(const std::vector<KeyWish>& wishes) {
  const bool first = !std::exchange(everWished_, true);
  if (wishes == wishes_) return;
  const std::vector<KeyWish> before = std::exchange(wishes_, wishes);
  const bool released = presses_.ReleaseIf([&](AfarAction action) {
    const auto wish = std::ranges::find(before, action, &KeyWish::action);
    return wish == before.end() || !Holds(wishes_, *wish);
  });
  if (wishes_.empty()) {
    Leave();
  } else {
    retries_ = 0;
    AskAfter(first ? 0ms : patience_.still);
    if (!std::exchange(attached_, true)) {
      if (!busMissing_) tmrPortalBus_.Start();
      bus_.Attach(*this);
    }
  }
  TellNews(released);
}

void PortalKeys::TryAgain() {
  const bool waits = retries_ > 0 && tmrPortalAsk_.Enabled();
  const bool refused = std::ranges::any_of(
      Grants(), [](const KeyGrant& grant) { return grant.state == KeyState::Refused; });
  if (!refused && !waits) return;
  retries_ = 0;
  ended_.reset();
  asked_.clear();
  AskAfter(0ms);
  TellNews(false);
}

KeyWay PortalKeys::Way() const {
  return portalMissing_ || busMissing_ ? KeyWay::PortalMissing : KeyWay::Portal;
}

std::vector<KeyGrant> PortalKeys::Grants() const {
  std::vector<KeyGrant> grants;
  for (const KeyWish& wish : wishes_) grants.push_back(GrantOf(wish));
  return grants;
}

KeyGrant PortalKeys::GrantOf(const KeyWish& wish) const {
  if (session_) {
    for (std::size_t i = 0; i < session_->Wishes().size(); ++i) {
      if (session_->Wishes()[i] == wish) return session_->Grants()[i];
    }
  }
  const bool refused = Way() == KeyWay::PortalMissing || (ended_ && Holds(asked_, wish));
  return {.action = wish.action, .state = refused ? KeyState::Refused : KeyState::Asked};
}

void PortalKeys::Configure() {
  if (CanConfigure()) bus_.Speak([this](sd_bus&) { session_->Configure(); });
}

bool PortalKeys::LetGo() {
  if (wishes_.empty() || !presses_.AnyTaken()) return false;
  bus_.TakeSome();
  return presses_.LetGo();
}

void PortalKeys::Connected(sd_bus& bus) {
  tmrPortalBus_.Stop();
  busMissing_ = false;
  owner_.Hear(bus);
  GoOn();
  TellNews(false);
}

void PortalKeys::Lost() {
  const bool asked = session_ != nullptr;
  const bool refused = ended_ == End::Refused;
  session_.reset();
  owner_.Forget();
  const bool released = presses_.ReleaseAll();
  if (asked) {
    Retry();
  } else if (!refused) {
    ended_.reset();
    asked_.clear();
  }
  tmrPortalBus_.Start();
  TellNews(released);
}

void PortalKeys::OwnerChanged() {
  const bool isThere = !owner_.Name().empty();
  bool released = false;
  if (session_) {
    DropSession();
    released = presses_.ReleaseAll();
    Retry();
  } else if (isThere && (ended_ == End::Missing || (ended_ == End::Lost && !RowIsOver()))) {
    AskAgain();
  } else if (isThere) {
    GoOn();
  }
  TellNews(released);
}

void PortalKeys::NoOwner() { SessionEnded(End::Missing); }

void PortalKeys::SessionNews() {
  portalMissing_ = false;
  GoOn();
  TellNews(false);
}

void PortalKeys::SessionEnded(End how) {
  DropSession();
  const bool released = presses_.ReleaseAll();
  if (how == End::Lost) {
    Retry();
  } else {
    ended_ = how;
    portalMissing_ = how == End::Missing;
  }
  GoOn();
  TellNews(released);
}

void PortalKeys::KeyTold(AfarAction action, bool down) {
  // Other wishes may have come, which are not asked for yet.
  const auto wish = std::ranges::find(session_->Wishes(), action, &KeyWish::action);
  if (down && !Holds(wishes_, *wish)) return;
  if (down ? presses_.Press(action) : presses_.Release(action)) TellNews(true);
}

void PortalKeys::GoOn() {
  if (wishes_.empty() || tmrPortalAsk_.Enabled() || (session_ && session_->Owes())) return;
  const std::vector<KeyWish> wanted = InOrder(wishes_);
  if ((session_ || ended_) && asked_ == wanted) return;
  bus_.Speak([&](sd_bus& bus) {
    asked_ = wanted;
    askedAt_ = loop_.Now();
    ended_.reset();
    if (owner_.Name().empty()) {
      owner_.Find(bus);
    } else {
      Begin(bus);
    }
  });
}

void PortalKeys::AskAfter(Duration length) {
  tmrPortalAsk_.SetInterval(std::max<Duration>(length, 1ms));
  tmrPortalAsk_.Start();
}

void PortalKeys::Begin(sd_bus& bus) {
  DropSession();
  const bool released = presses_.ReleaseAll();
  PortalSession::Host& host = *this;
  session_ = std::make_unique<PortalSession>(bus, owner_.Name(), asked_, host);
  session_->Begin();
  TellNews(released);
}

void PortalKeys::AskAgain() {
  ended_.reset();
  asked_.clear();
  AskAfter(patience_.firstRetry * (1 << retries_));
}

bool PortalKeys::RowIsOver() {
  if (loop_.Now() - askedAt_ >= patience_.stood) retries_ = 0;
  return retries_ >= patience_.retries;
}

void PortalKeys::Retry() {
  if (RowIsOver()) {
    ended_ = End::Lost;
    return;
  }
  AskAgain();
  ++retries_;
}

void PortalKeys::DropSession() {
  if (!session_) return;
  bus_.Speak([this](sd_bus&) {
    session_->Close();
    session_.reset();
  });
  session_.reset();
}

void PortalKeys::Leave() {
  tmrPortalAsk_.Stop();
  tmrPortalBus_.Stop();
  DropSession();
  bus_.Speak([this](sd_bus&) { owner_.Forget(); });
  owner_.Forget();
  asked_.clear();
  ended_.reset();
  retries_ = 0;
  attached_ = false;
  bus_.Detach(*this);
}

void PortalKeys::TellNews(bool event) {
  Picture now{.way = Way(), .grants = Grants(), .canConfigure = CanConfigure()};
  const bool changed = std::exchange(told_, std::move(now)) != told_;
  if (listener_ && (event || changed)) listener_->HandleNews();
}

}  // namespace tavlo::platform
