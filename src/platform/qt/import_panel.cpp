#include "platform/qt/import_panel.h"

#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include "platform/qt/binder.h"
#include "platform/qt/directory_strip.h"
#include "platform/qt/main_key.h"
#include "platform/qt/profile_card.h"
#include "platform/qt/table_list.h"
#include "platform/qt/wrapping_row.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kBetweenImportParts = 8;
constexpr int kBesideProfile = 12;
constexpr int kLeastLines = 6;

/// As wide as what it holds, which scrolls where the window is too low for it.
class UprightScroll : public QScrollArea {
 public:
  explicit UprightScroll(QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
  }

  QSize sizeHint() const override { return {LeastWidth(), widget()->sizeHint().height()}; }
  QSize minimumSizeHint() const override { return {LeastWidth(), 0}; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::LayoutRequest) updateGeometry();
    return QScrollArea::eventFilter(watched, event);
  }
  void resizeEvent(QResizeEvent* event) override {
    QScrollArea::resizeEvent(event);
    updateGeometry();
  }

 private:
  int LeastWidth() const {
    const QSize inside = widget()->minimumSizeHint();
    const bool scrolls = inside.height() > height();
    return inside.width() + (scrolls ? verticalScrollBar()->sizeHint().width() : 0);
  }
};

/// Keeps the height that a heading and a few lines need, whatever the size of the letters.
class LowestRoom : public QWidget {
 public:
  using QWidget::QWidget;

  QSize minimumSizeHint() const override {
    return {QWidget::minimumSizeHint().width(), kLeastLines * fontMetrics().height()};
  }
};

}  // namespace

ImportPanel::ImportPanel(forms::MainForm& form, Binder& binder, QWidget* parent)
    : QWidget(parent), form_(form), binder_(binder) {
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(kBetweenImportParts);
  rows->addWidget(ScrolledParts(), 1);
  rows->addLayout(Keys());
}

/// With huge letters directories, list and profile may need more height than the window has. The
/// keys always show.
QWidget* ImportPanel::ScrolledParts() {
  auto* const area = new QScrollArea(this);
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setFocusPolicy(Qt::NoFocus);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setMinimumHeight(0);
  auto* const parts = new QWidget(area);
  auto* const rows = new QVBoxLayout(parts);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(kBetweenImportParts);
  AddDirectories(*rows);
  auto* const middle = new QHBoxLayout;
  middle->setSpacing(kBesideProfile);
  middle->addWidget(ListWithItsWait(), 1);
  middle->addWidget(ScrolledProfile());
  rows->addLayout(middle, 1);
  area->setWidget(parts);
  return area;
}

void ImportPanel::AddDirectories(QVBoxLayout& rows) {
  auto* const strip = new DirectoryStrip(this);
  rows.addWidget(strip);
  binder_.Slide(form_.scrollImportWavSubDirectories, *strip);
  binder_.Watch(form_.frameImportDirectories, [strip, &counts = form_.frameImportDirectories] {
    strip->SetCounts(counts.Panels);
  });
}

/// The words that wait for the list stand where it will stand.
QWidget* ImportPanel::ListWithItsWait() {
  auto* const place = new LowestRoom(this);
  auto* const rows = new QVBoxLayout(place);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->addWidget(new TableList(form_.listViewImport, binder_, place), 1);
  auto* const wait = new QFrame(place);
  wait->setFrameStyle(QFrame::StyledPanel);
  wait->setBackgroundRole(QPalette::Base);
  wait->setAutoFillBackground(true);
  auto* const words = new QVBoxLayout(wait);
  words->addStretch(2);
  for (forms::Text* const text :
       {&form_.lblRefreshingImportList1, &form_.lblRefreshingImportList2}) {
    auto* const label = new QLabel(wait);
    label->setAlignment(Qt::AlignCenter);
    if (text == &form_.lblRefreshingImportList1) {
      QFont bold = label->font();
      bold.setWeight(QFont::DemiBold);
      label->setFont(bold);
    }
    words->addWidget(label);
    binder_.Show(*text, *label);
  }
  words->addStretch(3);
  rows->addWidget(wait, 1);
  binder_.Watch(form_.lblRefreshingImportList1,
                [wait, &text = form_.lblRefreshingImportList1] { wait->setVisible(text.Visible); });
  return place;
}

QWidget* ImportPanel::ScrolledProfile() {
  auto* const area = new UprightScroll(this);
  auto* const card = new ProfileCard(form_, binder_, area);
  area->setWidget(card);
  card->installEventFilter(area);
  return area;
}

WrappingRow* ImportPanel::Keys() {
  auto* const keys = new WrappingRow;
  for (forms::Command* const command :
       {&form_.cmdDeleteOneImportFile, &form_.cmdDeleteAllImportFile}) {
    auto* const key = new RoomyKey(this);
    keys->addWidget(key);
    binder_.Press(*command, *key);
  }
  keys->BeginRightPart();
  auto* const all = new RoomyKey(this);
  keys->addWidget(all);
  binder_.Press(form_.cmdSendAllImportFilesToQueue, *all, 'l');
  auto* const one = new MainKey(this);
  keys->addWidget(one);
  binder_.Press(form_.cmdSendImportFileToQueue, *one, 'O');
  return keys;
}

}  // namespace tavlo::platform::qt
