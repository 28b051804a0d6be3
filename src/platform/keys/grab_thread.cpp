#include "platform/keys/grab_thread.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <utility>

namespace tavlo::platform {
namespace {

using remote::KeyGrant;
using remote::KeyState;
using remote::KeyWish;
using std::chrono::steady_clock;

std::vector<KeyGrant> AllOf(const std::vector<KeyWish>& wishes, KeyState state) {
  std::vector<KeyGrant> grants;
  for (const KeyWish& wish : wishes) grants.push_back({.action = wish.action, .state = state});
  return grants;
}

}  // namespace

struct GrabThread::Desk {
  Desk(const std::string& name, KeyEvents& events)
      : display(name), held([&events](remote::KeyEvent event) { events.Push(event); }) {}

  DisplayKeys display;
  KeyGrabs grabs{display.Connection(), display.Root()};
  HeldKeys held;
  std::vector<KeyWish> wishes;
  std::unique_ptr<KeyboardMap> keyboard;
  std::vector<std::uint8_t> signature;
  std::uint32_t layout = 0;
  std::optional<steady_clock::time_point> keyboardDue;
  std::optional<steady_clock::time_point> lookDue;
};

GrabThread::GrabThread(std::string display, KeyEvents& events)
    : display_(std::move(display)), events_(events) {
  thread_ = std::jthread([this](const std::stop_token& stop) { Run(stop); });
}

GrabThread::~GrabThread() {
  thread_.request_stop();
  wished_.Ring();
  if (ended_.try_acquire_for(kMomentToEnd)) return;
  const std::lock_guard hold(mutex_);
  // Whoever waits for an answer on a connection that is cut waits no longer.
  if (descriptor_ >= 0) ::shutdown(descriptor_, SHUT_RDWR);
}

void GrabThread::Wish(std::vector<KeyWish> wishes) {
  const std::lock_guard hold(mutex_);
  std::vector<KeyGrant> grants = AllOf(wishes, over_ ? KeyState::Refused : KeyState::Asked);
  for (std::size_t i = 0; i < wishes.size(); ++i) {
    const auto before = std::ranges::find(wishes_, wishes[i]);
    if (before != wishes_.end()) grants[i] = grants_[before - wishes_.begin()];
  }
  wishes_ = std::move(wishes);
  grants_ = std::move(grants);
  wished_.Ring();
}

std::vector<KeyGrant> GrabThread::Grants() {
  const std::lock_guard hold(mutex_);
  return grants_;
}

bool GrabThread::Over() {
  const std::lock_guard hold(mutex_);
  return over_;
}

void GrabThread::Show(int descriptor) {
  const std::lock_guard hold(mutex_);
  descriptor_ = descriptor;
}

void GrabThread::Run(const std::stop_token& stop) {
  {
    Desk desk(display_, events_);
    if (!desk.display.Lost()) {
      Show(desk.display.Descriptor());
      Serve(desk, stop);
      Show(-1);
    }
    desk.held.Forget();
  }
  TellTheEnd();
  ended_.release();
}

void GrabThread::TellTheEnd() {
  {
    const std::lock_guard hold(mutex_);
    over_ = true;
    grants_ = AllOf(wishes_, KeyState::Refused);
  }
  events_.News().Ring();
}

void GrabThread::Serve(Desk& desk, const std::stop_token& stop) {
  while (!stop.stop_requested() && !desk.display.Lost()) {
    if (wished_.Silence()) TakeWishes(desk);
    const auto now = steady_clock::now();
    if (desk.keyboardDue && now >= *desk.keyboardDue) FollowKeyboard(desk);
    if (desk.lookDue && now >= *desk.lookDue) {
      desk.held.Look(desk.display.Down());
      desk.lookDue.reset();
    }
    desk.held.Settle(now);
    // What was asked above may have brought news along.
    TakeNews(desk);
    Sleep(desk);
  }
}

void GrabThread::TakeWishes(Desk& desk) {
  {
    const std::lock_guard hold(mutex_);
    desk.wishes = wishes_;
  }
  if (desk.keyboard) {
    Grab(desk);
  } else {
    FollowKeyboard(desk);
  }
}

void GrabThread::FollowKeyboard(Desk& desk) {
  desk.keyboardDue.reset();
  std::vector<std::uint8_t> signature = desk.display.Signature();
  const std::uint32_t layout = desk.display.Layout();
  // A keyboard that is typed on in turn with another one tells each time that it is new.
  const bool same = desk.keyboard && signature == desk.signature;
  if (same && layout == desk.layout) return;
  if (!same) desk.keyboard = KeyboardMap::Read(desk.display.Connection());
  desk.signature = std::move(signature);
  desk.layout = layout;
  Grab(desk);
}

void GrabThread::Grab(Desk& desk) {
  if (!desk.keyboard) return Tell(desk, AllOf(desk.wishes, KeyState::Refused));
  desk.grabs.Become(desk.wishes, *desk.keyboard, desk.layout);
  desk.held.Become(desk.grabs.Chords(), desk.display.Down(), desk.keyboard->Repeating());
  Tell(desk, desk.grabs.Grants());
}

void GrabThread::Tell(const Desk& desk, const std::vector<KeyGrant>& grants) {
  {
    const std::lock_guard hold(mutex_);
    // By now there may be other wishes, which are answered next.
    if (grants == grants_ || desk.wishes != wishes_) return;
    grants_ = grants;
  }
  events_.News().Ring();
}

void GrabThread::TakeNews(Desk& desk) {
  using Kind = DisplayNews::Kind;
  while (const std::optional<DisplayNews> news = desk.display.Next()) {
    if (news->kind == Kind::Press) {
      KeyChord key = news->key;
      if (desk.keyboard) key.modifiers &= static_cast<std::uint16_t>(~desk.keyboard->Locks());
      desk.display.Answer(*news, desk.held.Press(key));
    } else if (news->kind == Kind::Release) {
      desk.display.Answer(*news, desk.held.Release(news->key.keycode, steady_clock::now()));
    } else if (news->kind == Kind::Keyboard) {
      desk.keyboardDue = steady_clock::now() + kKeyboardSettles;
    }
  }
  if (!desk.held.Any() || desk.display.HasKeyboard()) {
    desk.lookDue.reset();
  } else if (!desk.lookDue) {
    desk.lookDue = steady_clock::now() + kBetweenLooks;
  }
}

void GrabThread::Sleep(const Desk& desk) {
  std::optional<steady_clock::time_point> due;
  for (const auto& next : {desk.keyboardDue, desk.lookDue, desk.held.NextSettling()}) {
    if (next) due = due ? std::min(*due, *next) : *next;
  }
  int milliseconds = -1;
  if (due) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*due - steady_clock::now());
    milliseconds = static_cast<int>(std::max<std::int64_t>(left.count(), 0));
  }
  std::array<pollfd, 2> waits{pollfd{desk.display.Descriptor(), POLLIN, 0},
                              pollfd{wished_.Descriptor(), POLLIN, 0}};
  ::poll(waits.data(), waits.size(), milliseconds);
}

}  // namespace tavlo::platform
