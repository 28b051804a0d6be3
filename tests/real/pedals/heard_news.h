#pragma once

#include <QCoreApplication>
#include <QTimer>

#include "base/listener.h"

namespace tavlo::test {

/// Hears of news in the toolkit's event loop, which this turns.
class HeardNews final : public base::Listener {
 public:
  int Count = 0;

  void HandleNews() override { ++Count; }

  /// Turns the loop until it was told so often in all. False when that does not come in a minute.
  bool Until(int count) {
    bool late = false;
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, &limit, [&] { late = true; });
    limit.start(60'000);
    while (Count < count && !late) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return Count >= count;
  }
  /// Turns the loop as long as it has events of this moment.
  void Turn() const {
    for (int turn = 0; turn < 10; ++turn) QCoreApplication::processEvents();
  }
};

}  // namespace tavlo::test
