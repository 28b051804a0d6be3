#pragma once

#include <QWidget>

#include "forms/ftp_frame.h"

class QBoxLayout;

namespace tavlo::platform::qt {

class Binder;
class FileList;

/// What stands under the heading of the Ftp view: the server's files and those that are to be
/// fetched side by side, the keys that move all of them in between, and how the connection is
/// doing. What is hidden for a while keeps its place.
class FtpPanel : public QWidget {
 public:
  FtpPanel(forms::FtpFrame& form, Binder& binder, QWidget* parent);

 private:
  void AddLists(QBoxLayout& rows);
  FileList* AddList(QBoxLayout& row, forms::Pane& pane, forms::Table& table);
  void AddMovingKeys(QBoxLayout& row);
  void AddStatus(QBoxLayout& rows);
  void ShowFetched();

  forms::FtpFrame& form_;
  Binder& binder_;
  FileList* downloads_ = nullptr;
};

}  // namespace tavlo::platform::qt
