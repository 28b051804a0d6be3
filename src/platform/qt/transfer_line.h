#pragma once

#include <QTimer>
#include <QWidget>

#include "forms/ftp_frame.h"
#include "platform/qt/transfer_rate.h"

class QLabel;

namespace tavlo::platform::qt {

class Binder;
class FiguresLabel;
class ThinBar;

/// Whether a file is being fetched now, as far as the keys tell.
bool IsFetching(const forms::FtpFrame& form);

/// How far the file is that is being fetched, in figures and as a bar, and how fast it comes. The
/// speed is measured here, by the loop's clock. Only while a file is being fetched a timer runs.
class TransferLine : public QWidget {
 public:
  TransferLine(forms::FtpFrame& form, Binder& binder, QWidget* parent);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void Show();
  void ShowRate();
  void FitToLetters();

  forms::FtpFrame& form_;
  FiguresLabel* figures_;
  FiguresLabel* rate_;
  ThinBar* bar_;
  TransferRate measured_;
  QTimer looks_;
};

}  // namespace tavlo::platform::qt
