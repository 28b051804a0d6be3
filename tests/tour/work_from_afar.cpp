// How work comes from a server: chosen by hand, by itself while a document plays, and what the deck
// says when the server goes away.
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTableView>
#include <QWidget>

#include "day.h"
#include "desk.h"

namespace tavlo::tour {
namespace {

/// The import directory that the office's files are linked to.
constexpr const char* kDirectory = "5";

QStringList Waiting(const QString& folder, const QString& pattern) {
  return QDir(InHome("Lyrane/TavloDeck/Files/" + folder)).entryList({pattern}, QDir::Files);
}

bool IsLinked(const QString& pattern) {
  return Waiting(QString("ImportQueue/") + kDirectory, pattern).size() == 1;
}

}  // namespace

void Day::AddMoving(std::vector<Step>& steps) {
  const auto counts = [this](std::size_t there, std::size_t toFetch) {
    return [this, there, toFetch] {
      return Main().listFtpList.Rows().size() == there &&
             Main().listFtpDownloadList.Rows().size() == toFetch &&
             Main().bDownload.Enabled == (toFetch > 0);
    };
  };
  steps.push_back(ClickFile("listFtpList", 1, "a click puts a file among those to be fetched",
                            counts(3, 1), "ftp-moved"));
  steps.push_back(ClickFile("listFtpDownloadList", 0, "and a click takes it back", counts(4, 0)));
  steps.push_back(Click("cmdFtpListToDownload", "a key takes all of them", counts(0, 4)));
  steps.push_back(Click("cmdFtpDownloadToList", "another one gives them back", counts(4, 0)));
  steps.push_back(Click("cmdFtpListToDownload", "all are to be fetched", counts(0, 4), "ftp-all"));
}

void Day::AddDownload(std::vector<Step>& steps) {
  const auto underWay = [this] {
    return Main().bDownload.Caption.Get() == "Halt" &&
           Main().eByteCount.Value.Get().find('%') != std::string::npos && FtpSays("Downloading ");
  };
  steps.push_back(
      Click("bDownload", "Download fetches the first one, and counts", underWay, "ftp-download"));
  steps.push_back(Click(
      "bDownload", "Halt lets it come whole first",
      [this] {
        return FtpSays("Download will be halted after the current transfer completes") ||
               FtpSays("Download halted");
      },
      "ftp-halt"));
  steps.push_back({.says = "then the run stands still; what came is deleted on the server",
                   .seen =
                       [this] {
                         return FtpSays("Download halted") && Main().bDownload.Enabled &&
                                Main().bDownload.Caption.Get() == "Download" &&
                                Main().listFtpDownloadList.Rows().size() == 3 &&
                                Waiting("FtpQueue", "*Ferraro*.eW2").size() == 1 &&
                                Office::Files().size() == 3;
                       },
                   .picture = "ftp-halted"});
  steps.push_back(Click(
      "bDownload", "Download goes on; a name that has a separator lands under a harmless one",
      [this] {
        const char* const lands = "lands as Ward 3_noon.wav: its name has a separator in it.";
        return FtpSays(lands) || Main().lblNotice.Value.Get().find(lands) != std::string::npos;
      },
      "ftp-odd-name"));
  const auto isOver = [this] { return FtpSays("Disconnected after download completed"); };
  steps.push_back({.says = "behind the last one the deck logs out and sorts what came",
                   .seen = [this, isOver] { return Main().lblFtpParsing.Visible || isOver(); },
                   .picture = "ftp-sorting"});
  steps.push_back({.says = "and is ready for the next time",
                   .seen =
                       [this, isOver] {
                         return isOver() && Main().bConnect.Caption.Get() == "Connect" &&
                                Main().mnuView.Enabled && Office::Files().isEmpty();
                       },
                   .picture = "ftp-done"});
}

void Day::AddArrived(std::vector<Step>& steps) {
  steps.push_back(TurnTo('q', "the Queue has the document that came from afar", [this] {
    return Ready() && RowOf("Ferraro") >= 0 && Waiting("FtpQueue", "*").isEmpty() &&
           Main().sldVol.Enabled;
  }));
  steps.push_back(ClickRowOf(
      "Ferraro", "and sounds it", [this] { return Playing() && Seconds() > 1; }, "ftp-queue"));
  steps.push_back(
      TurnTo('i', "the Import view shows", [this] { return Main().frameImport.Visible.Get(); }));
  steps.push_back({.says = "in the linked directory, with its author, what had none",
                   .act =
                       [this] {
                         QWidget* const strip = typist_.Widget("scrollImportWavSubDirectories");
                         if (strip) strip->setFocus();
                         typist_.KeysUnseen({keys::kRight});
                       },
                   .seen =
                       [this] {
                         return Main().txtWavImportSubdirectory.Value.Get() == kDirectory &&
                                Main().listViewImport.Rows().size() == 3 &&
                                Main().txtImportAuthorLastName.Value.Get() == "Author6" &&
                                IsLinked("Grand round_*.wav") && IsLinked("Phone log_*.mp3") &&
                                IsLinked("Ward 3_noon_*.wav");
                       },
                   // One directory further at each press.
                   .over = [] { return true; },
                   .picture = "ftp-import"});
  steps.push_back(TurnTo('q', "and back in the Queue", [this] { return Ready(); }));
}

void Day::AddRetrieval(std::vector<Step>& steps) {
  const forms::ConfigurationForm& config = program_.Deck().windows.configuration;
  const auto closed = [] { return QApplication::activePopupWidget() == nullptr; };
  AddPage(steps, 'f', config.frameFtp, "the Ftp page again");
  steps.push_back(Click(
      "chkFtpAutoRetrieve", "the deck is to look at the server by itself",
      [&config, this] { return config.chkFtpAutoRetrieve.Value && !Main().mnuViewFtp.Enabled; },
      "retrieve"));
  steps.push_back(CloseSettings());
  steps.push_back(ClickRowOf("Haddad", "a document is chosen", [this] { return Playing(); }));
  steps.push_back(Click("cmdPlay", "and played", [this] { return Playing() && Seconds() > 1; }));
  steps.push_back(
      {.says = "what the office sends meanwhile is fetched, and the document plays on",
       .act =
           [this] {
             remembered_ = Seconds();
             Office::Put("Anna", "0030 0 Vasquez 902 6 2 2004 9 45 0 3 0 8 evening 0 0_.eW2");
           },
       .seen =
           [this] {
             return Office::Files().isEmpty() && Waiting("eW2Queue", "*Vasquez*.eW2").size() == 1 &&
                    Playing() && Seconds() > remembered_ + 2;
           },
       .picture = "retrieved"});
  steps.push_back(Click("cmdSkip", "back in the Queue it stands in the list",
                        [this] { return Ready() && RowOf("Vasquez") >= 0; }));
  steps.push_back(Keys(
      {keys::kAlt, 'v'}, "the Ftp view rests meanwhile",
      [this] { return QApplication::activePopupWidget() && !Main().mnuViewFtp.Enabled; },
      "retrieve-menu"));
  steps.push_back(Keys({keys::kEscape}, "the menu closes", closed));
  AddPage(steps, 'f', config.frameFtp, "the Ftp page once more");
  steps.push_back(Click("chkFtpAutoRetrieve", "the deck has looked enough", [&config, this] {
    return !config.chkFtpAutoRetrieve.Value && Main().mnuViewFtp.Enabled;
  }));
  steps.push_back(CloseSettings());
}

void Day::AddLostServer(std::vector<Step>& steps) {
  steps.push_back({.says = "the office sends a last one",
                   .act = [] { Office::Put("Okafor", "Late call.wav"); },
                   .seen = [] { return Office::Files().size() == 1; }});
  steps.push_back(TurnTo('t', "the Ftp view shows again", [this] {
    return Main().frameFtp.Visible && Main().bConnect.Caption.Get() == "Connect";
  }));
  AddConnecting(steps);
  steps.push_back(Click("cmdFtpListToDownload", "it is to be fetched",
                        [this] { return Main().bDownload.Enabled.Get(); }));
  steps.push_back(Click("bDownload", "and is on its way", [this] {
    return Main().eByteCount.Value.Get().find('%') != std::string::npos;
  }));
  steps.push_back(
      {.says = "when the server goes away the deck says what that means",
       .act = [this] { office_.GoAway(); },
       .seen =
           [this] {
             return FtpSays("Connection lost.  To ftp again please restart the Tavlo Deck") &&
                    !Main().bConnect.Enabled && !Main().mnuViewFtp.Enabled &&
                    Main().mnuView.Enabled &&
                    Main().lblNotice.Value.Get().find("Late call.wav was not received whole.") == 0;
           },
       .picture = "ftp-lost"});
  steps.push_back(TurnTo('q', "everything else goes on", [this] { return Ready(); }));
}

}  // namespace tavlo::tour
