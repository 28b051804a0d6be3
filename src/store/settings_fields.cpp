#include "store/settings_fields.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"

namespace tavlo::store {
namespace {

using enum Form;
using enum Table;

constexpr Field kFields[] = {
    {GeneralSettings, "AutoBackspace", NumberText, "15",
     "Step back at each pause and play, tenths of a second, 0 to 99"},
    {GeneralSettings, "AutoPreview", NumberText, "5", "Length of a preview, seconds, 0 to 15"},
    {GeneralSettings, "WindIncrement", NumberText, "3", "Length of a wind step, seconds, 0 to 60"},
    {GeneralSettings, "AccelerateWindIncrementFlag", YesNo, "Y",
     "Wind steps grow while winding lasts"},
    {GeneralSettings, "SubjectHeading", Text, "Subject", "Heading of the subject column"},
    {GeneralSettings, "AudioPromptsFlag", YesNo, "Y", "Spoken prompts and wind tones"},
    {GeneralSettings, "MinimizeMiniPlayerFlag", YesNo, "N", "Minimize upon play"},
    {GeneralSettings, "WordProcessorPath", Text, "xdg-open", "Program that opens a report"},
    {GeneralSettings, "FaciaImagePointer", Number, "1", "Number of the fascia picture, from 1"},
    {GeneralSettings, "PlayerTop", NumberText, "600", "Top of the mini-player, twips"},
    {GeneralSettings, "PlayerLeft", NumberText, "600", "Left of the mini-player, twips"},
    {GeneralSettings, "TitleBarHeight", NumberText, "",
     "Height of all that stands above the player, twips; empty until it was measured"},
    {GeneralSettings, "AlwaysOnTopFlag", YesNo, "N", "Window stays above other programs"},
    {GeneralSettings, "SkipBegEndFlag", YesNo, "N",
     "A double press of a side pedal skips to the beginning or the end"},
    {GeneralSettings, "SwapRewFwdPedalFlag", YesNo, "N", "Left pedal forwards, right one rewinds"},
    {GeneralSettings, "ViewDelay", NumberText, "0",
     "Settling time of documents, seconds, 0 to 255"},
    {GeneralSettings, "OEMLogo", Text, "", "Brand that is shown, empty for our own"},
    {GeneralSettings, "WavConvMode", Text, "11",
     "Output rate of conversion, kHz: 8, 11, 12, 16, 22 or 44"},
    {GeneralSettings, "AutoQueueDocumentFlag", YesNo, "Y", "Next document is selected by itself"},
    {GeneralSettings, "ImportWavSynchronizeFlag", YesNo, "Y",
     "Each import directory goes with the author profile of its number"},
    {GeneralSettings, "DeleteCompletedFiles", NumberText, "0",
     "Completed documents are purged after this many days, 1 to 22; any other number keeps them"},
    {GeneralSettings, "SerialFootPedalComPort", NumberText, "1", "Serial port of the pedal"},
    {GeneralSettings, "Ew2QueuePath", Path, "eW2Queue", "Where .eW2 files arrive"},
    {GeneralSettings, "Ds2QueuePath", Path, "dS2Queue", "Where .dS2 and .dss files arrive"},
    {GeneralSettings, "WavQueuePath", Path, "ImportQueue", "Root of the import directories"},
    {GeneralSettings, "Eu2QueuePath", Path, "eU2Queue", "Where .eU2 files arrive"},
    {GeneralSettings, "Speed", NumberText, "100", "Playback speed, percent, 50 to 150"},
    {GeneralSettings, "Volume", NumberText, "50000", "Playback volume, 0 to 65535"},
    {GeneralSettings, "PromptVolume", NumberText, "20000", "Volume of prompts, 0 to 65535"},
    {GeneralSettings, "USBorSerialFootPedal", Letter, "U", "U for a USB pedal, S for a serial one"},
    {GeneralSettings, "CustomEq1", Number, "0", "Custom equalizer curve, 31 Hz, -20 to 20"},
    {GeneralSettings, "CustomEq2", Number, "0", "Custom equalizer curve, 62 Hz, -20 to 20"},
    {GeneralSettings, "CustomEq3", Number, "0", "Custom equalizer curve, 125 Hz, -20 to 20"},
    {GeneralSettings, "CustomEq4", Number, "0", "Custom equalizer curve, 252 Hz, -20 to 20"},
    {GeneralSettings, "CustomEq5", Number, "0", "Custom equalizer curve, 500 Hz, -20 to 20"},
    {GeneralSettings, "CustomEq6", Number, "0", "Custom equalizer curve, 1 kHz, -20 to 20"},
    {GeneralSettings, "CustomEq7", Number, "0", "Custom equalizer curve, 2 kHz, -20 to 20"},
    {GeneralSettings, "CustomEq8", Number, "0", "Custom equalizer curve, 4 kHz, -20 to 20"},
    {GeneralSettings, "CustomEq9", Number, "0", "Custom equalizer curve, 6 kHz, -20 to 20"},
    {GeneralSettings, "CustomEq10", Number, "0", "Custom equalizer curve, 9 kHz, -20 to 20"},
    {GeneralSettings, "CustomEq11", Number, "0", "Custom equalizer curve, 12 kHz, -20 to 20"},
    {GeneralSettings, "CustomEq12", Number, "0", "Custom equalizer curve, 16 kHz, -20 to 20"},
    {GeneralSettings, "EqualizerChoice", Text, "Flat", "Curve: Flat, Lo, Mid, Hi or Cust"},
    {GeneralSettings, "EqualizerEnableFlag", YesNo, "N", "Equalizer is on"},
    {GeneralSettings, "CustomDisplay", Text, "Tavlo Deck        ...the steady hand!",
     "Line of the user's own on the main window"},
    {GeneralSettings, "ShowCustomDisplay", YesNo, "Y", "That line is shown"},
    {GeneralSettings, "MixerSelection", NumberText, "0", "List index of the audio device"},
    {GeneralSettings, "WorkWaitingAlertMode", Letter, "0",
     "A alerts on any new dictation, P on a priority one; 1 and 0 are the same two, switched off"},
    {GeneralSettings, "AutoImportMode", YesNo, "N", "Import folders empty into the Queue"},
    {GeneralSettings, "AutoRefreshMode", Truth, "0", "Queue refreshes by itself"},
    {GeneralSettings, "NewDictationAlertInterval", NumberText, "30",
     "Seconds between checks for new dictation, at least 1"},
    {GeneralSettings, "AutoQueueRefreshInterval", NumberText, "120",
     "Seconds between refreshes of the Queue, at least 1"},
    {GeneralSettings, "FtpServerSelection", NumberText, "0", "List index of the chosen server"},

    {FtpSettings, "ID", Number, "#", "Number of the profile; never written"},
    {FtpSettings, "FtpServerName", Text, "Ftp#", "Name of the profile, letters and digits"},
    {FtpSettings, "FtpServerID", Text, "", "Host name or address"},
    {FtpSettings, "FtpServerUserID", Text, "", "Log-in name"},
    {FtpSettings, "FtpServerPassword", Text, "", "Log-in password, clear text"},
    {FtpSettings, "FtpServerDir", Text, "", "Directory to change to on the server"},
    {FtpSettings, "FtpDeleteFileCheck", Truth, "0", "Downloaded files are deleted on the server"},
    {FtpSettings, "FtpAutoListDownloadCheck", Truth, "0", "List and download upon connect"},
    {FtpSettings, "FtpPassiveModeCheck", Truth, "-1", "Passive data connection"},
    {FtpSettings, "FtpParseGenericPointer", NumberText, "1",
     "List index of the author profile that files of no known type go with"},
    {FtpSettings, "FtpListFileDefinition", Text, "All files",
     "Type of files to list; never written"},

    {ImportAuthors, "NumericSorter", Number, "#", "Number of the profile, 1 to 26"},
    {ImportAuthors, "SystemID", NumberText, "1", "System id; no document name carries it"},
    {ImportAuthors, "AuthorID", NumberText, "#", "Id of the author, never 0"},
    {ImportAuthors, "AuthorLastName", Text, "Author#", "Name of the author, letters and digits"},
    {ImportAuthors, "Department", NumberText, "1", "Department, never 0"},
    {ImportAuthors, "Worktype", NumberText, "1", "Work type"},
    {ImportAuthors, "Secretary", Text, "", "Kept from older releases"},
    {ImportAuthors, "Priority", YesNo, "N", "Documents of the author have priority"},
    {ImportAuthors, "Subject", Text, "None", "Subject, letters and digits, never empty"},

    {RevisionInfo, "Revision", Text, "", "Revision of the build that last opened the database"},
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
