#include "settings/settings_hand.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QWidget>
#include <QWindow>
#include <cctype>
#include <utility>

#include "support/keys.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

bool HasKeyboard(const forms::Control& control) {
  const QWidget* const holder = QApplication::focusWidget();
  return holder && holder->objectName().toStdString() == control.Name;
}

}  // namespace

QWidget* WidgetOf(const forms::Control& control) {
  const QString name = QString::fromStdString(control.Name);
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    if (window->objectName().toStdString() != control.Home().Name) continue;
    for (QWidget* const widget : window->findChildren<QWidget*>(name)) {
      if (widget->isVisible()) return widget;
    }
  }
  return nullptr;
}

void SettingsHand::Choose(std::uint32_t menu, std::uint32_t entry) {
  // While the window manager hands the keyboard on, a key may be lost.
  constexpr int kLooksForAMenu = 250;
  EXPECT_TRUE(Until([&] {
    program_.Keys({keys::kAlt, menu});
    return Until(
        [&] { return program_.Ask([] { return QApplication::activePopupWidget() != nullptr; }); },
        kLooksForAMenu);
  })) << program_.Box();
  program_.Keys({entry});
}

void SettingsHand::OpenConfiguration() {
  Choose('f', 'c');
  EXPECT_TRUE(program_.Until([] {
    const QWidget* const active = QApplication::activeWindow();
    return active && active->objectName() == "frmConfiguration";
  }));
}

void SettingsHand::CloseConfiguration() {
  program_.Keys({keys::kAlt, 'c'});
  EXPECT_TRUE(program_.Until([&] {
    return !Form().frmConfiguration.Visible && Main().frmMain.Visible.Get();
  })) << program_.Box();
}

void SettingsHand::TurnTo(const forms::Pane& page) {
  const int row = Form().TabOf(page);
  const std::string caption = program_.Ask([&] { return Form().tabConfiguration.TextAt(row, 0); });
  const auto letter = static_cast<unsigned char>(caption.at(caption.find('&') + 1));
  program_.Keys({keys::kAlt, static_cast<std::uint32_t>(std::tolower(letter))});
  EXPECT_TRUE(program_.Until([&] { return page.Visible.Get(); })) << page.Name;
}

void SettingsHand::ShowView(std::uint32_t letter, const forms::Pane& frame) {
  Choose('v', letter);
  EXPECT_TRUE(program_.Until([&] {
    return frame.Visible && Main().frmMain.MousePointer == forms::Pointer::Arrow;
  })) << frame.Name;
}

QPoint SettingsHand::PlaceIn(const forms::Control& control, int right, int down) {
  QPoint last;
  // A page that has just come may still be laid out.
  EXPECT_TRUE(Until([&] {
    program_.Settle();
    const QPoint place = program_.Ask([&]() -> QPoint {
      const QWidget* const widget = WidgetOf(control);
      if (!widget) return {};
      const QWidget& window = *widget->window();
      const QPoint inside((widget->width() - 1) * right / 100, (widget->height() - 1) * down / 100);
      return hands_.PlaceOf(static_cast<xcb_window_t>(window.windowHandle()->winId())) +
             widget->mapTo(&window, inside);
    });
    return !place.isNull() && std::exchange(last, place) == place;
  })) << control.Name
      << " does not show";
  return last;
}

void SettingsHand::ClickAt(const forms::Control& control, int right, int down) {
  const QPoint place = PlaceIn(control, right, down);
  hands_.ClickAt(place.x(), place.y());
  program_.Settle();
}

void SettingsHand::PointAt(const forms::Control& control) {
  for (const int right : {40, 50}) {
    const QPoint place = PlaceIn(control, right, 50);
    hands_.MoveTo(place.x(), place.y());
    program_.Settle();
  }
}

void SettingsHand::Paste(const forms::Text& box, const std::string& text) {
  ClickAt(box, 50, 50);
  EXPECT_TRUE(program_.Until([&] { return HasKeyboard(box); })) << box.Name;
  program_.Do([&] { QApplication::clipboard()->setText(QString::fromStdString(text)); });
  program_.Keys({keys::kControl, 'a'});
  program_.Keys({keys::kControl, 'v'});
}

void SettingsHand::Tick(const forms::Choice& box, bool on) {
  if (program_.Ask([&] { return box.Value.Get(); }) != on) program_.Click(box.Name.c_str());
  EXPECT_TRUE(program_.Until([&] { return box.Value.Get() == on; })) << box.Name;
}

void SettingsHand::Pick(const forms::Table& box, std::uint32_t key) {
  const int before = program_.Ask([&] { return box.ListIndex.Get(); });
  program_.Click(box.Name.c_str());
  EXPECT_TRUE(program_.Until([] { return QApplication::activePopupWidget() != nullptr; }))
      << box.Name << " does not drop down";
  program_.Keys({key});
  program_.Keys({keys::kReturn});
  EXPECT_TRUE(program_.Until([&] { return box.ListIndex != before; })) << box.Name;
}

std::vector<forms::Text*> SettingsHand::TextBoxesOn(const forms::Pane& pane) {
  return program_.Ask([&] {
    std::vector<forms::Text*> boxes;
    std::vector<const forms::Pane*> panes{&pane};
    while (!panes.empty()) {
      const forms::Pane& around = *panes.back();
      panes.pop_back();
      for (forms::Control* const control : around.Children()) {
        if (auto* const inner = dynamic_cast<forms::Pane*>(control)) panes.push_back(inner);
        auto* const text = dynamic_cast<forms::Text*>(control);
        const auto* const edit = text ? qobject_cast<QLineEdit*>(WidgetOf(*text)) : nullptr;
        if (edit && !edit->isReadOnly()) boxes.push_back(text);
      }
    }
    return boxes;
  });
}

}  // namespace tavlo::test
