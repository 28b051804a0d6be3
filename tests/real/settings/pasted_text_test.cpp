#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QScreen>
#include <QToolTip>
#include <algorithm>
#include <cctype>
#include <functional>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/text.h"
#include "ftp/server_profiles.h"
#include "platform/sqlite/sqlite_settings.h"
#include "settings/settings_hand.h"
#include "store/settings_fields.h"
#include "support/screen.h"
#include "support/sound_files.h"
#include "support/sound_server.h"
#include "window/bindings.h"

namespace tavlo::test {
namespace {

using store::Table;

/// None of the texts begins with the number of a serial port that a machine may have.
struct Pasted {
  const char* name;
  std::string text;

  friend std::ostream& operator<<(std::ostream& out, const Pasted& pasted) {
    return out << pasted.name;
  }
};

/// A hundred kilobytes of it.
std::string Repeated(const std::string& text) {
  std::string all;
  while (all.size() < 100'000) all += text;
  return all;
}

std::string ControlCharacters() {
  std::string all = "a";
  for (char c = 0; c < 0x20; ++c) all += c;
  return all + "\x7F\u0080\u0085\u009F\u2028\u2029\uFEFF line\r\nbreak\n";
}

const Pasted kPasted[] = {
    {"Figures", Repeated("7")},
    {"LettersOfThreeBytes", Repeated("\u20AC")},
    {"Emoji", Repeated("\U0001F468\u200D\U0001F469\u200D\U0001F467\U0001F1E9\U0001F1EA\u2764"
                       "\uFE0F")},
    {"RightToLeft", Repeated("\u202E\u05E9\u05DC\u05D5\u05DD\u202C \u200F\u0645\u0631\u062D\u0628"
                             "\u0627 abc \u2067123\u2069 ")},
    {"ControlCharacters", ControlCharacters()},
};

/// A field of a row and what a window shows of it.
struct Shown {
  Table table;
  std::string field;
  std::string value;
  bool operator==(const Shown&) const = default;
};

bool IsNumber(const std::string& text) {
  return text.empty() || text == base::NumberText(base::NumberValue(text));
}

/// Letters and digits alone, or nothing.
bool IsName(const std::string& text) {
  const auto letterOrDigit = [](unsigned char c) { return c < 0x80 && std::isalnum(c); };
  return std::ranges::all_of(text, letterOrDigit);
}

/// The real program, in whose boxes a text is put that nobody would type.
class PastedText : public testing::TestWithParam<Pasted> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(server_.Start());
    home_.MakeRoot(QuietSettings({{"WorkWaitingAlertMode", "0"},
                                  {"AutoQueueRefreshInterval", "1000"},
                                  {"NewDictationAlertInterval", "1000"},
                                  // A port that no machine has.
                                  {"SerialFootPedalComPort", "999"}}));
    home_.AddToQueue(DocumentName("Brown"), WaveBytes(Chirp(60 * 8000, 8000)));
  }

  void Run(const std::function<void(SettingsHand&)>& script) {
    DrivenProgram program(home_);
    program_ = &program;
    const int status = program.Run([&] {
      ASSERT_TRUE(program.Begin());
      AwaitList();
      SettingsHand hand(program);
      script(hand);
      program.Exit();
    });
    EXPECT_EQ(status, 0);
  }

  /// Answers the boxes of folders that are not there on the way.
  void AwaitList() {
    EXPECT_TRUE(Until([&] {
      if (program_->IsReady()) return true;
      if (program_->Box().empty()) return false;
      ExpectFitsTheScreen([]() -> const QWidget* { return DrivenProgram::OpenBox(); });
      const std::string said = program_->AnswerBox();
      EXPECT_TRUE(said.starts_with("Tavlo Deck - Network Fault: ")) << said.substr(0, 200);
      return false;
    }));
  }
  void ExpectFitsTheScreen(const std::function<const QWidget*()>& window) {
    QSize size;
    EXPECT_TRUE(program_->Until([&] {
      const QWidget* const shown = window();
      if (!shown) return false;
      size = shown->frameGeometry().size();
      return size.boundedTo(shown->screen()->availableSize()) == size;
    })) << size.width()
        << " x " << size.height();
  }
  static const QWidget* Tooltip() {
    for (const QWidget* const widget : QApplication::topLevelWidgets()) {
      if (widget->inherits("QTipLabel") && widget->isVisible()) return widget;
    }
    return nullptr;
  }

  /// What must be chosen before a box can be typed into.
  static forms::Choice* OpenerOf(forms::ConfigurationForm& form, const forms::Text& box) {
    if (&box == &form.txtAutoQueueRefreshInterval) return &form.chkAutoRefreshMode;
    if (&box == &form.txtNewDictationAlertInterval) return &form.chkWorkWaitingAlertMode;
    if (&box == &form.txtSerialFootPedalComPort) return &form.optionSerial;
    return nullptr;
  }
  void PasteIntoAllOf(SettingsHand& hand, const forms::Pane& pane) {
    for (forms::Text* const box : hand.TextBoxesOn(pane)) {
      forms::Choice* const opener = OpenerOf(hand.Form(), *box);
      if (opener) hand.Tick(*opener, true);
      hand.Paste(*box, GetParam().text);
      EXPECT_EQ(program_->Box(), "") << box->Name;
      if (box == &hand.Form().txtCustomDisplay) {
        hand.PointAt(*box);
        ExpectFitsTheScreen(Tooltip);
      }
      if (opener && opener->ChoiceKind == forms::Choice::Kind::Check) hand.Tick(*opener, false);
      reached_.insert(box->Name);
    }
  }
  void PasteIntoAll(SettingsHand& hand) {
    hand.ShowView('i', hand.Main().frameImport);
    PasteIntoAllOf(hand, hand.Main().frameImport);
    hand.ShowView('q', hand.Main().frameInQueue);
    hand.OpenConfiguration();
    for (forms::Pane* const page : hand.Form().Pages()) {
      hand.TurnTo(*page);
      PasteIntoAllOf(hand, *page);
    }
  }
  std::set<std::string> AllBoxes() {
    return program_->Ask([] {
      std::set<std::string> names;
      for (const QWidget* const widget : QApplication::allWidgets()) {
        const auto* const box = qobject_cast<const QLineEdit*>(widget);
        if (box && !box->isReadOnly()) names.insert(box->objectName().toStdString());
      }
      return names;
    });
  }

  std::vector<Shown> ShownSettings() {
    return program_->Ask([&] {
      window::SettingsBinding& settings = program_->Rooms().binding;
      std::vector<Shown> all;
      const auto add = [&](Table table, const std::vector<window::Binding>& bindings) {
        for (const window::Binding& binding : bindings) {
          all.push_back({table, std::string(binding.field), binding.Shown()});
        }
      };
      add(Table::GeneralSettings, settings.Bindings());
      add(Table::FtpSettings, settings.FtpProfile().Bindings());
      add(Table::ImportAuthors, settings.AuthorProfile().Bindings());
      return all;
    });
  }
  void ExpectStored(const std::vector<Shown>& all) {
    platform::SqliteSettingsDatabases databases({.root = home_.Root(), .revision = "0.1.0"});
    const store::OpenedDatabase opened = databases.Open(home_.SettingsPath());
    ASSERT_TRUE(opened.database) << opened.failure;
    for (const Shown& shown : all) {
      SCOPED_TRACE(shown.field);
      const std::string stored = opened.database->Read(shown.table, 0).at(shown.field);
      EXPECT_TRUE(stored == shown.value) << "another text is stored than was shown";
      EXPECT_LE(stored.size(), store::kLongestValue);
      EXPECT_EQ(stored.find('\0'), stored.npos);
      EXPECT_TRUE(QString::fromStdString(stored).toStdString() == stored) << "not UTF-8";
      const store::Field& field = *store::FindField(shown.table, shown.field);
      EXPECT_TRUE(field.form != store::Form::NumberText || IsNumber(stored)) << stored;
      EXPECT_TRUE(shown.field != "AuthorLastName" || IsName(stored)) << stored;
      EXPECT_TRUE(shown.field != "FtpServerName" || !stored.empty());
    }
  }
  void ExpectPlays(SettingsHand& hand) {
    program_->ClickRow(0);
    ASSERT_TRUE(program_->Until([&] { return hand.Main().cmdPlay.Enabled.Get(); }));
    program_->Click("cmdPlay");
    EXPECT_TRUE(program_->Until(
        [&] { return program_->Rooms().documentInWork.CurrentSamplePosition > 0; }));
    program_->Click("cmdSkip");
    AwaitList();
  }

  SoundServer server_;
  Home home_;
  DrivenProgram* program_ = nullptr;
  std::set<std::string> reached_;
};

TEST_P(PastedText, IsKeptAsItIsShownByEveryBoxAndTheDeckStartsAndPlaysWithIt) {
  std::vector<Shown> closed;
  Run([&](SettingsHand& hand) {
    PasteIntoAll(hand);
    EXPECT_EQ(reached_, AllBoxes());
    EXPECT_GE(reached_.size(), 24u);
    hand.CloseConfiguration();
    program_->Settle();
    EXPECT_EQ(program_->Box(), "");
    closed = ShownSettings();
  });
  ExpectStored(closed);
  Run([&](SettingsHand& hand) {
    // The rule of a server's name cuts once for each change, also for that of the loading.
    for (Shown& shown : closed) {
      if (shown.field == "FtpServerName") shown.value = ftp::CutServerName(shown.value);
    }
    for (const Shown& shown : ShownSettings()) {
      const bool nameless = shown.field == "FtpServerName" && shown.value == "Ftp1";
      EXPECT_TRUE(nameless || std::ranges::find(closed, shown) != closed.end()) << shown.field;
    }
    ExpectPlays(hand);
    hand.OpenConfiguration();
    for (forms::Pane* const page : hand.Form().Pages()) hand.TurnTo(*page);
    hand.CloseConfiguration();
  });
}

INSTANTIATE_TEST_SUITE_P(Of, PastedText, testing::ValuesIn(kPasted),
                         [](const auto& pasted) { return std::string(pasted.param.name); });

}  // namespace
}  // namespace tavlo::test
