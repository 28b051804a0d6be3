#include "support/desktop.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "support/screen.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;

using Surroundings = std::vector<std::pair<const char*, std::string>>;

/// A window manager that is installed by a package of that name.
struct Manager {
  WindowManager which;
  const char* package;
  std::vector<std::string> words;
  bool needsBus;
};

/// Only mutter cannot do without a compositor.
const std::vector<Manager>& Managers() {
  static const std::vector<Manager> all = {
      {WindowManager::Openbox, "openbox", {"openbox", "--sm-disable"}, false},
      {WindowManager::Mutter, "mutter", {"mutter", "--x11", "--sm-disable"}, true},
      {WindowManager::Kwin, "kwin-x11", {"kwin_x11"}, true},
      {WindowManager::Metacity,
       "metacity",
       {"metacity", "--sm-disable", "--compositor=none"},
       true},
      {WindowManager::Xfwm4, "xfwm4", {"xfwm4", "--compositor=off"}, true},
  };
  return all;
}

const Manager* Find(WindowManager which) {
  for (const Manager& manager : Managers()) {
    if (manager.which == which) return &manager;
  }
  return nullptr;
}

bool IsInstalled(const Manager& manager) {
  std::istringstream folders(std::getenv("PATH"));
  std::string folder;
  while (std::getline(folders, folder, ':')) {
    if (access((folder + "/" + manager.words.front()).c_str(), X_OK) == 0) return true;
  }
  return false;
}

/// Starts a program that ends with this one. `keep` stays open in it.
pid_t Start(const std::vector<std::string>& words, int keep = -1,
            const Surroundings& surroundings = {}) {
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const pid_t child = fork();
  if (child != 0) return child;
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  const int nowhere = open("/dev/null", O_RDWR);
  dup2(nowhere, STDOUT_FILENO);
  dup2(nowhere, STDERR_FILENO);
  if (keep >= 0) fcntl(keep, F_SETFD, 0);
  for (const auto& [name, value] : surroundings) setenv(name, value.c_str(), 1);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

void Stop(pid_t& child) {
  if (child <= 0) return;
  kill(child, SIGTERM);
  waitpid(child, nullptr, 0);
  child = -1;
}

std::string ReadLine(int from) {
  std::string line;
  for (char c = 0; read(from, &c, 1) == 1 && c != '\n';) line += c;
  return line;
}

/// Starts a program and reads the line that it writes to the descriptor whose number it is given;
/// empty when there is none.
std::string StartAndAsk(pid_t& child,
                        const std::function<std::vector<std::string>(const std::string&)>& words) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return {};
  child = Start(words(std::to_string(ends[1])), ends[1]);
  close(ends[1]);
  std::string line = ReadLine(ends[0]);
  close(ends[0]);
  return line;
}

bool HasEnded(pid_t& child) {
  if (waitpid(child, nullptr, WNOHANG) != child) return false;
  child = -1;
  return true;
}

/// True once a window manager has announced itself on the screen that DISPLAY names.
bool WindowManagerAnswers() {
  const std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection(
      xcb_connect(nullptr, nullptr), xcb_disconnect);
  if (xcb_connection_has_error(connection.get())) return false;
  constexpr std::string_view kCheck = "_NET_SUPPORTING_WM_CHECK";
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
  const std::unique_ptr<xcb_intern_atom_reply_t, void (*)(void*)> atom(
      xcb_intern_atom_reply(connection.get(),
                            xcb_intern_atom(connection.get(), 0, kCheck.size(), kCheck.data()),
                            nullptr),
      std::free);
  if (!atom) return false;
  const std::unique_ptr<xcb_get_property_reply_t, void (*)(void*)> property(
      xcb_get_property_reply(
          connection.get(),
          xcb_get_property(connection.get(), 0, root, atom->atom, XCB_ATOM_WINDOW, 0, 1), nullptr),
      std::free);
  return property && property->value_len == 1;
}

}  // namespace

std::string NameOf(WindowManager manager) {
  constexpr const char* kNames[] = {"Openbox", "Mutter", "Kwin", "Metacity", "Xfwm4", "None"};
  return kNames[static_cast<std::size_t>(manager)];
}

Desktop::Desktop(const std::string& size, WindowManager manager) {
  if (!StartScreen(size)) {
    fault_ = "Xvfb does not start";
  } else if (manager != WindowManager::None && !IsInstalled(*Find(manager))) {
    lacksManager_ = true;
    fault_ = std::string(Find(manager)->package) + " is not installed";
  } else if (manager != WindowManager::None && !StartWindowManager(manager)) {
    fault_ = std::string(Find(manager)->package) + " does not start";
  }
}

Desktop::~Desktop() {
  Stop(manager_);
  Stop(bus_);
  Stop(screen_);
}

void Desktop::KillScreen() {
  ASSERT_GT(screen_, 0) << "there is no screen to kill";
  kill(screen_, SIGKILL);
  waitpid(screen_, nullptr, 0);
  screen_ = -1;
}

bool Desktop::StartScreen(const std::string& size) {
  const std::string number = StartAndAsk(screen_, [&](const std::string& end) {
    return std::vector<std::string>{"Xvfb",       "-displayfd", end,   "-screen", "0",
                                    size + "x24", "-nolisten",  "tcp", "-noreset"};
  });
  if (number.empty()) return false;
  setenv("DISPLAY", (":" + number).c_str(), 1);
  setenv("QT_QPA_PLATFORM", "xcb", 1);
  unsetenv("WAYLAND_DISPLAY");
  return true;
}

std::string Desktop::StartBus() {
  return StartAndAsk(bus_, [](const std::string& end) {
    return std::vector<std::string>{"dbus-daemon", "--session", "--nofork",
                                    "--print-address=" + end};
  });
}

bool Desktop::StartWindowManager(WindowManager which) {
  const Manager& manager = *Find(which);
  Surroundings surroundings = {{"HOME", folder_.Path()},
                               {"XDG_CONFIG_HOME", folder_ / "config"},
                               {"XDG_CACHE_HOME", folder_ / "cache"},
                               {"XDG_DATA_HOME", folder_ / "data"},
                               {"XDG_RUNTIME_DIR", folder_.Path()},
                               {"GSETTINGS_BACKEND", "memory"},
                               {"NO_AT_BRIDGE", "1"},
                               {"KWIN_COMPOSE", "N"}};
  if (manager.needsBus) {
    const std::string bus = StartBus();
    if (bus.empty()) return false;
    surroundings.emplace_back("DBUS_SESSION_BUS_ADDRESS", bus);
  }
  manager_ = Start(manager.words, -1, surroundings);
  for (int look = 0; look < kManyLooks; ++look) {
    if (WindowManagerAnswers()) return true;
    if (HasEnded(manager_)) return false;
    std::this_thread::sleep_for(25ms);
  }
  return false;
}

}  // namespace tavlo::test
