#include "platform/qt/dropped_paths.h"

#include <QByteArray>
#include <QList>
#include <QMimeData>
#include <QSysInfo>

namespace tavlo::platform::qt {
namespace {

constexpr const char* kListOfUris = "text/uri-list";
constexpr QByteArrayView kFileScheme = "file:";

/// The path behind "file:", which may name the computer that it is on: this one, or the path is
/// nobody's here.
QByteArray LocalPath(QByteArray rest) {
  if (!rest.startsWith("//")) return rest;
  rest.remove(0, 2);
  const qsizetype path = rest.indexOf('/');
  if (path < 0) return {};
  const QByteArray host = rest.left(path).toLower();
  const QByteArray own = QSysInfo::machineHostName().toUtf8().toLower();
  const bool here = host.isEmpty() || host == "localhost" || host == own;
  return here ? rest.mid(path) : QByteArray();
}

}  // namespace

std::vector<std::string> DroppedPaths(const QMimeData& data) {
  std::vector<std::string> paths;
  for (QByteArray line : data.data(kListOfUris).split('\n')) {
    line = line.trimmed();
    if (line.left(kFileScheme.size()).toLower() != kFileScheme) continue;
    const QByteArray path =
        QByteArray::fromPercentEncoding(LocalPath(line.mid(kFileScheme.size())));
    // A name cannot hold a nought; what comes behind it is some other file's.
    if (path.startsWith('/') && !path.contains('\0')) paths.push_back(path.toStdString());
  }
  return paths;
}

}  // namespace tavlo::platform::qt
