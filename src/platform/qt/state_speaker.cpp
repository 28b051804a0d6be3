#include "platform/qt/state_speaker.h"

#include <QAccessible>

#include "platform/qt/binder.h"
#include "platform/qt/texts.h"
#include "window/deck_in_words.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kBlinkMilliseconds = 150;

}  // namespace

StateSpeaker::StateSpeaker(const forms::MainForm& form, Binder& binder, QWidget* window)
    : QWidget(window), form_(form) {
  setObjectName("stateSpeaker");
  setFixedSize(0, 0);
  stands_.setSingleShot(true);
  stands_.setInterval(kBlinkMilliseconds);
  connect(&stands_, &QTimer::timeout, this, [this] { Say(); });
  words_ = ToOneLine(window::DeckInWords(form_));
  setAccessibleName(words_);
  const forms::Control* const telling[] = {
      &form.frmMain, &form.slPosition,  &form.StatusBar1,         &form.cmdPlay,
      &form.cmdSkip, &form.cmdComplete, &form.lblFilePositionHMS, &form.lblFileLengthHMS};
  for (const forms::Control* const control : telling) {
    binder.Watch(*control, [this] { Look(); });
  }
}

void StateSpeaker::Look() {
  const QString words = ToOneLine(window::DeckInWords(form_));
  if (words == words_) return;
  words_ = words;
  stands_.start();
}

void StateSpeaker::Say() {
  if (words_ == accessibleName()) return;
  setAccessibleName(words_);
  QAccessibleEvent shown(this, QAccessible::ObjectShow);
  QAccessible::updateAccessibility(&shown);
}

}  // namespace tavlo::platform::qt
