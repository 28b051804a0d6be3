#include "support/driven_program.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QTableView>
#include <QWindow>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <thread>

#include "support/keys.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;
namespace column = forms::document_column;

/// How often display, window manager and toolkit are each waited for: what one of them does may
/// give the next one something to do.
constexpr int kRounds = 3;

/// Ends a script whose program has ended under it.
struct ProgramEnded {};

char** HomeFirst(const Home& home, char** arguments) {
  ::setenv("HOME", home.Path().c_str(), 1);
  return arguments;
}

}  // namespace

DrivenProgram::DrivenProgram(const Home& home, const platform::TrustStore& trust)
    : program_(argumentCount_, HomeFirst(home, arguments_), nullptr, trust) {}

int DrivenProgram::Run(const std::function<void()>& script) {
  std::thread typist([&] {
    try {
      // The first question is answered once the loop turns.
      Do([] {});
      script();
    } catch (const ProgramEnded&) {
      ADD_FAILURE() << "the program ended before the script";
    }
    if (test::Until([this] { return over_.load(); })) return;
    ADD_FAILURE() << "the program did not end; box: " << Box();
    Do([this] { program_.Loop().Quit(-1); });
  });
  const int status = program_.Run();
  over_ = true;
  typist.join();
  return status;
}

void DrivenProgram::Do(const std::function<void()>& call) {
  const auto done = std::make_shared<std::promise<void>>();
  std::future<void> answered = done->get_future();
  QMetaObject::invokeMethod(
      qApp,
      [call, done] {
        call();
        done->set_value();
      },
      Qt::QueuedConnection);
  for (int look = 0; answered.wait_for(20ms) != std::future_status::ready; ++look) {
    if (over_) throw ProgramEnded();
    if (look < kManyLooks) continue;
    std::fprintf(stderr, "the program's loop does not answer\n");
    std::abort();
  }
}

bool DrivenProgram::Until(const std::function<bool()>& condition) {
  return test::Until([&] { return Ask(condition); });
}

void DrivenProgram::Settle() {
  for (int round = 0; round < kRounds; ++round) {
    Do([this] { mark_.Send(); });
    EXPECT_TRUE(test::Until([this] { return mark_.CameBack() || over_; }, kManyLooks * 20, 1ms))
        << "the display does not answer";
    hands_.AwaitManager();
  }
  // Whatever the toolkit was told last it has done when it comes to this.
  Do([] {});
}

bool DrivenProgram::IsReady() {
  return Ask([this] {
    return program_.Deck().Built() && Main().frameFiles.Visible && Main().listViewInQueue.Visible &&
           Main().mnuFile.Enabled && Main().frmMain.MousePointer == forms::Pointer::Arrow &&
           Main().cmdUpdateFileList.Visible && Main().cmdUpdateFileList.Enabled;
  });
}

QMessageBox* DrivenProgram::OpenBox() {
  // One that came up while somebody typed elsewhere is not modal to the toolkit. One that came over
  // another belongs to that.
  for (QWidget* const widget : QApplication::topLevelWidgets()) {
    auto* const box = qobject_cast<QMessageBox*>(widget);
    if (!box || !box->isVisible()) continue;
    const auto over = box->findChildren<QMessageBox*>(Qt::FindDirectChildrenOnly);
    if (std::ranges::none_of(over, &QMessageBox::isVisible)) return box;
  }
  return nullptr;
}

std::string DrivenProgram::Box() {
  return Ask([]() -> std::string {
    const QMessageBox* const box = OpenBox();
    return box ? (box->windowTitle() + ": " + box->text()).toStdString() : "";
  });
}

int DrivenProgram::RowOf(const std::string& fileName) {
  return Ask([&] {
    const forms::Table& list = Main().listViewInQueue;
    int row = static_cast<int>(list.Rows().size()) - 1;
    while (row >= 0 && list.TextAt(row, column::FileName) != fileName) --row;
    return row;
  });
}

bool DrivenProgram::Begin() {
  forms::SplashForm& splash = Windows().splash;
  if (!Until([&] { return !splash.lblVersion.Value.Get().empty(); })) return false;
  // A hand might come when the splash has gone by itself, and click whatever stands there then.
  QMetaObject::invokeMethod(
      qApp,
      [&splash] {
        if (splash.frmInitSplash.Visible) splash.picIcon.Click();
      },
      Qt::QueuedConnection);
  return test::Until([this] { return IsReady() || !Box().empty(); });
}

QWidget* DrivenProgram::Widget(const char* name) {
  for (QWidget* const widget : QApplication::allWidgets()) {
    if (widget->objectName() == name && widget->isVisible()) return widget;
  }
  return nullptr;
}

QPoint DrivenProgram::PlaceOf(const Spot& spot) const {
  if (!spot.widget) return {};
  const QWidget& window = *spot.widget->window();
  const QPointF inside = spot.widget->mapTo(&window, spot.inside);
  return hands_.PlaceOf(static_cast<xcb_window_t>(window.windowHandle()->winId())) +
         (inside * window.devicePixelRatio()).toPoint();
}

QPoint DrivenProgram::Rest(const std::function<Spot()>& spot) {
  const auto look = [&] { return PlaceOf(spot()); };
  QPoint last(-1, -1);
  QPoint now = Ask(look);
  test::Until([&] {
    // A window looks a moment after its last move where it has come to rest, and may move again.
    std::this_thread::sleep_for(100ms);
    Settle();
    last = std::exchange(now, Ask(look));
    return !now.isNull() && now == last;
  });
  return now;
}

void DrivenProgram::Follow() {
  try {
    Settle();
  } catch (const ProgramEnded&) {
    // Whoever asks the program anything from here on is told.
  }
}

void DrivenProgram::Keys(std::initializer_list<std::uint32_t> symbols) {
  // A window that has just come does not have the keyboard yet.
  EXPECT_TRUE(Until([] { return QApplication::activeWindow() != nullptr; })) << Box();
  hands_.Keys(symbols);
  Follow();
}

QPoint DrivenProgram::MiddleOf(const char* control) {
  const QPoint place = Rest([&] {
    QWidget* const widget = Widget(control);
    return widget ? Spot{widget, widget->rect().center()} : Spot{};
  });
  if (place.isNull()) ADD_FAILURE() << control << " does not show";
  return place;
}

void DrivenProgram::Click(const char* control) {
  const QPoint place = MiddleOf(control);
  hands_.ClickAt(place.x(), place.y());
  Follow();
}

void DrivenProgram::DoubleClick(const char* control) {
  const QPoint place = MiddleOf(control);
  // A window manager that is still busy with one click may keep the next one to itself, and so they
  // come further apart than those of a hand.
  const int usual = Ask([] { return QApplication::doubleClickInterval(); });
  Do([] { QApplication::setDoubleClickInterval(kLongDoubleClick); });
  for (int click = 0; click < 2; ++click) {
    hands_.ClickAt(place.x(), place.y());
    Follow();
  }
  Do([usual] { QApplication::setDoubleClickInterval(usual); });
}

void DrivenProgram::ClickRow(int row) { ClickCell("listViewInQueue", row, column::Author); }

void DrivenProgram::ClickCell(const char* list, int row, int column) {
  const QPoint place = Rest([&] {
    auto* const table = qobject_cast<QTableView*>(Widget(list));
    if (!table) return Spot{};
    const QModelIndex cell = table->model()->index(row, column);
    table->scrollTo(cell);
    return Spot{table->viewport(), table->visualRect(cell).center()};
  });
  if (place.isNull()) ADD_FAILURE() << "row " << row << " of " << list << " does not show";
  hands_.ClickAt(place.x(), place.y());
  Follow();
}

void DrivenProgram::Drag(const char* slider, int percent) {
  const QPoint place = Rest([&] {
    QWidget* const widget = Widget(slider);
    if (!widget) return Spot{};
    return Spot{widget, QPoint((widget->width() - 1) * percent / 100, widget->height() / 2)};
  });
  if (place.isNull()) ADD_FAILURE() << slider << " does not show";
  const int aside = percent > 50 ? -5 : 5;
  hands_.MoveTo(place.x() + aside, place.y());
  hands_.Press();
  Settle();
  hands_.MoveTo(place.x(), place.y());
  Settle();
  hands_.Release();
  Follow();
}

std::string DrivenProgram::AnswerBox() {
  std::string said;
  EXPECT_TRUE(test::Until([&] { return !(said = Box()).empty(); })) << "no box came";
  EXPECT_TRUE(test::Until([&] {
    try {
      if (Box() != said) return true;
      if (Ask([] { return QApplication::activeWindow() != nullptr; })) hands_.Keys({keys::kReturn});
      Settle();
      return false;
    } catch (const ProgramEnded&) {
      // That was the answer.
      return true;
    }
  })) << said;
  return said;
}

void DrivenProgram::Exit() {
  EXPECT_TRUE(test::Until([this] { return IsReady(); })) << Box();
  const auto deck = Ask([this] {
    const QWidget* const window = Widget(Main().frmMain.Name.c_str());
    return static_cast<xcb_window_t>(window ? window->windowHandle()->winId() : 0);
  });
  hands_.PressClose(deck);
  EXPECT_EQ(AnswerBox(), "Tavlo Deck - Exit: Are you sure you want to exit the Tavlo Deck?");
}

}  // namespace tavlo::test
