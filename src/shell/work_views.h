#pragma once

#include "forms/main_form.h"
#include "ftp/server_list.h"
#include "intake/author_profiles.h"
#include "intake/import_list.h"
#include "intake/retrieval_passes.h"
#include "lists/completed_list.h"
#include "lists/queue_list.h"
#include "lists/waiting_work.h"
#include "playback/audio_engine.h"
#include "shell/view.h"
#include "window/main_window.h"

namespace tavlo::shell {

class QueueView : public View {
 public:
  QueueView(window::MainWindow& window, lists::QueueList& queue, lists::WaitingWork& waitingWork,
            intake::Retrieval& retrieval);

  const char* Word() const override { return "Queue"; }
  forms::Command& Entry() override { return form_.mnuViewQueue; }
  forms::Pane& Frame() override { return form_.frameInQueue; }
  const char* Caption() const override { return "Queue"; }
  void Enter() override;

 private:
  forms::MainForm& form_;
  window::MainWindow& window_;
  lists::QueueList& queue_;
  lists::WaitingWork& waitingWork_;
  intake::Retrieval& retrieval_;
};

class CompletedView : public View {
 public:
  CompletedView(forms::MainForm& form, lists::CompletedList& completed);

  const char* Word() const override { return "Complete"; }
  forms::Command& Entry() override { return form_.mnuViewCompleted; }
  forms::Pane& Frame() override { return form_.frameCompleted; }
  const char* Caption() const override { return "Completed"; }
  void Enter() override;

 private:
  forms::MainForm& form_;
  lists::CompletedList& completed_;
};

/// The files in the import directories.
class ImportView : public View {
 public:
  ImportView(window::MainWindow& window, intake::ImportList& list, intake::AuthorProfiles& profiles,
             lists::WaitingWork& waitingWork, intake::RetrievalPasses& retrieval);

  const char* Word() const override { return "Import"; }
  forms::Command& Entry() override { return form_.mnuViewImport; }
  forms::Pane& Frame() override { return form_.frameImport; }
  const char* Caption() const override { return "Import"; }
  void Enter() override;

 private:
  forms::MainForm& form_;
  window::MainWindow& window_;
  intake::ImportList& list_;
  intake::AuthorProfiles& profiles_;
  lists::WaitingWork& waitingWork_;
  intake::RetrievalPasses& retrieval_;
};

/// The servers.
class FtpView : public View {
 public:
  FtpView(forms::MainForm& form, playback::AudioEngine& engine, ftp::ServerList& servers);

  const char* Word() const override { return "Ftp"; }
  forms::Command& Entry() override { return form_.mnuViewFtp; }
  forms::Pane& Frame() override { return form_.frameFtp; }
  const char* Caption() const override { return nullptr; }
  void Enter() override;

 private:
  forms::MainForm& form_;
  playback::AudioEngine& engine_;
  ftp::ServerList& servers_;
};

}  // namespace tavlo::shell
