#include "desk.h"

#include <fcntl.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <array>
#include <string>

namespace tavlo::tour {
namespace {

constexpr const char* kFileManager = "file-manager";

void Write(const QString& path, const QByteArray& text) {
  QDir().mkpath(QFileInfo(path).path());
  QFile file(path);
  if (file.open(QFile::WriteOnly)) file.write(text);
}

/// Its own programs are found before those of the machine.
void Install(const char* name, const QByteArray& script) {
  const QString path = InHome(QString("bin/") + name);
  Write(path, "#!/bin/sh\n" + script);
  QFile::setPermissions(path, QFile::permissions(path) | QFile::ExeOwner);
}

/// What opens a folder: xdg-open has one where it is installed, and where it is not the deck finds
/// one of that name.
void InstallFileManager() {
  Install(kFileManager,
          "case $1 in file://*) ;; *) set -- \"file://$1\" ;; esac\n"
          "printf %s \"$1\" >~/shown-folder.new\n"
          "mv ~/shown-folder.new ~/shown-folder\n");
  Install("xdg-open", QByteArray("exec ") + kFileManager + " \"$@\"\n");
  Write(InHome(".local/share/applications/file-manager.desktop"),
        QByteArray("[Desktop Entry]\nType=Application\nName=Files\nMimeType=inode/directory;\n"
                   "Exec=") +
            kFileManager + " %u\n");
  Write(InHome(".config/mimeapps.list"),
        "[Default Applications]\ninode/directory=file-manager.desktop\n");
  // Without a desktop, or without what tells the kinds of files, it asks for a browser.
  qputenv("BROWSER", kFileManager);
}

/// No service is started by its name here: the toolkit would bring up those of screen readers.
constexpr const char* kBus =
    "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><policy context='default'>"
    "<allow send_destination='*'/><allow receive_sender='*'/><allow own='*'/></policy>"
    "</busconfig>\n";

}  // namespace

Desk::Desk() {
  InstallFileManager();
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
  Write(configuration, kBus);
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
