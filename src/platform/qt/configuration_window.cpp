#include "platform/qt/configuration_window.h"

#include <QFormLayout>
#include <QMenuBar>
#include <QVBoxLayout>

#include "platform/qt/binder.h"
#include "platform/qt/deck_slider.h"

namespace tavlo::platform::qt {

ConfigurationWindow::ConfigurationWindow(forms::ConfigurationForm& form, QtLoop& loop,
                                         Binder& binder)
    : TopWindow(form.frmConfiguration, loop, binder) {
  auto* const menus = new QMenuBar(this);
  menus->setNativeMenuBar(false);
  binder.Choose(form.mnuClose, *menus->addAction(QString()));

  auto* const page = new QWidget(this);
  auto* const lines = new QFormLayout(page);
  lines->setContentsMargins(24, 24, 24, 24);
  auto* const volume = new DeckSlider(DeckSlider::Look::Small, page);
  lines->addRow("Prompt volume", volume);
  binder.Slide(form.sldPromptVol, *volume);
  binder.Frame(form.frameSettings, *page);

  auto* const keeper = new QWidget(this);
  keeper->setFixedSize(0, 0);
  binder.Bind(form.txtFocus, *keeper, {});

  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setMenuBar(menus);
  rows->addWidget(page);
  rows->addStretch(1);
  Bind();
}

}  // namespace tavlo::platform::qt
