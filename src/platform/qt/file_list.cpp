#include "platform/qt/file_list.h"

#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <algorithm>

#include "platform/qt/colours.h"
#include "platform/qt/icons.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kFileSides = 9;        ///< Beside a row's drawing and at the end of its text.
constexpr int kBehindFileGlyph = 7;  ///< Between a row's drawing and its text.
constexpr int kFileMarkWidth = 3;    ///< Of the bar at the head of a marked row.
constexpr double kHoverShare = 0.1;  ///< Of the deck's colour under the pointer.

}  // namespace

/// Draws the rows. Inks and drawings are made when the colours change and not for each row.
class FileRows : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  int Fetched = -1;

  void Choose(const QPalette& palette) {
    base_ = palette.color(QPalette::Base);
    text_ = palette.color(QPalette::Active, QPalette::Text);
    faded_ = palette.color(QPalette::Disabled, QPalette::Text);
    const QColor marked = palette.color(QPalette::Active, QPalette::Highlight);
    quiet_ = Readable(Mixed(base_, text_, 0.55), marked);
    fetching_ = Readable(theme::kTeal, marked);
    line_ = Mixed(base_, text_, 0.1);
    hover_ = Mixed(base_, theme::kTeal, kHoverShare);
    glyphSize_ = 0;
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const bool fetched = index.row() == Fetched;
    const bool enabled = option.state & QStyle::State_Enabled;
    PaintGround(*painter, option, fetched);
    const int size = GlyphSize(option.fontMetrics);
    DrawGlyphs(size, painter->device()->devicePixelRatioF());
    painter->drawPixmap(option.rect.left() + kFileSides,
                        option.rect.top() + (option.rect.height() - size) / 2,
                        fetched   ? fetchingGlyph_
                        : enabled ? file_
                                  : fadedFile_);
    painter->setPen(enabled ? text_ : faded_);
    const QRect place = TextPlace(option.rect, option.fontMetrics);
    painter->drawText(place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                      Fitting(index.data(Qt::DisplayRole).toString(), option, place.width()));
  }

  static QRect TextPlace(const QRect& cell, const QFontMetrics& letters) {
    return cell.adjusted(kFileSides + GlyphSize(letters) + kBehindFileGlyph, 0, -kFileSides, 0);
  }

 private:
  static int GlyphSize(const QFontMetrics& letters) { return letters.ascent(); }

  /// Both ends of a file's name tell.
  QString Fitting(const QString& text, const QStyleOptionViewItem& option, int room) const {
    if (widths_.Of(text, option.font) <= room) return text;
    return option.fontMetrics.elidedText(text, Qt::ElideMiddle, room);
  }

  void PaintGround(QPainter& painter, const QStyleOptionViewItem& option, bool fetched) const {
    if (fetched || option.state & QStyle::State_Selected) {
      const bool active = option.state & QStyle::State_Active;
      painter.fillRect(option.rect,
                       option.palette.color(active ? QPalette::Active : QPalette::Inactive,
                                            QPalette::Highlight));
      painter.fillRect(
          QRect(option.rect.left(), option.rect.top(), kFileMarkWidth, option.rect.height()),
          theme::kTeal);
    } else if (option.state & QStyle::State_Enabled && option.state & QStyle::State_MouseOver) {
      painter.fillRect(option.rect, hover_);
    }
    painter.fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1),
                     line_);
  }

  void DrawGlyphs(int size, double ratio) const {
    if (size == glyphSize_ && qFuzzyCompare(ratio, ratio_)) return;
    glyphSize_ = size;
    ratio_ = ratio;
    file_ = GlyphPixmap(Glyph::File, size, quiet_, ratio);
    fadedFile_ = GlyphPixmap(Glyph::File, size, faded_, ratio);
    fetchingGlyph_ = GlyphPixmap(Glyph::Fetching, size, fetching_, ratio);
  }

  QColor base_;
  QColor text_;
  QColor faded_;
  QColor quiet_;
  QColor fetching_;
  QColor line_;
  QColor hover_;
  mutable TextWidths widths_;
  mutable int glyphSize_ = 0;
  mutable double ratio_ = 0;
  mutable QPixmap file_;
  mutable QPixmap fadedFile_;
  mutable QPixmap fetchingGlyph_;
};

FileList::FileList(forms::Table& table, Binder& binder, QWidget* parent)
    : TableList(table, binder, parent), table_(table), rows_(new FileRows(this)) {
  setItemDelegate(rows_);
  setFrameShape(NoFrame);
  horizontalHeader()->hide();
  viewport()->setAttribute(Qt::WA_Hover);
  rows_->Choose(palette());
}

void FileList::SetFetched(int row) {
  if (rows_->Fetched == row) return;
  rows_->Fetched = row;
  viewport()->update();
}

/// The row that the form has chosen is marked, or the one that keys are at.
void FileList::ShowChosen() {
  if (chosen_ != table_.ListIndex) {
    chosen_ = table_.ListIndex;
    if (chosen_ >= 0) at_ = chosen_;
  }
  at_ = std::min(at_, model()->rowCount() - 1);
  clearSelection();
  const QModelIndex at = at_ < 0 ? QModelIndex() : model()->index(at_, 0);
  selectionModel()->setCurrentIndex(at, QItemSelectionModel::NoUpdate);
  if (at_ >= 0 && (walks_ || at_ == chosen_)) selectRow(at_);
}

QRect FileList::TextPlace(const QRect& cell) const {
  return FileRows::TextPlace(cell, fontMetrics());
}

void FileList::WalkTo(int row) {
  at_ = row;
  walks_ = true;
  ShowChosen();
}

void FileList::mousePressEvent(QMouseEvent* event) {
  walks_ = false;
  TableList::mousePressEvent(event);
  at_ = currentIndex().row();
}

void FileList::mouseDoubleClickEvent(QMouseEvent* event) {
  secondPress_ = true;
  event->accept();
}

void FileList::mouseReleaseEvent(QMouseEvent* event) {
  if (secondPress_) {
    secondPress_ = false;
    return event->accept();
  }
  TableList::mouseReleaseEvent(event);
}

void FileList::keyPressEvent(QKeyEvent* event) {
  const int rows = model()->rowCount();
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      if (event->isAutoRepeat() || at_ < 0) return;
      walks_ = true;
      return ChooseByKey(at_);
    case Qt::Key_Home:
      return WalkTo(0);
    case Qt::Key_End:
      return WalkTo(rows - 1);
    default:
      break;
  }
  MoveByKey(*event);
  const int row = currentIndex().row();
  if (row >= 0 && row != at_) WalkTo(row);
}

/// There is nothing to sort by.
void FileList::contextMenuEvent(QContextMenuEvent* event) { event->accept(); }

void FileList::focusInEvent(QFocusEvent* event) {
  const Qt::FocusReason reason = event->reason();
  const bool byKey = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
  TableList::focusInEvent(event);
  if (byKey) WalkTo(std::max(0, at_));
}

void FileList::focusOutEvent(QFocusEvent* event) {
  TableList::focusOutEvent(event);
  // A window in front takes the keyboard for a while; its place in the list stays marked.
  if (event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason) {
    return;
  }
  walks_ = false;
  ShowChosen();
}

void FileList::changeEvent(QEvent* event) {
  TableList::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) rows_->Choose(palette());
}

}  // namespace tavlo::platform::qt
