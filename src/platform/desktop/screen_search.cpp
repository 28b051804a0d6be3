#include "platform/desktop/screen_search.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace tavlo::platform::desktop {
namespace {

constexpr const char* kToolkitsChoice = "QT_QPA_PLATFORM";
constexpr const char* kXBeforeWayland = "xcb;wayland";
constexpr const char* kWaylandAlone = "wayland";

/// The variables that say where a screen is, as far as somebody set them.
std::string WhereItLooked() {
  std::string where;
  for (const char* variable : {kToolkitsChoice, "DISPLAY", "WAYLAND_DISPLAY"}) {
    const QByteArray value = qgetenv(variable);
    if (value.isEmpty() || value == kXBeforeWayland || value == kWaylandAlone) continue;
    where += (where.empty() ? "" : ", ") + std::string(variable) + "=" + value.toStdString();
  }
  return where.empty() ? "Neither DISPLAY nor WAYLAND_DISPLAY names one."
                       : "It was looked for at " + where + ".";
}

/// The toolkit would end itself with a crash, which tells a person nothing.
void EndInsteadOfCrash(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  if (type != QtFatalMsg) {
    std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, text)));
    return;
  }
  std::fprintf(stderr, "tavlodeck: There is no screen for the windows of Tavlo Deck. %s\n\n%s\n",
               WhereItLooked().c_str(), qPrintable(text.trimmed()));
  std::_Exit(EXIT_FAILURE);
}

}  // namespace

ScreenSearch::ScreenSearch() {
  qInstallMessageHandler(EndInsteadOfCrash);
  if (!qEnvironmentVariableIsEmpty(kToolkitsChoice)) return;
  const bool xIsNamed = !qEnvironmentVariableIsEmpty("DISPLAY");
  qputenv(kToolkitsChoice, xIsNamed ? kXBeforeWayland : kWaylandAlone);
  chosenHere_ = true;
}

ScreenSearch::~ScreenSearch() {
  // Programs that the deck starts choose for themselves.
  if (chosenHere_) qunsetenv(kToolkitsChoice);
  qInstallMessageHandler(nullptr);
}

}  // namespace tavlo::platform::desktop
