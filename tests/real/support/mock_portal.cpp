#include "support/mock_portal.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <algorithm>
#include <atomic>
#include <deque>
#include <future>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/wake/bell.h"
#include "support/portal_words.h"

namespace tavlo::test {
namespace {

constexpr const char* kName = "org.freedesktop.portal.Desktop";
constexpr const char* kRequest = "org.freedesktop.portal.Request";
constexpr const char* kSession = "org.freedesktop.portal.Session";

using Words = std::function<void(sd_bus_message& message)>;

}  // namespace

struct MockPortal::Parts {
  /// What somebody has not answered yet.
  struct Window {
    std::string request;
    std::string session;
  };

  explicit Parts(std::string busAddress, PortalManners ofPortal)
      : address(std::move(busAddress)), manners(std::move(ofPortal)) {}

  void Run(const std::stop_token& stop);
  void RunOrders();
  void Do(const std::function<void()>& order);
  void Open();
  void Close();

  static int Take(sd_bus_message* call, void* self, sd_bus_error*) {
    return static_cast<Parts*>(self)->Take(*call);
  }
  int Take(sd_bus_message& call);
  int Register(sd_bus_message& call);
  int TellVersion(sd_bus_message& call);
  int Create(sd_bus_message& call);
  int Bind(sd_bus_message& call);
  int CloseThing(sd_bus_message& call);
  std::string PathOf(const char* kind, const std::string& token) const;
  /// Confirms a request and answers it, in the order of its manners.
  int Reply(sd_bus_message& call, const std::string& request, const std::function<void()>& answer);
  void Respond(const std::string& request, const Words& words);
  void RespondToBind(const Window& window);
  void AppendGiven(sd_bus_message& response) const;
  void Signal(const std::string& path, const char* interface, const char* member,
              const Words& words) const;

  const std::string address;
  PortalManners manners;
  sd_bus* bus = nullptr;
  bool hangs = false;

  std::vector<std::string> calls;
  std::vector<std::string> programs;
  std::vector<std::string> sessions;
  std::string lastSession;
  std::string client;
  std::vector<WishedShortcut> wished;
  std::vector<Window> windows;
  std::size_t mostWindows = 0;

  std::mutex mutex;
  std::deque<std::packaged_task<void()>> orders;
  const platform::Bell bell;
  std::jthread thread;
};

void MockPortal::Parts::Run(const std::stop_token& stop) {
  while (!stop.stop_requested()) {
    RunOrders();
    const bool listens = bus && !hangs;
    if (listens && sd_bus_process(bus, nullptr) > 0) continue;
    std::vector<pollfd> waits{{.fd = bell.Descriptor(), .events = POLLIN, .revents = 0}};
    if (listens) {
      waits.push_back({.fd = sd_bus_get_fd(bus),
                       .events = static_cast<short>(sd_bus_get_events(bus)),
                       .revents = 0});
    }
    ::poll(waits.data(), waits.size(), -1);
    bell.Silence();
  }
  Close();
}

void MockPortal::Parts::RunOrders() {
  while (true) {
    std::packaged_task<void()> order;
    {
      const std::lock_guard lock(mutex);
      if (orders.empty()) return;
      order = std::move(orders.front());
      orders.pop_front();
    }
    order();
    if (bus) sd_bus_flush(bus);
  }
}

void MockPortal::Parts::Do(const std::function<void()>& order) {
  std::packaged_task<void()> task(order);
  std::future<void> done = task.get_future();
  {
    const std::lock_guard lock(mutex);
    orders.push_back(std::move(task));
  }
  bell.Ring();
  done.get();
}

void MockPortal::Parts::Open() {
  bus = Connect(address);
  EXPECT_GE(sd_bus_add_filter(bus, nullptr, Take, this), 0);
  EXPECT_GE(sd_bus_request_name(bus, kName, 0), 0);
}

void MockPortal::Parts::Close() {
  if (bus) sd_bus_close(bus);
  bus = sd_bus_unref(bus);
  sessions.clear();
  windows.clear();
}

int MockPortal::Parts::Take(sd_bus_message& call) {
  if (sd_bus_message_is_method_call(&call, nullptr, nullptr) <= 0) return 0;
  const std::string member = sd_bus_message_get_member(&call);
  client = sd_bus_message_get_sender(&call);
  calls.push_back(member);
  if (manners.instead && manners.instead(call)) return 1;
  if (member == "Register") return Register(call);
  if (member == "Get") return TellVersion(call);
  if (member == "Close") return CloseThing(call);
  const bool known = manners.version >= (member == "ConfigureShortcuts" ? 2u : 1u);
  if (!known) return sd_bus_reply_method_errorf(&call, SD_BUS_ERROR_UNKNOWN_METHOD, "What?");
  if (member == "CreateSession") return Create(call);
  if (member == "BindShortcuts") return Bind(call);
  return sd_bus_reply_method_return(&call, nullptr);
}

int MockPortal::Parts::Register(sd_bus_message& call) {
  if (!manners.knowsPrograms) {
    return sd_bus_reply_method_errorf(&call, SD_BUS_ERROR_UNKNOWN_INTERFACE, "What?");
  }
  programs.push_back(ReadText(&call, 's'));
  return sd_bus_reply_method_return(&call, nullptr);
}

int MockPortal::Parts::TellVersion(sd_bus_message& call) {
  EXPECT_EQ(ReadText(&call, 's'), kShortcutsInterface);
  EXPECT_EQ(ReadText(&call, 's'), "version");
  if (manners.version == 0) {
    return sd_bus_reply_method_errorf(&call, SD_BUS_ERROR_INVALID_ARGS, "No such interface");
  }
  return sd_bus_reply_method_return(&call, "v", "u", manners.version);
}

int MockPortal::Parts::Create(sd_bus_message& call) {
  Texts options = ReadTexts(&call);
  EXPECT_NE(options["handle_token"], options["session_handle_token"]);
  const std::string session = PathOf("session", options["session_handle_token"]);
  return Reply(call, PathOf("request", options["handle_token"]), [this, session, &options] {
    if (manners.toCreate == 0) {
      lastSession = session;
      sessions.push_back(session);
      wished.clear();
    }
    Respond(PathOf("request", options["handle_token"]), [&](sd_bus_message& response) {
      if (manners.saysCreated) return manners.saysCreated(response);
      sd_bus_message_append(&response, "ua{sv}", manners.toCreate, 1, "session_handle", "s",
                            session.c_str());
    });
  });
}

int MockPortal::Parts::Bind(sd_bus_message& call) {
  const std::string session = ReadText(&call, 'o');
  EXPECT_EQ(session, lastSession);
  EXPECT_TRUE(wished.empty()) << "keys of one session are bound twice";
  wished = ReadWishes(&call);
  EXPECT_EQ(ReadText(&call, 's'), "") << "the window that is the parent";
  const std::string request = PathOf("request", ReadTexts(&call)["handle_token"]);
  return Reply(call, request, [&] {
    windows.push_back({.request = request, .session = session});
    mostWindows = std::max(mostWindows, windows.size());
    if (!manners.asksSomebody) RespondToBind(windows.back());
  });
}

int MockPortal::Parts::CloseThing(sd_bus_message& call) {
  const std::string path = sd_bus_message_get_path(&call);
  std::erase(sessions, path);
  std::erase_if(windows, [&](const Window& window) {
    return window.request == path || window.session == path;
  });
  return sd_bus_reply_method_return(&call, nullptr);
}

std::string MockPortal::Parts::PathOf(const char* kind, const std::string& token) const {
  EXPECT_FALSE(token.empty()) << kind;
  std::string sender = client.substr(1);
  std::ranges::replace(sender, '.', '_');
  const bool other = manners.usesOtherPaths && std::string(kind) == "request";
  return std::string(kPortalPath) + "/" + kind + "/" + (other ? "elsewhere" : sender) + "/" + token;
}

int MockPortal::Parts::Reply(sd_bus_message& call, const std::string& request,
                             const std::function<void()>& answer) {
  if (manners.answersTooEarly) answer();
  const int outcome = sd_bus_reply_method_return(&call, "o", request.c_str());
  if (!manners.answersTooEarly) answer();
  return outcome;
}

void MockPortal::Parts::Respond(const std::string& request, const Words& words) {
  Signal(request, kRequest, "Response", words);
}

void MockPortal::Parts::RespondToBind(const Window& window) {
  const Window answered = window;
  std::erase_if(windows, [&](const Window& of) { return of.request == answered.request; });
  Respond(answered.request, [this](sd_bus_message& response) {
    if (manners.saysBound) return manners.saysBound(response);
    AppendGiven(response);
  });
  if (!manners.endsWhatItBinds) return;
  std::erase(sessions, answered.session);
  Signal(answered.session, kSession, "Closed",
         [](sd_bus_message& signal) { sd_bus_message_append(&signal, "a{sv}", 0); });
}

void MockPortal::Parts::AppendGiven(sd_bus_message& response) const {
  sd_bus_message_append(&response, "u", manners.toBind);
  sd_bus_message_open_container(&response, 'a', "{sv}");
  if (manners.toBind == 0) {
    sd_bus_message_open_container(&response, 'e', "sv");
    sd_bus_message_append(&response, "s", "shortcuts");
    sd_bus_message_open_container(&response, 'v', "a(sa{sv})");
    sd_bus_message_open_container(&response, 'a', "(sa{sv})");
    for (const WishedShortcut& wish : wished) {
      const std::optional<std::string> trigger = manners.gives(wish);
      if (!trigger) continue;
      sd_bus_message_append(&response, "(sa{sv})", wish.id.c_str(), 2, "description", "s",
                            wish.description.c_str(), "trigger_description", "s", trigger->c_str());
    }
    for (int containers = 0; containers < 3; ++containers)
      sd_bus_message_close_container(&response);
  }
  sd_bus_message_close_container(&response);
}

void MockPortal::Parts::Signal(const std::string& path, const char* interface, const char* member,
                               const Words& words) const {
  sd_bus_message* signal = nullptr;
  ASSERT_GE(sd_bus_message_new_signal(bus, &signal, path.c_str(), interface, member), 0);
  if (!manners.tellsEverybody) sd_bus_message_set_destination(signal, client.c_str());
  words(*signal);
  EXPECT_GE(sd_bus_send(bus, signal, nullptr), 0);
  sd_bus_message_unref(signal);
}

MockPortal::MockPortal(const std::string& busAddress, PortalManners manners)
    : parts_(std::make_unique<Parts>(busAddress, std::move(manners))) {
  parts_->thread = std::jthread([this](const std::stop_token& stop) { parts_->Run(stop); });
  ComeBack();
}

MockPortal::~MockPortal() {
  parts_->thread.request_stop();
  parts_->bell.Ring();
  parts_->thread.join();
}

void MockPortal::Change(const std::function<void(PortalManners&)>& change) {
  parts_->Do([&] { change(parts_->manners); });
}

void MockPortal::Die() {
  parts_->Do([this] { parts_->Close(); });
}

void MockPortal::ComeBack() {
  parts_->Do([this] { parts_->Open(); });
}

void MockPortal::Hang() {
  parts_->Do([this] { parts_->hangs = true; });
}

void MockPortal::GoOn() {
  parts_->Do([this] { parts_->hangs = false; });
}

std::vector<std::string> MockPortal::Calls() const {
  std::vector<std::string> calls;
  parts_->Do([&] { calls = parts_->calls; });
  return calls;
}

int MockPortal::Count(const std::string& member) const {
  return static_cast<int>(std::ranges::count(Calls(), member));
}

std::vector<WishedShortcut> MockPortal::Wished() const {
  std::vector<WishedShortcut> wished;
  parts_->Do([&] { wished = parts_->wished; });
  return wished;
}

std::vector<std::string> MockPortal::Programs() const {
  std::vector<std::string> programs;
  parts_->Do([&] { programs = parts_->programs; });
  return programs;
}

int MockPortal::Sessions() const {
  std::size_t count = 0;
  parts_->Do([&] { count = parts_->sessions.size(); });
  return static_cast<int>(count);
}

int MockPortal::Windows() const {
  std::size_t count = 0;
  parts_->Do([&] { count = parts_->windows.size(); });
  return static_cast<int>(count);
}

int MockPortal::MostWindows() const {
  std::size_t count = 0;
  parts_->Do([&] { count = parts_->mostWindows; });
  return static_cast<int>(count);
}

void MockPortal::Answer() {
  parts_->Do([this] {
    ASSERT_FALSE(parts_->windows.empty()) << "nobody is asked";
    parts_->RespondToBind(parts_->windows.front());
  });
}

void MockPortal::Activate(const std::string& id) {
  Emit("Activated", [&](sd_bus_message& signal) { AppendKey(signal, parts_->lastSession, id); });
}

void MockPortal::Deactivate(const std::string& id) {
  Emit("Deactivated", [&](sd_bus_message& signal) { AppendKey(signal, parts_->lastSession, id); });
}

void MockPortal::GiveAnother(const std::string& id, const std::string& trigger) {
  Emit("ShortcutsChanged",
       [&](sd_bus_message& signal) { AppendShortcut(signal, parts_->lastSession, id, trigger); });
}

void MockPortal::CloseSession() {
  parts_->Do([this] {
    std::erase(parts_->sessions, parts_->lastSession);
    parts_->Signal(parts_->lastSession, kSession, "Closed",
                   [](sd_bus_message& signal) { sd_bus_message_append(&signal, "a{sv}", 0); });
  });
}

void MockPortal::Emit(const char* member, const Words& words) {
  parts_->Do([&] { parts_->Signal(kPortalPath, kShortcutsInterface, member, words); });
}

std::string MockPortal::SessionPath() const {
  std::string path;
  parts_->Do([&] { path = parts_->lastSession; });
  return path;
}

std::string MockPortal::Client() const {
  std::string client;
  parts_->Do([&] { client = parts_->client; });
  return client;
}

}  // namespace tavlo::test
