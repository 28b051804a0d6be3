#include "ftp_program/ftp_deck.h"

#include <QApplication>
#include <QWidget>
#include <filesystem>
#include <regex>

#include "support/keys.h"
#include "support/screen.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
}  // namespace

void StoreServer(const Home& home, int row, const Server& server) {
  store::Assignments fields{{"FtpServerName", server.name},
                            {"FtpServerID", server.address},
                            {"FtpServerUserID", server.user},
                            {"FtpServerPassword", server.password}};
  fields.insert(fields.end(), server.more.begin(), server.more.end());
  home.Store(store::Table::FtpSettings, row, fields);
}

std::map<std::string, std::string> FilesIn(const std::string& folder) {
  std::map<std::string, std::string> files;
  std::error_code missing;
  for (const auto& entry : fs::directory_iterator(folder, missing)) {
    if (entry.is_regular_file()) files[entry.path().filename()] = ReadFile(entry.path());
  }
  return files;
}

std::map<std::string, std::string> Unstamped(const std::map<std::string, std::string>& files) {
  static const std::regex kStamp("_[0-9]+\\.");
  std::map<std::string, std::string> unstamped;
  for (const auto& [name, bytes] : files) unstamped[std::regex_replace(name, kStamp, ".")] = bytes;
  EXPECT_EQ(unstamped.size(), files.size());
  return unstamped;
}

void FtpDeck::Run(const std::function<void()>& script) {
  program.emplace(home, trust);
  const int status = program->Run([&] {
    ASSERT_TRUE(program->Begin());
    EXPECT_EQ(program->AnswerBox(), "Tavlo Deck - Sound Card: A sound card can not be found");
    ASSERT_TRUE(Until([&] { return program->IsReady(); })) << program->Box();
    program->Keys({keys::kAlt, 'v'});
    program->Keys({'t'});
    ASSERT_TRUE(program->Until([&] { return Main().frameFtp.Visible.Get(); }));
    program->Do([&] { watch.emplace(program->Loop()); });
    script();
    program->Do([&] {
      watch->ExpectNothingHeldIt();
      watch.reset();
    });
    Leave();
  });
  EXPECT_EQ(status, 0);
  program.reset();
}

std::string FtpDeck::Status() {
  return program->Ask([]() -> std::string {
    for (const QWidget* const widget : QApplication::allWidgets()) {
      if (widget->objectName() == "eMessage") return widget->toolTip().toStdString();
    }
    return "no status box";
  });
}

void FtpDeck::AwaitStatus(const std::string& words) {
  EXPECT_TRUE(Until([&] { return Status() == words; }))
      << "says: " << Status() << "\ninstead of: " << words << "\nbox: " << program->Box();
}

std::string FtpDeck::Caption(forms::Command forms::FtpFrame::*command) {
  return program->Ask([&] { return (Main().*command).Caption.Get(); });
}

bool FtpDeck::Enabled(forms::Command forms::FtpFrame::*command) {
  return program->Ask([&] { return (Main().*command).Enabled.Get(); });
}

std::vector<std::string> FtpDeck::Names(forms::Table forms::FtpFrame::*table) {
  return program->Ask([&] {
    std::vector<std::string> names;
    for (const forms::Row& row : (Main().*table).Rows()) names.push_back(row.cells.at(0).text);
    return names;
  });
}

std::string FtpDeck::CaptionOf(forms::Pane forms::FtpFrame::*pane) {
  return program->Ask([&] { return (Main().*pane).Caption.Get(); });
}

std::string FtpDeck::QuietLine() {
  return program->Ask(
      [&] { return Main().lblNotice.Visible ? Main().lblNotice.Value.Get() : std::string(); });
}

void FtpDeck::Choose(const char* box, std::uint32_t key) {
  program->Click(box);
  // In the open list the mouse, which stands over it, may choose something else.
  program->Keys({keys::kEscape});
  program->Keys({key});
}

void FtpDeck::Press(const char* key) {
  program->Click(key);
  ASSERT_TRUE(program->Until([&] { return !program->Rooms().ftp.channel.Waits(); }));
}

void FtpDeck::Connect() {
  Press("bConnect");
  AwaitStatus("Connected");
  EXPECT_EQ(Caption(&forms::FtpFrame::bConnect), "Disconnect");
}

void FtpDeck::List() {
  Press("bList");
  AwaitStatus("List completed");
}

void FtpDeck::DownloadAll() {
  program->Click("cmdFtpListToDownload");
  ASSERT_TRUE(Until([&] { return Enabled(&forms::FtpFrame::bDownload); }));
  program->Click("bDownload");
}

void FtpDeck::AwaitTurns(int turns) {
  const int before = program->Ask([&] { return watch->Ticks(); });
  EXPECT_TRUE(program->Until([&] { return watch->Ticks() >= before + turns; }));
}

void FtpDeck::ExpectOffersToConnect() {
  program->Do([&] {
    EXPECT_EQ(Main().bConnect.Caption.Get(), "Connect");
    EXPECT_TRUE(Main().bConnect.Enabled);
    EXPECT_TRUE(Main().comboFtpServerNames.Enabled);
    EXPECT_TRUE(Main().mnuFile.Enabled && Main().mnuView.Enabled);
  });
}

void FtpDeck::Leave() {
  Screen screen;
  const SeenWindow deck = screen.Deck();
  screen.hands.PressClose(deck.id);
  EXPECT_EQ(program->AnswerBox(),
            "Tavlo Deck - Exit: Are you sure you want to exit the Tavlo Deck?");
}

}  // namespace tavlo::test
