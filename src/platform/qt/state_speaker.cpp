#include "platform/qt/state_speaker.h"

#include <QAccessible>
#include <utility>

#include "platform/qt/binder.h"
#include "platform/qt/texts.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kBlinkMilliseconds = 150;

}  // namespace

StateSpeaker::StateSpeaker(Words words, const std::vector<const forms::Control*>& telling,
                           Binder& binder, QWidget* window)
    : QWidget(window), wordsNow_(std::move(words)) {
  setFixedSize(0, 0);
  stands_.setSingleShot(true);
  stands_.setInterval(kBlinkMilliseconds);
  connect(&stands_, &QTimer::timeout, this, [this] { Say(); });
  words_ = ToOneLine(wordsNow_());
  setAccessibleName(words_);
  for (const forms::Control* const control : telling) {
    binder.Watch(*control, [this] { Look(); });
  }
}

void StateSpeaker::Look() {
  const QString words = ToOneLine(wordsNow_());
  if (words == words_) return;
  words_ = words;
  stands_.start();
}

void StateSpeaker::Say() {
  if (words_ == accessibleName()) return;
  setAccessibleName(words_);
  if (words_.isEmpty()) return;
  QAccessibleEvent shown(this, QAccessible::ObjectShow);
  QAccessible::updateAccessibility(&shown);
}

}  // namespace tavlo::platform::qt
