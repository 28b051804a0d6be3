#include "accessibility/listening_desk.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <memory>
#include <set>

#include "support/hands.h"
#include "support/home.h"
#include "support/screen.h"
#include "support/sound_files.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;
namespace column = forms::document_column;

constexpr int kRate = 8000;
constexpr int kMostTabs = 60;

/// The number of a port that no machine has.
constexpr const char* kNoPort = "700";

void LayOut(const Home& home) {
  home.MakeRoot(QuietSettings({{"SerialFootPedalComPort", kNoPort}}));
  home.AddToQueue(DocumentName("Brown", 1), WaveBytes(Chirp(40 * kRate, kRate)));
  home.AddToQueue(DocumentName("Okafor", 2), WaveBytes(Chirp(kRate, kRate)));
  home.AddToQueue(DocumentName("Wreck", 3), "no sound at all");
  std::filesystem::create_directories(home.CompletedPath());
  WriteFile(home.CompletedPath() + "/" + DocumentName("Done", 4), WaveBytes(Chirp(kRate, kRate)));
}

/// Counts the keys that reach the program's windows. While somebody listens the toolkit tells the
/// screen reader of each key first and delivers it a second time when that has answered: an Alt
/// that comes back after its menu has opened would close it again.
class KeyWatch : public QObject {
 public:
  /// Waits until the program has what the hands did.
  void Follow(const std::function<void()>& hands) {
    const int before = seen_;
    hands();
    // Each look asks the program's thread, which takes its time on a busy machine. A key that the
    // program itself has no use for is not delivered again.
    constexpr int kLooks = 100;
    Until(
        [&] {
          ListeningDesk::program->Do([] {});
          return seen_ >= before + 2;
        },
        kLooks);
  }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::KeyPress && object->isWindowType()) ++seen_;
    // A shortcut acts at once, and its key does not come back.
    if (event->type() == QEvent::Shortcut) seen_ += 2;
    return false;
  }

 private:
  std::atomic<int> seen_ = 0;
};

/// Starts the program, and listens to its splash.
bool Begin(DrivenProgram& program, ScreenReader& reader) {
  if (!program.Until([&] { return program.Windows().splash.frmInitSplash.Visible.Get(); })) {
    return false;
  }
  Until([&] {
    ListeningDesk::splash = reader.Tree();
    return ListeningDesk::splash.size() > 4;
  });
  return program.Begin();
}

/// Every enabled control of the active window that the keyboard is meant for.
std::set<std::string> Reachable(DrivenProgram& program) {
  return program.Ask([] {
    std::set<std::string> names;
    for (const QWidget* const widget : QApplication::activeWindow()->findChildren<QWidget*>()) {
      const bool meant = (widget->focusPolicy() & Qt::TabFocus) != 0;
      if (meant && widget->isVisible() && widget->isEnabled() && !widget->objectName().isEmpty() &&
          !widget->objectName().startsWith("qt_")) {
        names.insert(widget->objectName().toStdString());
      }
    }
    return names;
  });
}

}  // namespace

int ListeningDesk::RunAllTests() {
  SoundServer server;
  if (!server.Start()) {
    std::fprintf(stderr, "no sound server\n");
    return 1;
  }
  const Home home;
  LayOut(home);
  DrivenProgram driven(home);
  ScreenReader listening;
  program = &driven;
  reader = &listening;
  int failed = 1;
  const int status = driven.Run([&] {
    if (!Begin(driven, listening)) return;
    failed = RUN_ALL_TESTS();
    driven.Exit();
  });
  const bool failedAround = testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed();
  return failed != 0 || status != 0 || failedAround ? 1 : 0;
}

void ListeningDesk::Keys(std::initializer_list<std::uint32_t> symbols) {
  Hands hands;
  std::unique_ptr<KeyWatch> watch;
  program->Do([&] {
    watch = std::make_unique<KeyWatch>();
    qApp->installEventFilter(watch.get());
  });
  for (const std::uint32_t symbol : symbols) watch->Follow([&] { hands.Hold(symbol); });
  for (auto symbol = std::rbegin(symbols); symbol != std::rend(symbols); ++symbol) {
    hands.LetGo(*symbol);
  }
  program->Do([&] { watch.reset(); });
}

void ListeningDesk::SetUp() {
  ASSERT_TRUE(Until([] { return program->IsReady(); })) << program->Box();
  reader->Heard();
}

void ListeningDesk::TearDown() {
  if (!HasFailure()) {
    EXPECT_TRUE(program->IsReady()) << "the test leaves the deck at work; box: " << program->Box();
    return;
  }
  // A test that broke off shall not break those that follow.
  for (int key = 0; key < 2; ++key) Keys({keys::kEscape});
  program->Do([] {
    Configuration().frmConfiguration.CloseRequest();
    if (Main().cmdSkip.Enabled) Main().cmdSkip.Press();
    Main().mnuViewQueue.Press();
  });
}

bool ListeningDesk::Told(const std::string& words) {
  return Heard("state-changed:showing|notification|" + words);
}

bool ListeningDesk::Heard(const std::string& event) {
  return Until([&] {
    const std::vector<std::string> heard = reader->Heard();
    return std::find(heard.begin(), heard.end(), event) != heard.end();
  });
}

bool ListeningDesk::Meets(const std::string& role, const std::string& name) {
  return Until([&] { return reader->Find(role, name).role == role; });
}

std::string ListeningDesk::Focus() {
  return program->Ask([]() -> std::string {
    const QWidget* const widget = QApplication::focusWidget();
    return widget ? widget->objectName().toStdString() : "";
  });
}

std::string ListeningDesk::Tab(std::initializer_list<std::uint32_t> keys) {
  const std::string before = Focus();
  Keys(keys);
  EXPECT_TRUE(Until([&] { return Focus() != before; })) << "Tab stays on " << before;
  return Focus();
}

bool ListeningDesk::TabTo(const std::string& control) {
  for (int press = 0; press < kMostTabs; ++press) {
    if (Tab() == control) return true;
  }
  return false;
}

void ListeningDesk::ExpectTabReachesEverything() {
  std::set<std::string> left = Reachable(*program);
  EXPECT_GT(left.size(), 2u);
  for (int press = 0; press < kMostTabs && !left.empty(); ++press) left.erase(Tab());
  for (const std::string& name : left) ADD_FAILURE() << "Tab does not reach " << name;
}

bool ListeningDesk::Active(const char* window) {
  return program->Until([&] {
    const QWidget* const active = QApplication::activeWindow();
    return active && active->objectName() == window;
  });
}

void ListeningDesk::OpenConfiguration() {
  Keys({keys::kAlt, 'f'});
  ASSERT_TRUE(program->Until([] { return QApplication::activePopupWidget() != nullptr; }));
  Keys({'c'});
  ASSERT_TRUE(Active("frmConfiguration"));
  Keys({keys::kAlt, 's'});
  EXPECT_TRUE(program->Until([] { return Configuration().frameSettings.Visible.Get(); }));
}

void ListeningDesk::CloseConfiguration() {
  Keys({keys::kEscape});
  EXPECT_TRUE(Active("frmMain"));
}

void ListeningDesk::Select(const std::string& author) {
  const int row = program->Ask([&] {
    const forms::Table& list = Main().listViewInQueue;
    int found = static_cast<int>(list.Rows().size()) - 1;
    while (found >= 0 && list.TextAt(found, column::Author) != author) --found;
    return found;
  });
  ASSERT_GE(row, 0) << author;
  ASSERT_TRUE(Focus() == "listViewInQueue" || TabTo("listViewInQueue"));
  const int from = program->Ask([] { return Main().listViewInQueue.ListIndex.Get(); });
  for (int at = from; at < row; ++at) Keys({keys::kDown});
  for (int at = from; at > row; --at) Keys({keys::kUp});
  if (from == row) Keys({' '});
  EXPECT_TRUE(program->Until([&] { return Main().StatusBar1.Panels.Get()[2] == author; }));
}

void ListeningDesk::Play() {
  ASSERT_TRUE(program->Until([] { return Main().cmdPlay.Enabled.Get(); }));
  Keys({keys::kAlt, 'p'});
  ASSERT_TRUE(Told("Playing"));
}

void ListeningDesk::SkipDocument() {
  Keys({keys::kAlt, 'k'});
  EXPECT_TRUE(Told("No dictation selected"));
  EXPECT_TRUE(Until([] { return program->IsReady(); }));
}

}  // namespace tavlo::test
