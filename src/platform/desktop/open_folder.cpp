#include "platform/desktop/open_folder.h"

#include <QProcess>
#include <QStandardPaths>
#include <algorithm>
#include <array>

namespace tavlo::platform::desktop {
namespace {

/// The first knows what the desktop prefers; the others stand in where it is not installed.
constexpr std::array kOpeners{"xdg-open", "nautilus", "dolphin",    "nemo",
                              "caja",     "thunar",   "pcmanfm-qt", "pcmanfm"};

}  // namespace

bool OpenFolder(const std::string& folder, const QStringList& usual) {
  // An address takes any bytes, while an argument that is no text would be changed on its way.
  const QByteArray bytes = QByteArray::fromStdString(folder).toPercentEncoding("/");
  const QString address = "file://" + QString::fromLatin1(bytes);
  return std::ranges::any_of(kOpeners, [&](const char* opener) {
    QString program = QStandardPaths::findExecutable(opener, usual);
    if (program.isEmpty()) program = QStandardPaths::findExecutable(opener);
    return !program.isEmpty() && QProcess::startDetached(program, {address});
  });
}

}  // namespace tavlo::platform::desktop
