#include "platform/qt/configuration_pages.h"

#include <QKeyEvent>
#include <QMenuBar>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QTabBar>
#include <QVBoxLayout>
#include <initializer_list>

#include "forms/accessible_name.h"
#include "platform/qt/binder.h"
#include "platform/qt/equalizer_page.h"
#include "platform/qt/focus_keeper.h"
#include "platform/qt/ftp_page.h"
#include "platform/qt/keys_cards.h"
#include "platform/qt/mixer_strips.h"
#include "platform/qt/paths_cards.h"
#include "platform/qt/settings_cards.h"
#include "platform/qt/texts.h"

namespace tavlo::platform::qt {

ConfigurationPages::ConfigurationPages(forms::ConfigurationForm& form, QtLoop& loop, Binder& binder)
    : TopWindow(form.frmConfiguration, loop, binder), binder_(binder) {
  auto* const menus = new QMenuBar(this);
  menus->setNativeMenuBar(false);
  binder.Choose(form.mnuClose, *menus->addAction(QString()));

  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(0);
  rows->setMenuBar(menus);
  AddTabs(form, binder, *rows);
  rows->addWidget(ScrolledPages(form, binder), 1);

  // Has the keyboard until a control is clicked or reached by Tab, so that no key changes a setting
  // by accident.
  auto* const keeper = new FocusKeeper(this);
  keeper->setAccessibleName(ToQt(forms::AccessibleName(form.txtFocus)));
  binder.Bind(form.txtFocus, *keeper, {});
  Bind();
}

/// No shortcut, since that would be asked before a list that is dropped down and that the key is
/// meant to close.
void ConfigurationPages::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) return TopWindow::keyPressEvent(event);
  binder_.ByHand(Form(), [&window = Form()] { window.CloseRequest(); });
}

/// With large letters a page may need more room than the screen has; it scrolls then.
QWidget* ConfigurationPages::ScrolledPages(forms::ConfigurationForm& form, Binder& binder) {
  auto* const area = new QScrollArea(this);
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setFocusPolicy(Qt::NoFocus);
  auto* const pages = new QWidget(area);
  auto* const rows = new QVBoxLayout(pages);
  rows->setContentsMargins(0, 0, 0, 0);
  for (QWidget* const page : std::initializer_list<QWidget*>{
           new SettingsCards(form, binder, pages), new EqualizerPage(form, binder, pages),
           new MixerStrips(form, binder, pages), new PathsCards(form, binder, pages),
           new FtpPage(form, binder, pages), new KeysCards(form, binder, pages)}) {
    rows->addWidget(page, 1);
  }
  area->setWidget(pages);
  return area;
}

void ConfigurationPages::AddTabs(forms::ConfigurationForm& form, Binder& binder,
                                 QVBoxLayout& rows) {
  auto* const tabs = new QTabBar(this);
  tabs->setDrawBase(true);
  tabs->setAccessibleName(ToQt(forms::AccessibleName(form.tabConfiguration)));
  rows.addWidget(tabs);
  for (int row = 0; row < static_cast<int>(form.tabConfiguration.Rows().size()); ++row) {
    tabs->addTab(ToQt(form.tabConfiguration.TextAt(row, 0)));
  }
  QObject::connect(tabs, &QTabBar::currentChanged, this, [&form, &binder](int row) {
    binder.ByHand(form.tabConfiguration, [&form, row] { form.tabConfiguration.RowClick(row); });
  });
  binder.Bind(form.tabConfiguration, *tabs, [&form, tabs] {
    const QSignalBlocker quiet(tabs);
    tabs->setCurrentIndex(form.tabConfiguration.ListIndex);
  });
}

}  // namespace tavlo::platform::qt
