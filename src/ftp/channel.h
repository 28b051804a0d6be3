#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "base/loop.h"
#include "forms/main_form.h"
#include "ftp/ftp_client.h"
#include "intake/file_being_received.h"
#include "intake/retrieval.h"
#include "store/disk.h"
#include "store/file_moves.h"
#include "store/work_folders.h"
#include "window/main_window.h"

namespace tavlo::ftp {

class ServerList;

/// What the rules of this room stand on. All of it must outlive them.
struct Edges {
  base::Loop& loop;
  window::MainWindow& window;
  FtpClient& client;
  ServerList& servers;
  store::Disk& disk;
  const store::WorkFolders& folders;
  store::FileMoves& moves;
  intake::FtpSort& sort;
  intake::FileBeingReceived& receiving;
};

/// What connecting, listing and downloading share: the state of the one channel, the status box,
/// and who may begin something while a rule waits for the server.
class Channel {
 public:
  explicit Channel(const Edges& edges);
  Channel(const Channel&) = delete;

  const Edges edges;
  forms::MainForm& form;

  /// The channel is logged in; a log-out does not clear it, the next log-in does.
  bool FtpConnected = false;
  /// A connection was lost in a transfer: nothing more goes over this channel until the next start.
  bool FtpLost = false;
  /// The whole listing.
  std::string FtpListBuffer;
  /// Stop after the file that is under way.
  bool FtpHaltRequested = false;
  /// Bytes of the file that is under way, 0 if unknown.
  std::int64_t FtpFileLength = 0;
  /// The profile as it was when the deck logged in.
  bool FtpDeleteFileCheck = false;

  /// Puts a text into the status box and its tooltip.
  void Display(const std::string& text);
  /// Puts the words of a failure there; a code without words changes nothing.
  void ShowError(int code);

  /// Asks the client for what takes a server's answer. Nothing when the program has ended
  /// meanwhile: then nothing more is to be done.
  std::optional<int> Ask(const std::function<int()>& call);
  /// Does what may open a message box.
  void During(const std::function<void()>& call);
  /// Lets time pass. False when the program has ended meanwhile.
  bool Wait(base::Duration length);
  /// One pass of the loop beside a transfer, in which hands work here as ever.
  void Turn();
  /// A rule waits inside `Ask`, `During` or `Wait`.
  bool Waits() const { return waits_; }
  /// No command of this room begins while a rule waits, by hand, by timer or by program: it would
  /// change what the rule goes on with. None begins in the waits of the exit either, when the
  /// client is about to go or has gone.
  bool MayBegin() const { return !waits_ && !ended_; }

  /// Another command is inside a wait, and a tick that waits itself would keep it waiting. Under a
  /// message box, which may stand for hours, the ticks go on.
  bool OthersWait() const;

  /// Automatic retrieval works, and nobody looks at the view.
  bool Unattended() const { return !form.mnuViewFtp.Enabled && !FtpLost; }

  /// The keyboard leaves what a hand has pressed here. In the other views, under automatic
  /// retrieval, it stays where the typist has it.
  void FocusAway();
  /// The menus are not to be had while a person is connected. Under automatic retrieval they stay
  /// as whoever uses the deck has them, and so they do when it ends.
  void TakeMenus();
  void GiveMenusBack();
  /// What every failure of the channel ends with: the button offers to connect.
  void OfferConnect();

  /// The program ends.
  void End() { ended_ = true; }
  bool Ended() const { return ended_; }

 private:
  bool waits_ = false;
  bool menusTaken_ = false;
  bool ended_ = false;
};

}  // namespace tavlo::ftp
