#include "office.h"

#include <fcntl.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <array>

#include "desk.h"

namespace tavlo::tour {

void Office::Open() {
  QDir().mkpath(PathOf(""));
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return;
  // The system's own, which has the packages of the system. A file on its way can be looked at.
  server_.Start({"/usr/bin/python3", TAVLO_FILE_SERVER, PathOf("").toStdString(), kUser, kPassword,
                 "--speed", "400000"},
                ends[1]);
  ::close(ends[1]);
  std::string port;
  char digit = 0;
  while (::read(ends[0], &digit, 1) == 1 && digit != '\n') port += digit;
  ::close(ends[0]);
  if (!port.empty()) address_ = "127.0.0.1:" + port;
}

QString Office::PathOf(const QString& name) { return InHome("office/" + name); }

QStringList Office::Files() { return QDir(PathOf("")).entryList(QDir::Files); }

void Office::Put(const QString& author, const QString& name) {
  const QDir queue(InHome("Lyrane/TavloDeck/Files/InQueue"));
  const QString any = queue.entryList({"*" + author + "*"}, QDir::Files).value(0);
  QFile::copy(queue.filePath(any), PathOf(name));
}

}  // namespace tavlo::tour
