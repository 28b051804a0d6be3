#include "platform/qt/secret_box.h"

#include <QApplication>
#include <QProxyStyle>

namespace tavlo::platform::qt {
namespace {

/// The name of the style that boxes have.
QString StyleOfBoxes() {
  const QStyle* const style = QApplication::style();
  const auto* const around = qobject_cast<const QProxyStyle*>(style);
  return (around ? around->baseStyle() : style)->name();
}

/// The style of all other boxes, which may have another sign for a character that is kept secret,
/// and may let the last one stand for a moment.
class AsteriskStyle : public QProxyStyle {
 public:
  AsteriskStyle() : QProxyStyle(StyleOfBoxes()) {}

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override {
    if (hint == SH_LineEdit_PasswordCharacter) return u'*';
    if (hint == SH_LineEdit_PasswordMaskDelay) return 0;
    return QProxyStyle::styleHint(hint, option, widget, returned);
  }
};

}  // namespace

SecretBox::SecretBox(QWidget* parent) : QLineEdit(parent) {
  auto* const style = new AsteriskStyle;
  style->setParent(this);
  setStyle(style);
  setEchoMode(QLineEdit::Password);
  setInputMethodHints(Qt::ImhHiddenText | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText |
                      Qt::ImhNoAutoUppercase);
}

QVariant SecretBox::inputMethodQuery(Qt::InputMethodQuery query) const {
  switch (query) {
    case Qt::ImSurroundingText:
    case Qt::ImCurrentSelection:
    case Qt::ImTextBeforeCursor:
    case Qt::ImTextAfterCursor:
      return QString();
    case Qt::ImCursorPosition:
    case Qt::ImAnchorPosition:
    case Qt::ImAbsolutePosition:
      return 0;
    default:
      return QLineEdit::inputMethodQuery(query);
  }
}

}  // namespace tavlo::platform::qt
