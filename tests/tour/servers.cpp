// How the deck is told of a server, what it says to a wrong password, and how it logs in and lists.
#include <QApplication>
#include <QTableView>
#include <QWidget>
#include <cstdlib>
#include <utility>

#include "day.h"
#include "desk.h"

namespace tavlo::tour {
namespace {

constexpr const char* kWrongPassword = "inkwell";
/// The import directory whose author the office's files are linked to, and the row of that author.
constexpr int kLinked = 5;
/// The profile's own link before.
constexpr int kFirstLinked = 1;
/// In the box of the types of files.
constexpr int kWavFiles = 5;

bool SomethingPopsUp() { return QApplication::activePopupWidget() != nullptr; }

}  // namespace

void Day::AddServer(std::vector<Step>& steps) {
  office_.Open();
  forms::ConfigurationForm& config = program_.Deck().windows.configuration;
  steps.push_back({.says = "an office puts dictations on its server",
                   .act =
                       [] {
                         Office::Put("Haddad",
                                     "0030 0 Ferraro 902 6 2 2004 9 15 0 3 0 8 clinic 0 0_.eW2");
                         Office::Put("Lindqvist", "Grand round.wav");
                         Office::Put("Marlow", "Phone log.mp3");
                         Office::Put("Nakamura", "Ward 3\\noon.wav");
                       },
                   .seen = [] { return Office::Files().size() == 4; }});
  AddPage(steps, 'f', config.frameFtp, "the Ftp page shows the first of the server profiles",
          "server-page");
  AddTyping(steps, "txtFtpName", "office", config.txtFtpName, "it gets a name");
  AddTyping(steps, "eServer", office_.Address(), config.eServer, "the address of the server");
  AddTyping(steps, "eUser", Office::kUser, config.eUser, "a user");
  AddTyping(steps, "ePass", kWrongPassword, config.ePass, "a password, and not the right one");
  steps.push_back(Click("chkFtpFileDeleteMode", "what is fetched is to be deleted there",
                        [&config] { return config.chkFtpFileDeleteMode.Value.Get(); }));
  AddPicking(
      steps, "comboAuthorLastName", kLinked - kFirstLinked,
      "and what names no author goes to the sixth one",
      [&config] { return config.txtFtpParseGenericPointer.WholeNumber() == kLinked; },
      "server-profile");
  steps.push_back(CloseSettings());
}

void Day::AddRefusal(std::vector<Step>& steps) {
  forms::ConfigurationForm& config = program_.Deck().windows.configuration;
  steps.push_back(TurnTo(
      't', "the Ftp view offers the server, and has nothing to shape",
      [this] {
        const forms::Table& names = Main().comboFtpServerNames;
        return Main().frameFtp.Visible && !Main().frameInQueue.Visible &&
               names.TextAt(names.ListIndex, 0) == "office" && !Main().sldVol.Enabled &&
               !Main().cmdEQ.Enabled;
      },
      "ftp"));
  steps.push_back(Click(
      "bConnect", "the wrong password is refused in words",
      [this] {
        return FtpSays("The server refused user or password") &&
               Main().bConnect.Caption.Get() == "Connect" && Main().bConnect.Enabled &&
               Main().mnuView.Enabled;
      },
      "ftp-refused"));
  AddPage(steps, 'f', config.frameFtp, "the Ftp page has the profile still");
  AddTyping(steps, "ePass", Office::kPassword, config.ePass, "and takes the right password");
  steps.push_back(CloseSettings());
}

void Day::AddConnecting(std::vector<Step>& steps) {
  steps.push_back(Click("bConnect", "the deck logs in, and the menus rest", [this] {
    return FtpSays("Connected") && Main().bConnect.Caption.Get() == "Disconnect" &&
           Main().bConnect.Enabled && Main().bList.Enabled && !Main().mnuView.Enabled;
  }));
  steps.push_back(Click("bList", "List shows what the server has", [this] {
    return FtpSays("List completed") &&
           static_cast<int>(Main().listFtpList.Rows().size()) == Office::Files().size();
  }));
}

void Day::AddListing(std::vector<Step>& steps) {
  AddConnecting(steps);
  const auto wavesAlone = [this] {
    const forms::Table& list = Main().listFtpList;
    return FtpSays("List completed") && list.Rows().size() == 2 &&
           list.TextAt(0, 0) == "Grand round.wav";
  };
  const auto typeIs = [this](int row) {
    return [this, row] { return Main().comboFtpFileTypesToList.ListIndex == row; };
  };
  AddPicking(steps, "comboFtpFileTypesToList", kWavFiles, "waves alone are wanted",
             typeIs(kWavFiles));
  steps.push_back(Click("bList", "and listed", wavesAlone, "ftp-filtered"));
  AddPicking(steps, "comboFtpFileTypesToList", -kWavFiles, "all files are wanted again", typeIs(0));
  steps.push_back(Click(
      "bList", "and listed", [this] { return Main().listFtpList.Rows().size() == 4; },
      "ftp-listed"));
}

Step Day::TurnTo(std::uint32_t letter, std::string says, std::function<bool()> seen,
                 std::string picture) {
  return {.says = std::move(says),
          .act =
              [this, letter] {
                typist_.KeysUnseen({keys::kAlt, 'v'});
                typist_.KeysUnseen({letter});
              },
          .seen = std::move(seen),
          .picture = std::move(picture)};
}

void Day::AddPicking(std::vector<Step>& steps, const char* box, int rowsDown, std::string says,
                     std::function<bool()> seen, std::string picture) {
  steps.push_back(Click(box, "a list drops down", SomethingPopsUp));
  steps.push_back({.says = std::move(says),
                   .act =
                       [this, rowsDown] {
                         for (int row = 0; row < std::abs(rowsDown); ++row) {
                           typist_.KeysUnseen({rowsDown > 0 ? keys::kDown : keys::kUp});
                         }
                         typist_.KeysUnseen({keys::kReturn});
                       },
                   .seen = [seen = std::move(seen)] { return !SomethingPopsUp() && seen(); },
                   .picture = std::move(picture)});
}

Step Day::ClickFile(const char* list, int row, std::string says, std::function<bool()> seen,
                    std::string picture) {
  return {.says = std::move(says),
          .act =
              [this, list, row] {
                const auto* const view = qobject_cast<QTableView*>(typist_.Widget(list));
                if (!view) return;
                const QModelIndex cell = view->model()->index(row, 0);
                typist_.ClickUnseen(view->viewport()->mapToGlobal(view->visualRect(cell).center()));
              },
          .seen = std::move(seen),
          .picture = std::move(picture)};
}

bool Day::FtpSays(const char* words) {
  return Main().eMessage.Value.Get().find(words) != std::string::npos;
}

}  // namespace tavlo::tour
