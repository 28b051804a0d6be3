#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/loop.h"
#include "ftp/ftp_client.h"
#include "intake/claims.h"
#include "intake/conversion_libraries.h"
#include "lists/desktop_notifier.h"
#include "pedals/serial_port.h"
#include "pedals/usb_watcher.h"
#include "playback/audio_objects.h"
#include "playback/source_mixer.h"
#include "remote/global_keys.h"
#include "remote/media_bus.h"
#include "reports/program_starter.h"
#include "shell/file_handover.h"
#include "store/browsable_folders.h"
#include "store/disk.h"
#include "store/library_inspector.h"
#include "store/settings_database.h"

namespace tavlo::shell {

/// Whose root it is.
enum class RootClaim {
  Ours,
  OfAnotherCopy,  ///< Which runs.
  OutOfReach,     ///< Its place gave no answer, so nothing is known.
};

/// The edges that a deck stands on. Whoever builds it owns them; they outlive the deck.
struct Platform {
  base::Loop& loop;
  store::Disk& disk;
  store::BrowsableFolders& browsableFolders;
  store::SettingsDatabases& databases;
  store::LibraryInspector& libraryInspector;
  playback::AudioFile& audioFile;
  playback::AudioTransform& audioTransform;
  playback::AudioPlayer& audioPlayer;
  playback::PromptMediaControl& promptMediaControl;
  playback::SourceMixer& sourceMixer;
  pedals::SerialPort& serialPort;
  pedals::UsbWatcher& usbWatcher;
  intake::ConversionLibraries& conversionLibraries;
  lists::DesktopNotifier& notifier;
  ftp::FtpClient& ftpClient;
  reports::ProgramStarter& programStarter;
  FileHandover& fileHandover;
  remote::GlobalKeys& globalKeys;
  remote::MediaBus& mediaBus;
  /// Whose name stands in what this copy claims of folders that several decks sweep.
  intake::ClaimOwner claimOwner;
  /// Full path of the root under which all folders and the settings stand, without a trailing
  /// separator.
  std::string installRoot;
  /// What an installation supplies: the source of a fresh root.
  std::string shareFolder;
  /// Files that this start was given to open, full paths.
  const std::vector<std::string>& filesToOpen;
  /// Claims the root for this copy, for as long as it runs. Asked again when another copy had it.
  std::function<RootClaim()> claimRoot;
  /// Starts the desktop's own program that shows what the machine is made of, and does not wait for
  /// it. False when there is none.
  std::function<bool()> showSystemInformation;
  /// Shows a folder, full path, in the desktop's file manager and does not wait for it. False when
  /// there is none that would start.
  std::function<bool(const std::string& folder)> openFolder;
  /// Ends the process once the loop is back at its top, or at once when the session ends.
  std::function<void(int status)> endProcess;
};

}  // namespace tavlo::shell
