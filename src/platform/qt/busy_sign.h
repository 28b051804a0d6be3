#pragma once

#include <QWidget>

#include "forms/main_form.h"

namespace tavlo::platform::qt {

class Binder;

/// Says over whichever list shows that fetched files are being sorted. It lies on the lists and
/// takes no room from them, since it comes and goes within seconds.
class BusySign : public QWidget {
 public:
  BusySign(forms::FtpFrame& form, Binder& binder, QWidget* lists);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void StandInPlace();

  forms::FtpFrame& form_;
};

}  // namespace tavlo::platform::qt
