#include "platform/desktop/system_information.h"

#include <QByteArray>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <algorithm>
#include <array>

namespace tavlo::platform::desktop {
namespace {

struct Tool {
  const char* program;
  const char* page;     ///< Its argument; null for none.
  const char* desktop;  ///< The only desktop on which it is of use; null for any.
};

constexpr std::array kTools{
    Tool{"gnome-control-center", "info-overview", "GNOME"},
    Tool{"cinnamon-settings", "info", "X-Cinnamon"},
    Tool{"kinfocenter", nullptr, nullptr},
    Tool{"hardinfo2", nullptr, nullptr},
    Tool{"hardinfo", nullptr, nullptr},
};

bool Starts(const Tool& tool) {
  const QString program = QStandardPaths::findExecutable(tool.program);
  if (program.isEmpty()) return false;
  return QProcess::startDetached(program, tool.page ? QStringList(tool.page) : QStringList());
}

}  // namespace

bool ShowSystemInformation() {
  const QList<QByteArray> desktops = qgetenv("XDG_CURRENT_DESKTOP").split(':');
  return std::ranges::any_of(kTools, [&desktops](const Tool& tool) {
    return (!tool.desktop || desktops.contains(tool.desktop)) && Starts(tool);
  });
}

}  // namespace tavlo::platform::desktop
