#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

namespace tavlo::platform::qt {

/// An answer of the display; it must be freed by free().
template <typename Reply>
using Owned = std::unique_ptr<Reply, void (*)(void*)>;

/// The toolkit's connection to the display; null where the desktop is not one of X.
xcb_connection_t* Display();

// The others take that connection, which must not be null.

xcb_window_t Root(xcb_connection_t* display);
/// XCB_ATOM_NONE when the connection is lost.
xcb_atom_t Atom(xcb_connection_t* display, std::string_view name);
/// Sends the window manager a wish about a window, as the agreements of desktops have it.
void AskManager(xcb_connection_t* display, xcb_window_t window, std::string_view wish,
                const std::array<std::uint32_t, 3>& data);

}  // namespace tavlo::platform::qt
