#include "platform/qt/table_list.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>
#include <QTimer>
#include <QToolTip>
#include <algorithm>
#include <numeric>
#include <utility>

#include "forms/accessible_name.h"
#include "platform/qt/accessible_parts.h"
#include "platform/qt/binder.h"
#include "platform/qt/colours.h"
#include "platform/qt/column_widths.h"
#include "platform/qt/dropped_paths.h"
#include "platform/qt/list_heading.h"
#include "platform/qt/texts.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kRowPadding = 10;
constexpr int kCellPadding = 7;
constexpr QColor kDropVeil{0x2E, 0xC4, 0xB6, 0x28};  ///< Over a list that takes what hovers there.
constexpr int kMarkWidth = 3;                        ///< Of the bar at the head of the chosen row.
/// A text that is no wider than this one, which is wider than a date, is never cut off. So many
/// rows are measured for it.
constexpr const char* kShortText = "00/00/00000";
constexpr int kRowsMeasured = 50;

Qt::Alignment SideOf(const forms::Column& column) {
  return Qt::AlignVCenter | (column.figures ? Qt::AlignRight : Qt::AlignLeft);
}

/// Marks the whole row and leaves each text its own colour. Ten thousand rows are drawn as fast as
/// the visible twenty, so it draws by itself what the style would ask a dozen questions for.
class RowDelegate : public QStyledItemDelegate {
 public:
  /// The widths must outlive it.
  RowDelegate(TextWidths& widths, QObject* parent) : QStyledItemDelegate(parent), widths_(widths) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const QPalette& palette = option.palette;
    const auto group = option.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
    if (option.state & QStyle::State_Selected) {
      painter->fillRect(option.rect, palette.color(group, QPalette::Highlight));
      if (option.rect.left() == 0) {
        painter->fillRect(QRect(0, option.rect.top(), kMarkWidth, option.rect.height()),
                          theme::kTeal);
      }
    }
    painter->fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1),
                      Mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.1));
    const QVariant own = index.data(Qt::ForegroundRole);
    const QColor ink =
        own.isValid() ? own.value<QColor>() : palette.color(QPalette::Active, QPalette::Text);
    // Rows of a list that stands still all fade alike.
    const bool enabled = option.state & QStyle::State_Enabled;
    painter->setPen(enabled ? ink : Mixed(palette.color(QPalette::Base), ink, 0.5));
    const QRect inside = option.rect.adjusted(kCellPadding, 0, -kCellPadding, 0);
    const int side = index.data(Qt::TextAlignmentRole).toInt();
    painter->drawText(inside, side | Qt::TextSingleLine,
                      Fitting(index.data(Qt::DisplayRole).toString(), option, inside.width()));
  }

 private:
  QString Fitting(const QString& text, const QStyleOptionViewItem& option, int space) const {
    if (widths_.Of(text, option.font) <= space) return text;
    return option.fontMetrics.elidedText(text, Qt::ElideRight, space);
  }

  TextWidths& widths_;
};

}  // namespace

RowsModel::RowsModel(const forms::Table& table, QObject* parent)
    : QAbstractTableModel(parent), table_(table) {}

bool RowsModel::Refresh() {
  if (shownRows_ == table_.RowsVersion()) return false;
  beginResetModel();
  shownRows_ = table_.RowsVersion();
  rows_ = static_cast<int>(table_.Rows().size());
  columns_.clear();
  for (std::size_t column = 0; column < table_.Columns().size(); ++column) {
    if (table_.Columns()[column].width > 0) columns_.push_back(static_cast<int>(column));
  }
  endResetModel();
  return true;
}

int RowsModel::PlaceOf(int tableColumn) const {
  const auto found = std::find(columns_.begin(), columns_.end(), tableColumn);
  return found == columns_.end() ? -1 : static_cast<int>(found - columns_.begin());
}

int RowsModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int RowsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant RowsModel::data(const QModelIndex& index, int role) const {
  const int tableColumn = TableColumn(index.column());
  if (role == Qt::DisplayRole) return ToOneLine(table_.TextAt(index.row(), tableColumn));
  const auto column = static_cast<std::size_t>(tableColumn);
  if (column >= table_.Columns().size()) return {};
  if (role == Qt::TextAlignmentRole) return static_cast<int>(SideOf(table_.Columns()[column]));
  if (role != Qt::ForegroundRole) return {};
  const auto row = static_cast<std::size_t>(index.row());
  if (row >= table_.Rows().size() || column >= table_.Rows()[row].cells.size()) return {};
  const forms::Colour colour = table_.Rows()[row].cells[column].colour;
  // Black is the desktop's own text colour, which is light on a dark desktop.
  if (colour == 0) return {};
  const auto known = readable_.constFind(colour);
  if (known != readable_.constEnd()) return *known;
  return *readable_.insert(colour, Readable(QColor::fromRgb(colour), background_));
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section >= columnCount()) return {};
  const auto place = static_cast<std::size_t>(TableColumn(section));
  if (place >= table_.Columns().size()) return {};
  const forms::Column& column = table_.Columns()[place];
  if (role == Qt::TextAlignmentRole) return static_cast<int>(SideOf(column));
  if (role != Qt::DisplayRole) return {};
  return ToOneLine(column.title);
}

TableList::TableList(forms::Table& table, Binder& binder, QWidget* parent)
    : QTableView(parent),
      table_(table),
      binder_(binder),
      model_(new RowsModel(table, this)),
      heading_(new ListHeading(this)) {
  setHorizontalHeader(heading_);
  setModel(model_);
  setItemDelegate(new RowDelegate(textWidths_, this));
  setSelectionBehavior(SelectRows);
  setSelectionMode(SingleSelection);
  setEditTriggers(NoEditTriggers);
  setShowGrid(false);
  setWordWrap(false);
  setTabKeyNavigation(false);
  setVerticalScrollMode(ScrollPerItem);
  setHorizontalScrollMode(ScrollPerPixel);
  setAccessibleName(ToQt(forms::AccessibleName(table)));
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  FitRowsToFont();
  ChooseColours();
  setAcceptDrops(true);
  viewport()->setAcceptDrops(true);
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this,
          [this](int column) { SortByHand(column); });
  connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this] {
    if (!sharing_) widthsByHand_ = true;
  });
  connect(this, &QTableView::clicked, this, [this](const QModelIndex& index) {
    const int row = index.row();
    OnRow([this, row] { table_.RowClick(row); });
  });
  connect(this, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
    const int row = index.row();
    OnRow([this, row] { table_.DoubleClick(row); });
  });
  binder.Bind(table, *this, [this] { Show(); });
}

void TableList::Show() {
  const bool fresh = model_->Refresh();
  const bool empty = model_->rowCount() == 0;
  SetHeardDescription(*this, empty ? ToQt(table_.WhenEmpty.Get()).replace(u'\n', ". ") : QString());
  if (empty) viewport()->update();
  if (fresh) ShowColumns();
  if (fresh || shownIndex_ != table_.ListIndex || currentIndex().row() != table_.ListIndex) {
    ShowChosen();
  }
  horizontalHeader()->setSortIndicatorShown(true);
  horizontalHeader()->setSortIndicator(
      model_->PlaceOf(table_.SortColumn()),
      table_.Order() == forms::SortOrder::Ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

void TableList::ShowChosen() {
  shownIndex_ = table_.ListIndex;
  if (shownIndex_ < 0) {
    clearSelection();
    setCurrentIndex({});
    return;
  }
  setCurrentIndex(model_->index(shownIndex_, 0));
  selectRow(shownIndex_);
}

void TableList::ShowColumns() {
  std::vector<forms::Twips> widths;
  for (const forms::Column& column : table_.Columns()) {
    if (column.width > 0) widths.push_back(column.width);
  }
  if (widths != shownWidths_) widthsByHand_ = false;
  shownWidths_ = std::move(widths);
  ShareWidth();
}

int TableList::LeastWidth(int column) {
  const QString title = model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
  const int enough = textWidths_.Of(kShortText, font());
  int text = 0;
  for (int row = 0; row < std::min(kRowsMeasured, model_->rowCount()) && text < enough; ++row) {
    text = std::max(text, textWidths_.Of(model_->index(row, column).data().toString(), font()));
  }
  return std::max(heading_->WidthFor(title),
                  std::min(text, enough) + 2 * kCellPadding + kLetterRounding);
}

/// The columns fill the list and keep their proportions, save those that would be too narrow for
/// what they hold; what the user dragged stays.
void TableList::ShareWidth() {
  const int total = std::accumulate(shownWidths_.begin(), shownWidths_.end(), 0);
  if (widthsByHand_ || total <= 0) return;
  const QScopedValueRollback sharing(sharing_, true);
  std::vector<int> least;
  for (int column = 0; column < static_cast<int>(shownWidths_.size()); ++column) {
    least.push_back(LeastWidth(column));
  }
  const int space = std::max(viewport()->width(), ToPixels(total));
  const std::vector<int> widths = SharedWidths(shownWidths_, least, space);
  for (int column = 0; column < static_cast<int>(widths.size()); ++column) {
    setColumnWidth(column, widths[static_cast<std::size_t>(column)]);
  }
}

QRect TableList::TextPlace(const QRect& cell) const {
  return cell.adjusted(kCellPadding, 0, -kCellPadding, 0);
}

bool TableList::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QTableView::viewportEvent(event);
  const auto* const help = static_cast<QHelpEvent*>(event);
  const QModelIndex index = indexAt(help->pos());
  const QString text = index.data().toString();
  const QRect cell = visualRect(index);
  const std::vector<EmptyLine> lines = EmptyLines();
  const bool all = std::ssize(lines) > ToQt(table_.WhenEmpty.Get()).count(u'\n');
  for (const EmptyLine& line : lines) {
    const bool whole = QFontMetrics(line.font).horizontalAdvance(line.text) <= line.place.width();
    if ((whole && all) || !line.place.contains(help->pos())) continue;
    const QString words = all ? line.text : accessibleDescription();
    QToolTip::showText(help->globalPos(), ToTooltip(words), viewport(), line.place);
    return true;
  }
  const bool cut = fontMetrics().horizontalAdvance(text) > TextPlace(cell).width();
  if (!index.isValid() || !cut) return QTableView::viewportEvent(event);
  QToolTip::showText(help->globalPos(), ToTooltip(text), viewport(), cell);
  return true;
}

void TableList::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  PaintWhenEmpty();
  if (!hasFocus() && !filesHover_) return;
  QPainter painter(viewport());
  painter.setPen(QPen(theme::kTeal.darker(130), 2));
  if (filesHover_) painter.setBrush(kDropVeil);
  painter.drawRect(viewport()->rect().adjusted(1, 1, -1, -1));
}

/// The first line is a heading.
std::vector<TableList::EmptyLine> TableList::EmptyLines() const {
  std::vector<EmptyLine> lines;
  const bool speaks = isEnabled() || SpeaksStandingStill();
  if (model_->rowCount() > 0 || !speaks || table_.WhenEmpty.Get().empty()) return lines;
  const QRect inside = viewport()->rect().adjusted(kRowPadding, 0, -kRowPadding, 0);
  const QColor page = palette().color(QPalette::Base);
  const QColor ink = palette().color(QPalette::Text);
  const QStringList texts = ToQt(table_.WhenEmpty.Get()).split(u'\n');
  QFont letters = font();
  letters.setWeight(QFont::DemiBold);
  letters.setPointSizeF(letters.pointSizeF() * 1.15);
  const int pitch = fontMetrics().height() * 8 / 5;
  int top = inside.top() +
            std::max(0, inside.height() * 2 / 5 - pitch * static_cast<int>(texts.size()) / 2);
  for (const QString& text : texts) {
    const bool heading = lines.empty();
    if (!heading && top + pitch > inside.bottom()) break;
    lines.push_back({.text = text,
                     .place = QRect(inside.left(), top, inside.width(), pitch),
                     .font = heading ? letters : font(),
                     .ink = heading ? ink : Readable(Mixed(page, ink, 0.6), page)});
    top += pitch;
  }
  return lines;
}

/// A path that does not fit loses its middle, since both ends tell.
void TableList::PaintWhenEmpty() {
  QPainter painter(viewport());
  for (const EmptyLine& line : EmptyLines()) {
    painter.setFont(line.font);
    painter.setPen(line.ink);
    const QString fitting =
        painter.fontMetrics().elidedText(line.text, Qt::ElideMiddle, line.place.width());
    painter.drawText(line.place, Qt::AlignCenter | Qt::TextSingleLine, fitting);
  }
}

void TableList::FitRowsToFont() {
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowPadding);
}

void TableList::ChooseColours() {
  const QColor base = QGuiApplication::palette().color(QPalette::Base);
  // Only what is set here is the list's own; everything else goes on following the desktop.
  QPalette colours;
  colours.setColor(QPalette::Active, QPalette::Highlight, Mixed(base, theme::kTeal, 0.22));
  colours.setColor(QPalette::Inactive, QPalette::Highlight, Mixed(base, theme::kTeal, 0.16));
  setPalette(colours);
  // The marked row's colour lies between the page and the letters, so what is readable on it is
  // readable on the page too.
  model_->SetBackground(colours.color(QPalette::Active, QPalette::Highlight));
}

void TableList::SortByHand(int column) {
  binder_.ByHand(table_,
                 [this, sorted = model_->TableColumn(column)] { table_.HeaderClick(sorted); });
}

void TableList::ChooseByKey(int row) {
  OnRow([this, row] { table_.RowClick(row); });
}

void TableList::OnRow(std::function<void()> door) {
  binder_.ByHand(table_, [this, seen = table_.RowsVersion(), door = std::move(door)] {
    if (table_.RowsVersion() == seen) return door();
    // What was done behind this click was meant for the row that it did not choose.
    binder_.ForgetHands();
  });
}

void TableList::mouseMoveEvent(QMouseEvent* event) {
  // A drag over the rows would mark rows that were not clicked.
  if (event->buttons() == Qt::NoButton) QTableView::mouseMoveEvent(event);
}

void TableList::mouseReleaseEvent(QMouseEvent* event) {
  QTableView::mouseReleaseEvent(event);
  if (currentIndex().row() != table_.ListIndex) ShowChosen();
}

void TableList::keyPressEvent(QKeyEvent* event) {
  const int before = currentIndex().row();
  const bool again = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
                     event->key() == Qt::Key_Space;
  if (again) {
    if (before >= 0) ChooseByKey(before);
    return;
  }
  MoveByKey(*event);
  const int row = currentIndex().row();
  if (row >= 0 && row != before) ChooseByKey(row);
}

void TableList::MoveByKey(QKeyEvent& event) { QTableView::keyPressEvent(&event); }

void TableList::contextMenuEvent(QContextMenuEvent* event) {
  auto* const menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (int column = 0; column < model_->columnCount(); ++column) {
    const QString title = model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    const QAction* const entry = menu->addAction("Sort by " + QString(title).replace("&", "&&"));
    connect(entry, &QAction::triggered, this, [this, column] { SortByHand(column); });
  }
  const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
  menu->popup(byKey ? viewport()->mapToGlobal(QPoint(0, 0)) : event->globalPos());
}

/// Which files they are is asked once they are let go: each question may make the deck wait for who
/// holds them.
bool TableList::TakesFiles(const QDropEvent& event) const {
  return table_.OnDropFiles && isEnabled() && event.mimeData()->hasUrls() &&
         (event.possibleActions() & Qt::CopyAction);
}

void TableList::ShowDropPlace(bool shows) {
  if (filesHover_ == shows) return;
  filesHover_ = shows;
  viewport()->update();
}

void TableList::dragEnterEvent(QDragEnterEvent* event) { dragMoveEvent(event); }

void TableList::dragMoveEvent(QDragMoveEvent* event) {
  const bool takes = TakesFiles(*event);
  ShowDropPlace(takes);
  if (!takes) return event->ignore();
  // A file is never moved: its sender would delete what could not be taken.
  event->setDropAction(Qt::CopyAction);
  event->accept();
}

void TableList::dragLeaveEvent(QDragLeaveEvent*) { ShowDropPlace(false); }

void TableList::dropEvent(QDropEvent* event) {
  ShowDropPlace(false);
  std::vector<std::string> dropped = DroppedPaths(*event->mimeData());
  if (!TakesFiles(*event) || dropped.empty()) return event->ignore();
  event->setDropAction(Qt::CopyAction);
  event->accept();
  // Who let the files go waits for the end of this event, and a long copy is not in it.
  QTimer::singleShot(0, this, [this, paths = std::move(dropped)] {
    binder_.ByHand(table_, [this, paths] { table_.DropFiles(paths); });
  });
}

void TableList::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  ShareWidth();
}

void TableList::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange) {
    FitRowsToFont();
    ShareWidth();
  }
  if (event->type() == QEvent::PaletteChange) ChooseColours();
}

}  // namespace tavlo::platform::qt
