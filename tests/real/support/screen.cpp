#include "support/screen.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <thread>

namespace tavlo::test {
namespace {

template <typename Reply>
using Owned = std::unique_ptr<Reply, void (*)(void*)>;

constexpr std::uint32_t kMostWords = 1024;

SeenWindow Find(const std::vector<SeenWindow>& windows,
                const std::function<bool(const SeenWindow&)>& wanted) {
  const auto found = std::find_if(windows.begin(), windows.end(), wanted);
  return found == windows.end() ? SeenWindow{} : *found;
}

}  // namespace

std::string Screen::Text(xcb_window_t window, const char* property) const {
  xcb_connection_t* const display = hands.Connection();
  const Owned<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(display,
                             xcb_get_property(display, 0, window, hands.Atom(property),
                                              XCB_GET_PROPERTY_TYPE_ANY, 0, kMostWords),
                             nullptr),
      std::free);
  if (!reply) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::vector<std::uint32_t> Screen::Numbers(xcb_window_t window, const char* property) const {
  const std::string bytes = Text(window, property);
  std::vector<std::uint32_t> numbers(bytes.size() / sizeof(std::uint32_t));
  std::copy_n(bytes.data(), numbers.size() * sizeof(std::uint32_t),
              reinterpret_cast<char*>(numbers.data()));
  return numbers;
}

SeenWindow Screen::Look(xcb_window_t window) const {
  xcb_connection_t* const display = hands.Connection();
  SeenWindow seen{.id = window, .title = Text(window, "_NET_WM_NAME")};
  const auto types = Numbers(window, "_NET_WM_WINDOW_TYPE");
  const auto is = [&](const char* type) {
    return std::find(types.begin(), types.end(), hands.Atom(type)) != types.end();
  };
  seen.box = is("_NET_WM_WINDOW_TYPE_DIALOG");
  seen.splash = is("_NET_WM_WINDOW_TYPE_SPLASH");
  const Owned<xcb_get_geometry_reply_t> size(
      xcb_get_geometry_reply(display, xcb_get_geometry(display, window), nullptr), std::free);
  if (size) {
    const QPoint place = hands.PlaceOf(window);
    seen.x = place.x();
    seen.y = place.y();
    seen.width = size->width;
    seen.height = size->height;
  }
  return seen;
}

std::vector<SeenWindow> Screen::Windows() const {
  std::vector<SeenWindow> windows;
  for (const xcb_window_t window : Numbers(hands.Root(), "_NET_CLIENT_LIST")) {
    windows.push_back(Look(window));
  }
  return windows;
}

SeenWindow Screen::Box(std::string_view title) const {
  return Find(Windows(), [&](const SeenWindow& seen) { return seen.box && seen.title == title; });
}

SeenWindow Screen::Splash() const {
  return Find(Windows(), [](const SeenWindow& seen) { return seen.splash; });
}

bool Screen::HadSplash() const {
  xcb_connection_t* const display = hands.Connection();
  const Owned<xcb_query_tree_reply_t> tree(
      xcb_query_tree_reply(display, xcb_query_tree(display, hands.Root()), nullptr), std::free);
  if (!tree) return false;
  // One that no longer shows has no frame around it, and is none of the manager's any more.
  const xcb_window_t* const first = xcb_query_tree_children(tree.get());
  return Splash().id != XCB_NONE ||
         std::any_of(first, first + xcb_query_tree_children_length(tree.get()),
                     [this](xcb_window_t window) { return Look(window).splash; });
}

SeenWindow Screen::Deck() const {
  return Find(Windows(), [](const SeenWindow& seen) {
    return !seen.box && !seen.splash && seen.title == "Tavlo Deck";
  });
}

bool Screen::HasState(xcb_window_t window, const char* state) const {
  const auto states = Numbers(window, "_NET_WM_STATE");
  return std::find(states.begin(), states.end(), hands.Atom(state)) != states.end();
}

bool Until(const std::function<bool()>& condition, int looks, std::chrono::milliseconds rest) {
  for (int look = 1; !condition(); ++look) {
    if (look >= looks) return false;
    std::this_thread::sleep_for(rest);
  }
  return true;
}

}  // namespace tavlo::test
