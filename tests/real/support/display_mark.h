#pragma once

#include <xcb/xcb.h>

#include <QAbstractNativeEventFilter>
#include <atomic>

namespace tavlo::test {

/// A message that goes from the toolkit to the display and back. Once it has come back, the display
/// has done all that the toolkit had asked of it before, and the toolkit has everything that the
/// display had for it then. On another kind of display than X it is back at once.
///
/// Made, sent and destroyed on the toolkit's thread, while the QApplication exists.
class DisplayMark : public QAbstractNativeEventFilter {
 public:
  DisplayMark();
  ~DisplayMark() override;
  DisplayMark(const DisplayMark&) = delete;

  void Send();
  /// May be asked by any thread. It becomes true only while the toolkit's loop turns.
  bool CameBack() const { return returned_ == sent_; }

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  xcb_connection_t* display_ = nullptr;
  xcb_window_t window_ = XCB_NONE;
  std::atomic<int> sent_ = 0;
  std::atomic<int> returned_ = 0;
};

}  // namespace tavlo::test
