#include "store/settings_fields.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"

namespace tavlo::store {
namespace {

using enum Form;
using enum Table;

constexpr std::string_view kKeys = "CTRL, ALT, SHIFT, LOGO and a key, as CTRL+F4; empty for none";

constexpr Field kFields[] = {
    {GeneralSettings, "AutoBackspace", NumberText, "15",
     "How far Play goes back before it plays on, in tenths of a second", "0 to 99"},
    {GeneralSettings, "AutoPreview", NumberText, "5",
     "How much of a dictation sounds when it is selected, in seconds", "0 to 15; 0 is nothing"},
    {GeneralSettings, "WindIncrement", NumberText, "3",
     "Length of a jump of Rewind and Forward, in seconds", "0 to 60"},
    {GeneralSettings, "AccelerateWindIncrementFlag", YesNo, "Y",
     "The jumps of a wind come faster the longer it lasts"},
    {GeneralSettings, "SubjectHeading", Text, "Subject",
     "Title of the subject's column in the lists", "anything; an empty one becomes Subject"},
    {GeneralSettings, "AudioPromptsFlag", YesNo, "Y",
     "The deck speaks, and each jump of a wind sounds a tone"},
    {GeneralSettings, "MinimizeMiniPlayerFlag", YesNo, "N",
     "Play minimizes the window instead of shrinking it to the mini-player"},
    {GeneralSettings, "WordProcessorPath", Text, "xdg-open",
     "Program that opens a report; the desktop chooses one where it can not be started",
     "name or path of a program, with arguments"},
    {GeneralSettings, "FaciaImagePointer", Number, "1",
     "Number of the picture on the deck's face, in the order of their names", "1 to 255"},
    {GeneralSettings, "PlayerTop", NumberText, "600",
     "Where the mini-player stands, from the top of the screen, in 1/1440 inch", "any"},
    {GeneralSettings, "PlayerLeft", NumberText, "600",
     "Where the mini-player stands, from the left of the screen, in 1/1440 inch", "any"},
    {GeneralSettings, "TitleBarHeight", NumberText, "",
     "Height of what stands above the player in its window, in 1/1440 inch",
     "any; an empty one is measured anew"},
    {GeneralSettings, "AlwaysOnTopFlag", YesNo, "N",
     "The window stays above those of other programs"},
    {GeneralSettings, "SkipBegEndFlag", YesNo, "N",
     "A side pedal that is pressed twice, quickly, goes to the beginning or the end"},
    {GeneralSettings, "SwapRewFwdPedalFlag", YesNo, "N",
     "The left pedal winds forward and the right one rewinds; the box shows it reversed, ticked "
     "for N"},
    {GeneralSettings, "ViewDelay", NumberText, "0",
     "Seconds that a new document takes to settle; kept, but nothing depends on it", "any"},
    {GeneralSettings, "OEMLogo", Text, "", "Logo of a reseller on the deck",
     "KRT or SorelTek; anything else shows none"},
    {GeneralSettings, "WavConvMode", Text, "11",
     "Rate of converted DSS dictations in kHz; kept, but nothing depends on it: it is always 11",
     "8, 11, 12, 16, 22 or 44"},
    {GeneralSettings, "AutoQueueDocumentFlag", YesNo, "Y",
     "After Complete, Save or Skip the next dictation is selected by itself"},
    {GeneralSettings, "ImportWavSynchronizeFlag", YesNo, "Y",
     "Each import directory goes with an author profile of its own"},
    {GeneralSettings, "DeleteCompletedFiles", NumberText, "0",
     "Days after which a start deletes a finished dictation for good",
     "1 to 22; any other number keeps them all"},
    {GeneralSettings, "SerialFootPedalComPort", NumberText, "1",
     "Number of the serial port of the foot pedal", "from 1 on"},
    {GeneralSettings, "Ew2QueuePath", Path, "eW2Queue", "Drop folder of .eW2 files"},
    {GeneralSettings, "Ds2QueuePath", Path, "dS2Queue", "Drop folder of .dS2 files"},
    {GeneralSettings, "WavQueuePath", Path, "ImportQueue", "Folder of the import directories"},
    {GeneralSettings, "Eu2QueuePath", Path, "eU2Queue", "Drop folder of .eU2 files"},
    {GeneralSettings, "Speed", NumberText, "100", "Speed of playing, in percent", "50 to 150"},
    {GeneralSettings, "Volume", NumberText, "50000", "Volume of dictations", "0 to 65535"},
    {GeneralSettings, "PromptVolume", NumberText, "20000", "Volume of what the deck says",
     "0 to 65535"},
    {GeneralSettings, "USBorSerialFootPedal", Letter, "U",
     "Kind of the foot pedal; one at a USB port works whatever stands here",
     "U for USB, S for a serial port"},
    {GeneralSettings, "CustomEq1", Number, "0",
     "Custom curve of the equalizer at 31 Hz, in dB; less than 0 is louder", "-20 to 20"},
    {GeneralSettings, "CustomEq2", Number, "0",
     "Custom curve of the equalizer at 62 Hz, in dB; less than 0 is louder", "-20 to 20"},
    {GeneralSettings, "CustomEq3", Number, "0",
     "Custom curve of the equalizer at 125 Hz, in dB; less than 0 is louder", "-20 to 20"},
    {GeneralSettings, "CustomEq4", Number, "0",
     "Custom curve of the equalizer at 252 Hz, in dB; less than 0 is louder", "-20 to 20"},
    {GeneralSettings, "CustomEq5", Number, "0",
     "Custom curve of the equalizer at 500 Hz, in dB; less than 0 is louder", "-20 to 20"},
    {GeneralSettings, "CustomEq6", Number, "0",
     "Custom curve of the equalizer at 1 kHz, in dB; less than 0 is louder", "-20 to 20"},
    {GeneralSettings, "CustomEq7", Number, "0",
     "Custom curve of the equalizer at 2 kHz, in dB; less than 0 is louder", "-20 to 20"},
    {GeneralSettings, "CustomEq8", Number, "0",
     "Custom curve of the equalizer at 4 kHz, in dB; less than 0 is louder", "-20 to 20"},
    {GeneralSettings, "CustomEq9", Number, "0",
     "Custom curve of the equalizer at 6 kHz, in dB; less than 0 is louder", "-20 to 20"},
    {GeneralSettings, "CustomEq10", Number, "0",
     "Custom curve of the equalizer at 9 kHz, in dB; less than 0 is louder", "-20 to 20"},
    {GeneralSettings, "CustomEq11", Number, "0",
     "Custom curve of the equalizer at 12 kHz, in dB; less than 0 is louder", "-20 to 20"},
    {GeneralSettings, "CustomEq12", Number, "0",
     "Custom curve of the equalizer at 16 kHz, in dB; less than 0 is louder", "-20 to 20"},
    {GeneralSettings, "EqualizerChoice", Text, "Flat", "Curve of the equalizer",
     "Flat, Lo, Mid, Hi or Cust"},
    {GeneralSettings, "EqualizerEnableFlag", YesNo, "N", "The equalizer shapes the sound"},
    {GeneralSettings, "CustomDisplay", Text, "Tavlo Deck        ...the steady hand!",
     "Line of your own on the deck", "anything"},
    {GeneralSettings, "ShowCustomDisplay", YesNo, "Y", "That line is shown"},
    {GeneralSettings, "MixerSelection", NumberText, "0",
     "Sound device that plays, by its place in the list", "0 for the first, and so on"},
    {GeneralSettings, "WorkWaitingAlertMode", Letter, "0", "Which new dictations are told",
     "A for any, P for those of priority; 1 and 0 are these two, switched off"},
    {GeneralSettings, "AutoImportMode", YesNo, "N",
     "What lies in the import directories goes to the Queue by itself"},
    {GeneralSettings, "AutoRefreshMode", Truth, "0", "The Queue is refreshed by itself"},
    {GeneralSettings, "NewDictationAlertInterval", NumberText, "30",
     "Seconds between two looks for new dictations", "1 to 1310"},
    {GeneralSettings, "AutoQueueRefreshInterval", NumberText, "120",
     "Seconds between two refreshes of the Queue", "1 to 1310"},
    {GeneralSettings, "FtpServerSelection", NumberText, "0",
     "Server that is chosen, by its place in the list", "0 to 24"},
    {GeneralSettings, "PlayStopKey", Text, "", "Key of any window that plays, and stops again",
     kKeys},
    {GeneralSettings, "PlayHeldKey", Text, "", "Key of any window that plays while it is held",
     kKeys},
    {GeneralSettings, "RewindHeldKey", Text, "", "Key of any window that rewinds while it is held",
     kKeys},
    {GeneralSettings, "ForwardHeldKey", Text, "",
     "Key of any window that winds forward while it is held", kKeys},
    {GeneralSettings, "ToBeginningKey", Text, "", "Key of any window that goes to the beginning",
     kKeys},
    {GeneralSettings, "ToEndKey", Text, "", "Key of any window that goes to the end", kKeys},
    {GeneralSettings, "SlowerKey", Text, "", "Key of any window that plays slower by 5 percent",
     kKeys},
    {GeneralSettings, "FasterKey", Text, "", "Key of any window that plays faster by 5 percent",
     kKeys},
    {GeneralSettings, "NormalSpeedKey", Text, "", "Key of any window that plays at normal speed",
     kKeys},
    {GeneralSettings, "CompleteKey", Text, "",
     "Key of any window that completes the dictation in work", kKeys},
    {GeneralSettings, "SaveKey", Text, "", "Key of any window that saves the dictation in work",
     kKeys},
    {GeneralSettings, "SkipKey", Text, "",
     "Key of any window that returns the dictation in work to the Queue", kKeys},
    {GeneralSettings, "BusSaysNothingFlag", YesNo, "N",
     "Lock screens and scripts are told nothing of the dictation, only what the deck does"},

    {FtpSettings, "ID", Number, "#", "Number of the profile; nothing changes it", "1 to 25"},
    {FtpSettings, "FtpServerName", Text, "Ftp#", "What the Ftp view calls the server",
     "letters and digits"},
    {FtpSettings, "FtpServerID", Text, "", "Name or address of the server",
     "as ftp.example.com, with ftps:// or ftpes:// before it for protection"},
    {FtpSettings, "FtpServerUserID", Text, "", "Name to log in with", "anything"},
    {FtpSettings, "FtpServerPassword", Text, "", "Password to log in with, stored as it was typed",
     "anything"},
    {FtpSettings, "FtpServerDir", Text, "", "Directory of the server that the files are in",
     "anything; an empty one is where the server begins"},
    {FtpSettings, "FtpDeleteFileCheck", Truth, "0",
     "Each file is deleted on the server once the whole of it has arrived"},
    {FtpSettings, "FtpAutoListDownloadCheck", Truth, "0", "Connect lists and fetches at once"},
    {FtpSettings, "FtpPassiveModeCheck", Truth, "-1",
     "The server opens the way for data, and not this computer"},
    {FtpSettings, "FtpParseGenericPointer", NumberText, "1",
     "Import directory, and author, of files that have no ending of their own", "0 to 25"},
    {FtpSettings, "FtpListFileDefinition", Text, "All files",
     "Type of files that is chosen together with the server; nothing changes it",
     "a type that the Ftp view offers"},

    {ImportAuthors, "NumericSorter", Number, "#", "Number of the profile; nothing changes it",
     "1 to 26"},
    {ImportAuthors, "SystemID", NumberText, "1",
     "Kept with the profile; no name of a document has it", "0 to 9999"},
    {ImportAuthors, "AuthorID", NumberText, "#", "Number of the author", "1 to 999999"},
    {ImportAuthors, "AuthorLastName", Text, "Author#", "Last name of the author",
     "up to 14 letters and digits"},
    {ImportAuthors, "Department", NumberText, "1", "Department", "1 to 99"},
    {ImportAuthors, "Worktype", NumberText, "1", "Work type", "0 to 99"},
    {ImportAuthors, "Secretary", Text, "", "Kept from older releases", "anything"},
    {ImportAuthors, "Priority", YesNo, "N", "What is sent with the profile has priority"},
    {ImportAuthors, "Subject", Text, "None", "Subject",
     "up to 14 letters and digits; an empty one becomes 0"},

    {RevisionInfo, "Revision", Text, "", "Revision of the program that last opened the settings",
     "anything"},
};

constexpr std::string_view kDocumentFolders = "/Files/";

}  // namespace

const TableShape& ShapeOf(Table table) {
  return *std::find_if(kTables.begin(), kTables.end(),
                       [table](const TableShape& shape) { return shape.table == table; });
}

std::span<const Field> AllFields() { return kFields; }

std::span<const Field> FieldsOf(Table table) {
  const auto ofTable = [table](const Field& field) { return field.table == table; };
  const Field* const first = std::find_if(std::begin(kFields), std::end(kFields), ofTable);
  const Field* const last = std::find_if_not(first, std::end(kFields), ofTable);
  return {first, last};
}

const Field* FindField(Table table, std::string_view name) {
  const auto fields = FieldsOf(table);
  const auto found = std::find_if(fields.begin(), fields.end(),
                                  [name](const Field& field) { return field.name == name; });
  return found == fields.end() ? nullptr : &*found;
}

std::string_view AllowedValues(const Field& field) {
  if (!field.allowed.empty()) return field.allowed;
  switch (field.form) {
    case Form::YesNo:
      return "Y or N";
    case Form::Truth:
      return "-1 for yes, 0 for no";
    case Form::Path:
      return "full path of a folder";
    case Form::NumberText:
    case Form::Number:
    case Form::Letter:
    case Form::Text:
      break;
  }
  return {};
}

std::string ShippedValue(const Field& field, int row, const ShippedDatabase& shipped) {
  if (field.form == Form::Path) {
    return shipped.root + std::string(kDocumentFolders) + std::string(field.shipped);
  }
  if (field.table == Table::RevisionInfo) return shipped.revision;
  std::string value(field.shipped);
  const auto at = value.find('#');
  if (at != std::string::npos) value.replace(at, 1, std::to_string(row + 1));
  return value;
}

bool IsYes(std::string_view stored) { return stored == "Y"; }

std::string YesNo(bool on) { return on ? "Y" : "N"; }

bool IsTruth(std::string_view stored) { return base::NumberValue(stored) == -1; }

std::string TruthText(bool on) { return on ? "-1" : "0"; }

int CheckBoxValue(std::string_view stored) { return IsTruth(stored) ? 1 : 0; }

std::optional<std::uint8_t> ByteValue(std::string_view stored) {
  const std::int64_t number = base::WholeNumberValue(stored);
  if (number < 0 || number > 255) return {};
  return static_cast<std::uint8_t>(number);
}

}  // namespace tavlo::store
