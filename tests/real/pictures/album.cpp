#include "album.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QPixmap>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <thread>

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;

/// White letters on it can be read; the toolkit's own blue is too bright for them.
constexpr QColor kHighlight{0x1F, 0x6A, 0xA8};

/// A dark desktop as people have it.
QPalette Dark() {
  QPalette dark;
  const QColor window(0x2B, 0x2B, 0x2E);
  const QColor text(0xE6, 0xE6, 0xE6);
  dark.setColor(QPalette::Window, window);
  dark.setColor(QPalette::WindowText, text);
  dark.setColor(QPalette::Base, QColor(0x1E, 0x1E, 0x20));
  dark.setColor(QPalette::AlternateBase, QColor(0x26, 0x26, 0x29));
  dark.setColor(QPalette::Text, text);
  dark.setColor(QPalette::Button, QColor(0x38, 0x38, 0x3C));
  dark.setColor(QPalette::ButtonText, text);
  dark.setColor(QPalette::BrightText, Qt::white);
  dark.setColor(QPalette::Highlight, kHighlight);
  dark.setColor(QPalette::HighlightedText, Qt::white);
  dark.setColor(QPalette::ToolTipBase, window);
  dark.setColor(QPalette::ToolTipText, text);
  dark.setColor(QPalette::PlaceholderText, QColor(0x9A, 0x9A, 0x9E));
  dark.setColor(QPalette::Light, QColor(0x50, 0x50, 0x55));
  dark.setColor(QPalette::Midlight, QColor(0x44, 0x44, 0x48));
  dark.setColor(QPalette::Mid, QColor(0x5A, 0x5A, 0x60));
  dark.setColor(QPalette::Dark, QColor(0x18, 0x18, 0x1A));
  dark.setColor(QPalette::Shadow, QColor(0x0C, 0x0C, 0x0D));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    dark.setColor(QPalette::Disabled, role, QColor(0x78, 0x78, 0x7C));
  }
  return dark;
}

/// Where the display has a window's contents, in pixels of the screen. The toolkit knows it in
/// logical pixels only, which at one and a half is not quite where they are.
QRect PixelsOf(const QWidget& window, const Hands& hands) {
  const auto handle = static_cast<xcb_window_t>(window.windowHandle()->winId());
  const std::unique_ptr<xcb_translate_coordinates_reply_t, void (*)(void*)> place(
      xcb_translate_coordinates_reply(
          hands.Connection(),
          xcb_translate_coordinates(hands.Connection(), handle, hands.Root(), 0, 0), nullptr),
      std::free);
  const QSize size = (QSizeF(window.size()) * window.devicePixelRatioF()).toSize();
  return place ? QRect(QPoint(place->dst_x, place->dst_y), size) : QRect();
}

}  // namespace

Album::Album(DrivenProgram& program, std::string name)
    : program_(program),
      name_(std::move(name)),
      light_(program.Ask([] { return QApplication::palette(); })) {
  light_.setColor(QPalette::Highlight, kHighlight);
}

QWidget* Album::Front() {
  if (QWidget* const popup = QApplication::activePopupWidget()) return popup;
  if (QWidget* const box = DrivenProgram::OpenBox()) return box;
  if (QWidget* const active = QApplication::activeWindow()) return active;
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    if (window->isVisible()) return window;
  }
  return nullptr;
}

void Album::UsePalette(const QPalette& palette) {
  program_.Do([&] { QApplication::setPalette(palette); });
}

QImage Album::FrontNow() {
  return program_.Ask([] {
    QWidget* const front = Front();
    if (!front) return QImage();
    return QApplication::primaryScreen()->grabWindow(front->winId()).toImage();
  });
}

Album::Look Album::LookNow() {
  return program_.Ask([] {
    Look look;
    QWidget* const front = Front();
    if (!front) return look;
    const Hands hands;
    look.screen = QApplication::primaryScreen()->grabWindow(0).toImage();
    look.screen.setDevicePixelRatio(1);
    for (const QWidget* const window : QApplication::topLevelWidgets()) {
      if (window->isVisible() && window->windowHandle()) {
        look.windows |= PixelsOf(*window, hands);
      }
    }
    const QPoint corner = PixelsOf(*front, hands).topLeft();
    look.faults = FaultsOf(*front, {look.screen, corner, front->devicePixelRatioF()});
    return look;
  });
}

void Album::WaitForRest() {
  constexpr int kMostLooks = 4;
  program_.Settle();
  QImage last = FrontNow();
  // What sounds or winds never rests; its last picture is as good as any.
  for (int look = 0; look < kMostLooks; ++look) {
    std::this_thread::sleep_for(40ms);
    program_.Settle();
    const QImage now = FrontNow();
    if (!now.isNull() && now == last) return;
    last = now;
  }
}

void Album::TakeIn(const std::string& shade, const std::string& name) {
  WaitForRest();
  const Look look = LookNow();
  ASSERT_FALSE(look.screen.isNull()) << name << ": no window shows";
  for (const std::string& fault : look.faults) {
    ADD_FAILURE() << name_ << "-" << shade << "/" << name << ": " << fault;
  }
  const char* const all = std::getenv("TAVLO_SCREENSHOTS");
  if (!all && look.faults.empty()) return;
  const std::filesystem::path folder =
      std::filesystem::path(all ? all : TAVLO_PICTURES) / (name_ + "-" + shade);
  std::filesystem::create_directories(folder);
  constexpr int kTitleBar = 32;
  const QRect part = look.windows.adjusted(-2, -kTitleBar, 2, 2).intersected(look.screen.rect());
  constexpr int kQuickly = 80;
  EXPECT_TRUE(look.screen.copy(part).save(
      QString::fromStdString((folder / (name + ".png")).string()), "PNG", kQuickly));
}

void Album::TakeLight(const std::string& name) {
  UsePalette(light_);
  TakeIn("light", name);
}

void Album::Take(const std::string& name) {
  TakeLight(name);
  UsePalette(Dark());
  TakeIn("dark", name);
}

}  // namespace tavlo::test
