#include "platform/qt/table_list.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>
#include <algorithm>
#include <cmath>
#include <numeric>

#include "forms/accessible_name.h"
#include "platform/qt/binder.h"
#include "platform/qt/column_widths.h"
#include "platform/qt/texts.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kRowPadding = 10;
constexpr int kCellPadding = 7;
constexpr int kSortArrow = 16;  ///< What the arrow takes of a heading, with the air around it.
/// What is no longer than this, which is more than a date, is never cut off, as far as so many rows
/// tell.
constexpr const char* kShortText = "00/00/00000";
constexpr int kRowsMeasured = 50;
constexpr int kRounding = 2;  ///< At a scale that is no whole number, letters are not either.
constexpr const char* kHeaderStyle =
    "QHeaderView::section { padding: 5px 7px; border: 0; border-bottom: 1px solid palette(mid); "
    "border-right: 1px solid palette(mid); background: palette(button); }";

double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

double Contrast(const QColor& a, const QColor& b) {
  const double first = Luminance(a) + 0.05;
  const double second = Luminance(b) + 0.05;
  return std::max(first, second) / std::min(first, second);
}

/// The same hue, made just dark or light enough to be read on the background.
QColor Readable(QColor colour, const QColor& background) {
  constexpr double kEnough = 4.6;
  const QColor end = Luminance(background) > 0.4 ? Qt::black : Qt::white;
  const auto towards = [](int from, int to) { return from + (to - from) / 10; };
  for (int step = 0; step < 20 && Contrast(colour, background) < kEnough; ++step) {
    colour = QColor(towards(colour.red(), end.red()), towards(colour.green(), end.green()),
                    towards(colour.blue(), end.blue()));
  }
  return colour;
}

QColor Mixed(const QColor& a, const QColor& b, double share) {
  const auto mix = [share](int x, int y) {
    return static_cast<int>(std::lround(x + (y - x) * share));
  };
  return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

/// Marks the whole row and leaves each text its own colour. Ten thousand rows are drawn as fast as
/// the visible twenty, so it draws by itself what the style would ask a dozen questions for.
class RowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const QPalette& palette = option.palette;
    const auto group = option.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
    if (option.state & QStyle::State_Selected) {
      painter->fillRect(option.rect, palette.color(group, QPalette::Highlight));
    }
    painter->fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1),
                      Mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.1));
    const QVariant own = index.data(Qt::ForegroundRole);
    const QColor plain =
        palette.color(option.state & QStyle::State_Enabled ? QPalette::Active : QPalette::Disabled,
                      QPalette::Text);
    painter->setPen(own.isValid() ? own.value<QColor>() : plain);
    const QRect inside = option.rect.adjusted(kCellPadding, 0, -kCellPadding, 0);
    painter->drawText(inside, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      option.fontMetrics.elidedText(index.data(Qt::DisplayRole).toString(),
                                                    Qt::ElideRight, inside.width()));
  }
};

}  // namespace

RowsModel::RowsModel(const forms::Table& table, QObject* parent)
    : QAbstractTableModel(parent), table_(table) {}

bool RowsModel::Refresh() {
  if (shownRows_ == table_.RowsVersion()) return false;
  beginResetModel();
  shownRows_ = table_.RowsVersion();
  rows_ = static_cast<int>(table_.Rows().size());
  columns_ = static_cast<int>(table_.Columns().size());
  endResetModel();
  return true;
}

int RowsModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int RowsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

QVariant RowsModel::data(const QModelIndex& index, int role) const {
  if (role == Qt::DisplayRole) return ToOneLine(table_.TextAt(index.row(), index.column()));
  if (role != Qt::ForegroundRole) return {};
  const auto row = static_cast<std::size_t>(index.row());
  const auto column = static_cast<std::size_t>(index.column());
  if (row >= table_.Rows().size() || column >= table_.Rows()[row].cells.size()) return {};
  const forms::Colour colour = table_.Rows()[row].cells[column].colour;
  // Black is the desktop's own text colour, which is light on a dark desktop.
  if (colour == 0) return {};
  return Readable(QColor::fromRgb(colour), background_);
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section >= static_cast<int>(table_.Columns().size())) {
    return {};
  }
  if (role == Qt::TextAlignmentRole) return int{Qt::AlignLeft | Qt::AlignVCenter};
  if (role != Qt::DisplayRole) return {};
  return ToOneLine(table_.Columns()[static_cast<std::size_t>(section)].title);
}

TableList::TableList(forms::Table& table, Binder& binder, QWidget* parent)
    : QTableView(parent), table_(table), binder_(binder), model_(new RowsModel(table, this)) {
  setModel(model_);
  setItemDelegate(new RowDelegate(this));
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
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowPadding);
  horizontalHeader()->setStyleSheet(kHeaderStyle);
  QFont bold = font();
  bold.setWeight(QFont::DemiBold);
  horizontalHeader()->setFont(bold);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setSectionsClickable(true);
  horizontalHeader()->setMinimumSectionSize(20);
  ChooseColours();
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this,
          [this](int column) { binder_.ByHand(table_, [&] { table_.HeaderClick(column); }); });
  connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this] {
    if (!sharing_) widthsByHand_ = true;
  });
  connect(this, &QTableView::clicked, this, [this](const QModelIndex& index) {
    const int row = index.row();
    binder_.ByHand(table_, [&] { table_.RowClick(row); });
  });
  connect(this, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
    const int row = index.row();
    binder_.ByHand(table_, [&] { table_.DoubleClick(row); });
  });
  binder.Bind(table, *this, [this] { Show(); });
}

void TableList::Show() {
  const bool fresh = model_->Refresh();
  if (fresh) ShowColumns();
  if (fresh || shownIndex_ != table_.ListIndex || currentIndex().row() != table_.ListIndex) {
    ShowChosen();
  }
  horizontalHeader()->setSortIndicatorShown(true);
  horizontalHeader()->setSortIndicator(
      table_.SortColumn(),
      table_.Order() == forms::SortOrder::Ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

void TableList::ShowChosen() {
  shownIndex_ = table_.ListIndex;
  if (shownIndex_ < 0) {
    clearSelection();
    setCurrentIndex({});
    return;
  }
  // The first column may have no width, and a current cell that is hidden cannot be scrolled to.
  int column = 0;
  while (column + 1 < model_->columnCount() && isColumnHidden(column)) ++column;
  setCurrentIndex(model_->index(shownIndex_, column));
  selectRow(shownIndex_);
}

void TableList::ShowColumns() {
  std::vector<forms::Twips> widths;
  for (const forms::Column& column : table_.Columns()) widths.push_back(column.width);
  if (widths != shownWidths_) widthsByHand_ = false;
  shownWidths_ = std::move(widths);
  ShareWidth();
}

int TableList::LeastWidth(int column) const {
  const QString title = model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
  const int heading =
      horizontalHeader()->fontMetrics().horizontalAdvance(title) + kCellPadding + kSortArrow;
  const QFontMetrics letters = fontMetrics();
  const int enough = letters.horizontalAdvance(kShortText);
  int text = 0;
  for (int row = 0; row < std::min(kRowsMeasured, model_->rowCount()) && text < enough; ++row) {
    const QString cell = model_->index(row, column).data().toString();
    text = std::max(text, letters.horizontalAdvance(cell));
  }
  return std::max(heading, std::min(text, enough) + 2 * kCellPadding + kRounding);
}

/// The columns fill the list and keep their proportions, save those that would be too narrow for
/// what they hold; what the user dragged stays.
void TableList::ShareWidth() {
  const int total = std::accumulate(shownWidths_.begin(), shownWidths_.end(), 0);
  if (widthsByHand_ || total <= 0) return;
  const QScopedValueRollback sharing(sharing_, true);
  std::vector<int> least;
  for (int column = 0; column < static_cast<int>(shownWidths_.size()); ++column) {
    least.push_back(shownWidths_[static_cast<std::size_t>(column)] > 0 ? LeastWidth(column) : 0);
  }
  const int space = std::max(viewport()->width(), ToPixels(total));
  const std::vector<int> widths = SharedWidths(shownWidths_, least, space);
  for (int column = 0; column < static_cast<int>(widths.size()); ++column) {
    const int width = widths[static_cast<std::size_t>(column)];
    setColumnHidden(column, width == 0);
    if (width > 0) setColumnWidth(column, width);
  }
}

void TableList::ChooseColours() {
  const QPalette desktop = QGuiApplication::palette();
  const QColor base = desktop.color(QPalette::Base);
  model_->SetBackground(base);
  QPalette colours = palette();
  colours.setColor(QPalette::Active, QPalette::Highlight, Mixed(base, theme::kTeal, 0.22));
  colours.setColor(QPalette::Inactive, QPalette::Highlight, Mixed(base, theme::kTeal, 0.16));
  setPalette(colours);
}

void TableList::ChooseByKey(int row) {
  binder_.ByHand(table_, [&] { table_.RowClick(row); });
}

void TableList::mouseMoveEvent(QMouseEvent* event) {
  // A drag over the rows would mark rows that nobody clicked.
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
  QTableView::keyPressEvent(event);
  const int row = currentIndex().row();
  if (row >= 0 && row != before) ChooseByKey(row);
}

void TableList::contextMenuEvent(QContextMenuEvent* event) {
  auto* const menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (int column = 0; column < model_->columnCount(); ++column) {
    if (isColumnHidden(column)) continue;
    const QString title = model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    const QAction* const entry = menu->addAction("Sort by " + QString(title).replace("&", "&&"));
    connect(entry, &QAction::triggered, this,
            [this, column] { binder_.ByHand(table_, [&] { table_.HeaderClick(column); }); });
  }
  const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
  menu->popup(byKey ? viewport()->mapToGlobal(QPoint(0, 0)) : event->globalPos());
}

void TableList::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  ShareWidth();
}

void TableList::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::ApplicationPaletteChange) ChooseColours();
}

}  // namespace tavlo::platform::qt
