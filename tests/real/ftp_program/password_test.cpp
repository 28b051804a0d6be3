#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMetaProperty>
#include <QWidget>
#include <algorithm>
#include <string>
#include <vector>

#include "ftp/file_servers.h"
#include "ftp_program/faulty_server.h"
#include "ftp_program/ftp_deck.h"
#include "ftp_program/kept_output.h"
#include "platform/curl/ftp_failures.h"
#include "support/keys.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

constexpr const char* kSecret = "quiet-Heron42";
constexpr const char* kWrong = "loud-Heron43";

/// All that an accessible object and those in it tell a screen reader.
void TellHeard(QAccessibleInterface* heard, std::string& told) {
  if (!heard || !heard->isValid()) return;
  for (const QAccessible::Text kind :
       {QAccessible::Name, QAccessible::Description, QAccessible::Value, QAccessible::Help,
        QAccessible::Accelerator}) {
    told += heard->text(kind).toStdString() + "\n";
  }
  if (QAccessibleTextInterface* const text = heard->textInterface()) {
    told += text->text(0, text->characterCount()).toStdString() + "\n";
  }
  for (int child = 0; child < heard->childCount(); ++child) TellHeard(heard->child(child), told);
}

/// All texts that a widget has, but for what is typed into a box that shows signs instead.
void TellTexts(const QWidget& widget, std::string& told) {
  const auto* const edit = qobject_cast<const QLineEdit*>(&widget);
  const bool hides = edit && edit->echoMode() != QLineEdit::Normal;
  for (int index = 0; index < widget.metaObject()->propertyCount(); ++index) {
    const QMetaProperty property = widget.metaObject()->property(index);
    const std::string name = property.name();
    if (hides && (name == "text" || name == "selectedText")) continue;
    const QVariant value = property.read(&widget);
    if (value.typeId() != QMetaType::QString) continue;
    told += widget.objectName().toStdString() + "." + name + ": " + value.toString().toStdString();
    told += "\n";
  }
}

void TellCells(const QAbstractItemModel& model, std::string& told) {
  for (int row = 0; row < model.rowCount(); ++row) {
    for (int column = 0; column < model.columnCount(); ++column) {
      for (int role = 0; role < Qt::UserRole; ++role) {
        told += model.index(row, column).data(role).toString().toStdString() + "\n";
      }
    }
  }
}

/// All that the windows of this process tell, whoever asks. On the toolkit's thread.
std::string ToldByWindows() {
  std::string told;
  for (QWidget* const widget : QApplication::allWidgets()) {
    TellTexts(*widget, told);
    const auto* const view = qobject_cast<QAbstractItemView*>(widget);
    if (view && view->model()) TellCells(*view->model(), told);
    if (widget->isWindow()) TellHeard(QAccessible::queryAccessibleInterface(widget), told);
  }
  for (const QClipboard::Mode mode : {QClipboard::Clipboard, QClipboard::Selection}) {
    told += QGuiApplication::clipboard()->text(mode).toStdString() + "\n";
  }
  return told;
}

struct FtpPassword : FtpDeck {
  void ExpectToldByNoWindow() {
    const std::string told = program->Ask(ToldByWindows);
    for (const char* const password : {kSecret, kWrong}) {
      const std::size_t at = told.find(password);
      EXPECT_EQ(at, std::string::npos) << told.substr(std::min(told.rfind('\n', at), at), 200);
    }
  }
  /// Has the page of the profiles hold the password, and copies and steps there.
  void UseThePage() {
    program->Keys({keys::kAlt, 'f'});
    program->Keys({'c'});
    forms::ConfigurationForm& config = program->Windows().configuration;
    ASSERT_TRUE(program->Until([&] { return config.frmConfiguration.Visible.Get(); }));
    program->Keys({keys::kAlt, 'f'});
    program->Click("cmdFtpMemorize");
    program->Click("ePass");
    program->Keys({keys::kControl, 'a'});
    program->Keys({keys::kControl, 'c'});
    EXPECT_EQ(program->Ask([&] { return config.ePass.Value.Get(); }), kSecret);
    const std::string told = program->Ask(ToldByWindows);
    EXPECT_NE(told.find("typist"), std::string::npos) << "texts of the page are not found";
    EXPECT_NE(told.find(std::string(std::string(kSecret).size(), '*')), std::string::npos);
    ExpectToldByNoWindow();
    program->Click("cmdFtpNext");
    program->Click("cmdFtpClone");
    ExpectToldByNoWindow();
    program->Keys({keys::kEscape});
    ASSERT_TRUE(program->Until([&] { return !config.frmConfiguration.Visible.Get(); }));
  }
  /// The files of the home that hold the text.
  std::vector<std::string> FilesWith(const std::string& text) const {
    std::vector<std::string> files;
    for (const auto& [path, contents] : home.Everything()) {
      if (path.find(text) != path.npos || contents.find(text) != contents.npos) {
        files.push_back(home.Path() + path);
      }
    }
    return files;
  }
};

TEST_F(FtpPassword, StandsInTheSettingsFileAndNowhereElse) {
  FaultyServer server{{{"a.eW2", "a"}}};
  Pyftpdlib other;
  StoreServer(home, 0, {.name = "Clinic", .address = server.Address(), .password = kSecret});
  StoreServer(home, 1, {.name = "Wrong", .address = other.Address(), .password = kWrong});
  const KeptOutput output;
  Run([&] {
    Connect();
    ExpectToldByNoWindow();
    List();
    DownloadAll();
    AwaitStatus("Disconnected after download completed");
    server.Prepare({.verb = "PASS"});
    program->Click("bConnect");
    ASSERT_TRUE(Until([&] { return server.StandsStill(); }));
    ExpectToldByNoWindow();
    server.End();
    AwaitStatus(std::string(platform::WordsFor(platform::kServerBusy)));
    Choose("comboFtpServerNames", keys::kDown);
    Press("bConnect");
    AwaitStatus(std::string(platform::WordsFor(platform::kLogInRefused)));
    ExpectToldByNoWindow();
    Choose("comboFtpServerNames", keys::kUp);
    UseThePage();
  });
  EXPECT_EQ(server.Served().CountHeard(std::string("PASS ") + kSecret), 2);
  for (const std::string password : {kSecret, kWrong}) {
    EXPECT_EQ(FilesWith(password), std::vector<std::string>{home.SettingsPath()});
    EXPECT_EQ(output.Kept().find(password), std::string::npos);
  }
}

}  // namespace
}  // namespace tavlo::test
