#include "shown_parts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionGroupBox>
#include <QTabBar>
#include <QTableView>
#include <QTextEdit>

#include "platform/qt/brand_logo.h"
#include "platform/qt/deck_key.h"
#include "platform/qt/deck_slider.h"
#include "platform/qt/glyph_key.h"
#include "platform/qt/key_box.h"
#include "platform/qt/list_heading.h"
#include "platform/qt/table_list.h"

namespace tavlo::test {
namespace {

using platform::qt::BrandLogo;
using platform::qt::DeckKey;
using platform::qt::DeckSlider;
using platform::qt::GlyphKey;
using platform::qt::KeyBox;
using platform::qt::ListHeading;
using platform::qt::TableList;

constexpr double kLarge = 24;
constexpr double kLargeBold = 18.7;
constexpr int kCellPadding = 7;
/// The rounded edge of a key and its focus frame.
constexpr int kKeyEdge = 4;

QString NameOf(const QWidget& widget) {
  for (const QWidget* named = &widget; named; named = named->parentWidget()) {
    if (named->objectName().isEmpty()) continue;
    const QString kind = widget.metaObject()->className();
    return named == &widget ? named->objectName() : named->objectName() + "/" + kind;
  }
  return widget.metaObject()->className();
}

QString WithoutMnemonic(const QString& text) {
  QString plain;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text[i] == u'&' && i + 1 < text.size()) ++i;
    plain += text[i];
  }
  return plain;
}

/// Walks over a window and writes down what it finds.
class Walk {
 public:
  explicit Walk(QWidget& window) : window_(window) {}

  ShownParts Parts() {
    Visit(window_);
    return std::move(parts_);
  }

 private:
  QRect InWindow(const QWidget& widget, const QRect& place) const {
    return {widget.mapTo(&window_, place.topLeft()), place.size()};
  }

  ShownText& AddText(QWidget& widget, const QString& text, const QRect& place, const QFont& font) {
    const QFontInfo info(font);
    const bool bold = info.weight() >= QFont::Bold;
    const QFontMetrics metrics(font);
    parts_.texts.push_back(
        {.of = NameOf(widget),
         .text = text,
         .place = InWindow(widget, place),
         .needs = metrics.size(0, text),
         .enabled = widget.isEnabled(),
         .large = info.pixelSize() >= kLarge || (bold && info.pixelSize() >= kLargeBold),
         .widget = &widget,
         .pointer = place.center()});
    return parts_.texts.back();
  }

  void AddControl(QWidget& widget) {
    parts_.controls.push_back({NameOf(widget), &widget, InWindow(widget, widget.rect())});
  }

  void AddMark(const QWidget& widget, const QRect& place) {
    if (widget.isEnabled()) parts_.marks.push_back({NameOf(widget), InWindow(widget, place)});
  }

  /// What an area shows in part or not at all, a hand can scroll to.
  static bool ScrolledAway(const QWidget& widget) {
    for (const QWidget* outer = widget.parentWidget(); outer; outer = outer->parentWidget()) {
      const auto* const area = qobject_cast<const QScrollArea*>(outer);
      if (!area || !area->viewport()->isAncestorOf(&widget)) continue;
      const QRect place(widget.mapTo(area->viewport(), QPoint(0, 0)), widget.size());
      if (!area->viewport()->rect().contains(place)) return true;
    }
    return false;
  }

  void Visit(QWidget& widget) {
    if (!widget.isVisible() || widget.size().isEmpty()) return;
    if (!ScrolledAway(widget)) Describe(widget);
    for (QObject* const child : widget.children()) {
      auto* const inner = qobject_cast<QWidget*>(child);
      if (inner && !inner->isWindow()) Visit(*inner);
    }
  }

  void Describe(QWidget& widget) {
    if (auto* label = qobject_cast<QLabel*>(&widget)) return DescribeLabel(*label);
    if (auto* logo = dynamic_cast<BrandLogo*>(&widget)) {
      AddControl(*logo);
      return AddMark(*logo, logo->rect());
    }
    if (auto* key = dynamic_cast<DeckKey*>(&widget)) return DescribeKey(*key);
    if (auto* key = dynamic_cast<GlyphKey*>(&widget)) {
      AddControl(*key);
      return AddMark(*key, key->rect().adjusted(kKeyEdge, kKeyEdge, -kKeyEdge, -kKeyEdge));
    }
    if (auto* box = dynamic_cast<KeyBox*>(&widget)) {
      AddControl(*box);
      AddText(*box, box->Words(), box->WordsPlace(), box->font());
      return;
    }
    if (auto* button = qobject_cast<QAbstractButton*>(&widget)) {
      return DescribeButton(*button);
    }
    if (auto* slider = qobject_cast<QSlider*>(&widget)) {
      AddControl(*slider);
      return AddMark(*slider, slider->rect());
    }
    if (auto* box = qobject_cast<QLineEdit*>(&widget)) return DescribeEdit(*box);
    if (auto* box = qobject_cast<QComboBox*>(&widget)) return DescribeCombo(*box);
    if (auto* box = qobject_cast<QGroupBox*>(&widget)) return DescribeGroup(*box);
    if (auto* tabs = qobject_cast<QTabBar*>(&widget)) return DescribeTabs(*tabs);
    if (auto* bar = qobject_cast<QMenuBar*>(&widget)) return DescribeMenuBar(*bar);
    if (auto* menu = qobject_cast<QMenu*>(&widget)) return DescribeMenu(*menu);
    if (auto* head = qobject_cast<QHeaderView*>(&widget)) return DescribeHeader(*head);
    if (auto* list = qobject_cast<QAbstractItemView*>(&widget)) DescribeList(*list);
    if (qobject_cast<QProgressBar*>(&widget)) AddControl(widget);
  }

  void DescribeLabel(QLabel& label) {
    if (!label.pixmap().isNull()) AddControl(label);
    if (label.text().isEmpty()) return;
    AddControl(label);
    QRect place = label.contentsRect();
    ShownText& text = AddText(label, label.text(), place, label.font());
    if (!label.wordWrap()) return;
    const QRect wrapped = label.fontMetrics().boundingRect(
        QRect(0, 0, place.width(), place.height()), Qt::TextWordWrap, label.text());
    text.needs = wrapped.size();
  }

  void DescribeKey(DeckKey& key) {
    AddControl(key);
    const QRect face = key.rect().adjusted(kKeyEdge, kKeyEdge, -kKeyEdge, -kKeyEdge);
    if (key.text().isEmpty()) return AddMark(key, face);
    AddText(key, WithoutMnemonic(key.text()), face, key.font());
  }

  void DescribeButton(QAbstractButton& button) {
    AddControl(button);
    QStyleOptionButton option;
    option.initFrom(&button);
    option.text = button.text();
    QRect place = button.rect();
    const QStyle& style = *button.style();
    if (qobject_cast<const QCheckBox*>(&button)) {
      place = style.subElementRect(QStyle::SE_CheckBoxContents, &option, &button);
      AddMark(button, style.subElementRect(QStyle::SE_CheckBoxIndicator, &option, &button));
    } else if (qobject_cast<const QRadioButton*>(&button)) {
      place = style.subElementRect(QStyle::SE_RadioButtonContents, &option, &button);
      AddMark(button, style.subElementRect(QStyle::SE_RadioButtonIndicator, &option, &button));
    } else if (qobject_cast<const QPushButton*>(&button)) {
      place = style.subElementRect(QStyle::SE_PushButtonContents, &option, &button);
    }
    if (!button.text().isEmpty()) {
      AddText(button, WithoutMnemonic(button.text()), place, button.font());
    }
  }

  void DescribeEdit(QLineEdit& box) {
    AddControl(box);
    const QString text = box.text();
    if (text.isEmpty()) return;
    AddText(box, text, box.rect().adjusted(kKeyEdge, 2, -kKeyEdge, -2), box.font()).scrolls = true;
  }

  void DescribeCombo(QComboBox& box) {
    AddControl(box);
    if (box.currentText().isEmpty()) return;
    QStyleOptionComboBox option;
    option.initFrom(&box);
    const QRect place = box.style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                    QStyle::SC_ComboBoxEditField, &box);
    AddText(box, box.currentText(), place, box.font());
  }

  void DescribeGroup(QGroupBox& box) {
    if (box.title().isEmpty()) return;
    QStyleOptionGroupBox option;
    option.initFrom(&box);
    option.text = box.title();
    option.subControls = QStyle::SC_GroupBoxLabel;
    const QRect place =
        box.style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, &box);
    AddText(box, WithoutMnemonic(box.title()), place, box.font());
  }

  void DescribeTabs(QTabBar& tabs) {
    AddControl(tabs);
    for (int tab = 0; tab < tabs.count(); ++tab) {
      ShownText& text =
          AddText(tabs, WithoutMnemonic(tabs.tabText(tab)),
                  tabs.tabRect(tab).adjusted(kKeyEdge, 2, -kKeyEdge, -2), tabs.font());
      text.enabled = tabs.isTabEnabled(tab);
    }
  }

  void DescribeMenuBar(QMenuBar& bar) {
    AddControl(bar);
    for (QAction* const action : bar.actions()) {
      if (!action->isVisible()) continue;
      AddText(bar, WithoutMnemonic(action->text()), bar.actionGeometry(action), bar.font())
          .enabled = action->isEnabled();
    }
  }

  void DescribeMenu(QMenu& menu) {
    for (QAction* const action : menu.actions()) {
      if (!action->isVisible() || action->isSeparator()) continue;
      AddText(menu, WithoutMnemonic(action->text()), menu.actionGeometry(action), menu.font())
          .enabled = action->isEnabled();
    }
  }

  void DescribeHeader(QHeaderView& head) {
    for (int section = 0; section < head.count(); ++section) {
      const QRect whole(head.sectionViewportPosition(section), 0, head.sectionSize(section),
                        head.height());
      if (head.isSectionHidden(section) || !head.viewport()->rect().contains(whole)) continue;
      const QString title = head.model()->headerData(section, Qt::Horizontal).toString();
      if (title.isEmpty()) continue;
      const auto* const own = dynamic_cast<const ListHeading*>(&head);
      const QRect place =
          own ? own->TitlePlace(section) : whole.adjusted(kCellPadding, 0, -kCellPadding, 0);
      AddText(*head.viewport(), title, place, head.font()).elided =
          head.fontMetrics().elidedText(title, Qt::ElideRight, place.width()) != title;
    }
  }

  void DescribeEmpty(const TableList& list) {
    for (const TableList::EmptyLine& line : list.EmptyLines()) {
      AddText(*list.viewport(), line.text, line.place, line.font);
    }
  }

  void DescribeList(QAbstractItemView& list) {
    AddControl(list);
    const auto* const own = dynamic_cast<const TableList*>(&list);
    if (own) DescribeEmpty(*own);
    if (!list.model()) return;
    const QRect seen = list.viewport()->rect();
    for (int row = std::max(0, list.indexAt(QPoint(5, 1)).row()); row < list.model()->rowCount();
         ++row) {
      bool shows = false;
      for (int column = 0; column < list.model()->columnCount(); ++column) {
        const QModelIndex index = list.model()->index(row, column);
        const QRect cell = list.visualRect(index);
        shows = shows || cell.intersects(seen);
        const QString text = index.data().toString();
        if (text.isEmpty() || cell.isEmpty() || !seen.contains(cell)) continue;
        const QRect place =
            own ? own->TextPlace(cell) : cell.adjusted(kCellPadding, 0, -kCellPadding, 0);
        AddText(*list.viewport(), text, place, list.font());
      }
      if (!shows) break;
    }
  }

  QWidget& window_;
  ShownParts parts_;
};

}  // namespace

ShownParts PartsOf(QWidget& window) { return Walk(window).Parts(); }

}  // namespace tavlo::test
