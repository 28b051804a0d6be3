#include "desk.h"

#include <fcntl.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <array>
#include <string>

namespace tavlo::tour {
namespace {

/// Its own programs are found before those of the machine.
void Install(const char* name, const QByteArray& script) {
  const QString bin = InHome("bin");
  QDir().mkpath(bin);
  QFile file(bin + "/" + name);
  if (file.open(QFile::WriteOnly)) file.write("#!/bin/sh\n" + script);
  file.close();
  file.setPermissions(file.permissions() | QFile::ExeOwner);
}

/// No service is started by its name here: the toolkit would bring up those of screen readers.
constexpr const char* kBus =
    "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><policy context='default'>"
    "<allow send_destination='*'/><allow receive_sender='*'/><allow own='*'/></policy>"
    "</busconfig>\n";

}  // namespace

Desk::Desk() {
  Install("xdg-open",
          "printf %s \"$1\" >~/shown-folder.new\n"
          "mv ~/shown-folder.new ~/shown-folder\n");
  Install("writer",
          "if [ $# -gt 0 ]; then\n"
          "  printf '%s\\n' \"$@\" >~/writer-arguments.new\n"
          "  mv ~/writer-arguments.new ~/writer-arguments\n"
          "fi\n"
          "exec '" TAVLO_TOUR_WRITER "' \"$@\"\n");
  qputenv("PATH", QFile::encodeName(InHome("bin")) + ":" + qgetenv("PATH"));
  StartBus();
  notifier_.Start({TAVLO_TOUR_NOTIFIER});
}

void Desk::StartBus() {
  const QString configuration = InHome("bus.conf");
  QFile file(configuration);
  if (file.open(QFile::WriteOnly)) file.write(kBus);
  file.close();
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return;
  bus_.Start({"dbus-daemon", "--config-file=" + configuration.toStdString(), "--nofork",
              "--nopidfile", "--print-address"},
             ends[1]);
  ::close(ends[1]);
  QByteArray address;
  char letter = 0;
  while (::read(ends[0], &letter, 1) == 1 && letter != '\n') address += letter;
  ::close(ends[0]);
  qputenv("DBUS_SESSION_BUS_ADDRESS", address);
}

QString InHome(const QString& below) { return QDir::homePath() + "/" + below; }

QByteArray ContentsOf(const QString& path) {
  QFile file(path);
  return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray ShownFolder() { return ContentsOf(InHome("shown-folder")); }

QByteArray WriterArguments() { return ContentsOf(InHome("writer-arguments")); }

QByteArray Letter() { return ContentsOf(InHome("letter")); }

QByteArray Notification() { return ContentsOf(InHome("notification")); }

}  // namespace tavlo::tour
