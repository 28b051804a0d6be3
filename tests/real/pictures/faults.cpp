#include "faults.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QHelpEvent>
#include <QScrollBar>
#include <QTextDocumentFragment>
#include <QToolTip>
#include <QWidget>
#include <cmath>
#include <cstdio>
#include <string_view>

#include "contrast.h"
#include "shown_parts.h"

namespace tavlo::test {
namespace {

constexpr double kLegible = 4.5;
constexpr double kLegibleWhenLarge = 3;
constexpr double kVisible = 3;
/// Letters end between two pixels.
constexpr int kRounding = 1;

std::string Rounded(double number) {
  char text[16];
  std::snprintf(text, sizeof text, "%.2f", number);
  return text;
}

std::string Said(const QString& of, const QString& text) {
  constexpr int kEnough = 40;
  return of.toStdString() + " \"" + text.left(kEnough).toStdString() + "\"";
}

/// What somebody is told who lets the pointer rest on the text.
QString TooltipOf(const ShownText& text) {
  QHelpEvent question(QEvent::ToolTip, text.pointer, text.widget->mapToGlobal(text.pointer));
  QApplication::sendEvent(text.widget, &question);
  // The places where a long word may be broken are no letters.
  const QString told = QToolTip::text().remove(QChar(u'\u200B'));
  // The toolkit would leave it standing for a while, on the next picture too.
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    if (window->windowType() == Qt::ToolTip) window->hide();
  }
  return Qt::mightBeRichText(told) ? QTextDocumentFragment::fromHtml(told).toPlainText() : told;
}

class Judge {
 public:
  Judge(QWidget& window, const Portrait& portrait)
      : window_(window), portrait_(portrait), parts_(PartsOf(window)) {}

  std::vector<std::string> Faults() {
    for (const ShownText& text : parts_.texts) JudgeText(text);
    for (const ShownMark& mark : parts_.marks) JudgeMark(mark);
    for (const ShownControl& control : parts_.controls) JudgePlace(control);
    JudgeOverlaps();
    const QSize size = (QSizeF(window_.size()) * portrait_.scale).toSize();
    if (!portrait_.picture.rect().contains(QRect(portrait_.corner, size))) {
      Complain("the window reaches over the screen");
    }
    return std::move(faults_);
  }

 private:
  void Complain(const std::string& fault) { faults_.push_back(fault); }

  QRect Pixels(const QRect& place) const {
    const auto pixels = [this](int length) { return portrait_.scale * length; };
    const QRectF exact(pixels(place.x()), pixels(place.y()), pixels(place.width()),
                       pixels(place.height()));
    return exact.toAlignedRect().translated(portrait_.corner);
  }

  void ExpectContrast(const std::string& of, const QRect& place, double least) {
    const Inking seen = Measure(portrait_.picture, Pixels(place));
    if (seen.contrast >= least) return;
    Complain(of + " has a contrast of " + Rounded(seen.contrast) + ", " +
             seen.ink.name().toStdString() + " on " + seen.ground.name().toStdString());
  }

  void JudgeText(const ShownText& text) {
    if (text.text.trimmed().isEmpty()) return;
    const std::string said = Said(text.of, text.text);
    const bool wide = text.elided || text.needs.width() > text.place.width() + kRounding;
    if (wide && !text.scrolls && !TooltipOf(text).contains(text.text)) {
      Complain(said + " is cut off and no tooltip tells the rest: it needs " +
               std::to_string(text.needs.width()) + " of " + std::to_string(text.place.width()));
    }
    if (text.needs.height() > text.place.height() + kRounding) {
      Complain(said + " is cut off: it is " + std::to_string(text.needs.height()) + " high in " +
               std::to_string(text.place.height()));
    }
    if (text.enabled) {
      ExpectContrast(said, text.place, text.large ? kLegibleWhenLarge : kLegible);
    }
  }

  void JudgeMark(const ShownMark& mark) {
    ExpectContrast(mark.of.toStdString(), mark.place, kVisible);
  }

  static bool Scrolls(const QWidget& viewport) {
    const auto* const area = qobject_cast<const QAbstractScrollArea*>(viewport.parentWidget());
    return area && area->viewport() == &viewport &&
           (area->verticalScrollBar()->isVisible() || area->horizontalScrollBar()->isVisible());
  }

  void JudgePlace(const ShownControl& control) {
    const QRect own = control.widget->rect();
    for (const QWidget* outer = control.widget->parentWidget(); outer;
         outer = outer->parentWidget()) {
      if (Scrolls(*outer)) return;
      const QRect place(control.widget->mapTo(outer, QPoint(0, 0)), own.size());
      if (!outer->rect().contains(place)) {
        return Complain(control.of.toStdString() + " reaches out of " +
                        outer->objectName().toStdString() + " " + outer->metaObject()->className());
      }
      if (outer == &window_) return;
    }
  }

  void JudgeOverlaps() {
    for (std::size_t i = 0; i < parts_.controls.size(); ++i) {
      for (std::size_t j = i + 1; j < parts_.controls.size(); ++j) {
        const ShownControl& a = parts_.controls[i];
        const ShownControl& b = parts_.controls[j];
        if (a.widget->isAncestorOf(b.widget) || b.widget->isAncestorOf(a.widget)) continue;
        if (!a.place.intersects(b.place)) continue;
        Complain(a.of.toStdString() + " lies on " + b.of.toStdString());
      }
    }
  }

  QWidget& window_;
  const Portrait& portrait_;
  const ShownParts parts_;
  std::vector<std::string> faults_;
};

}  // namespace

std::vector<std::string> FaultsOf(QWidget& window, const Portrait& portrait) {
  return Judge(window, portrait).Faults();
}

}  // namespace tavlo::test
