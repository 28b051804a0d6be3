#include "platform/qt/desktop_limits.h"

#include <QGuiApplication>

namespace tavlo::platform::qt {

bool WindowsCanBePlaced() { return !QGuiApplication::platformName().startsWith("wayland"); }

}  // namespace tavlo::platform::qt
