#include "platform/qt/play_keys.h"

#include <QHBoxLayout>

#include "platform/qt/accessible_parts.h"
#include "platform/qt/binder.h"
#include "platform/qt/deck_key.h"
#include "platform/qt/deck_scale.h"
#include "platform/qt/focus_keeper.h"
#include "platform/qt/texts.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr QSize kPlace{104, 40};
constexpr int kGapBetweenKeys = 8;
constexpr int kKeyLetters = 15;

}  // namespace

PlayKeys::PlayKeys(forms::MainForm& form, Binder& binder, DeckScale& scale, QWidget* parent)
    : QWidget(parent),
      form_(form),
      binder_(binder),
      scale_(scale),
      play_(MakeKey()),
      stop_(MakeKey()) {
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(play_);
  row->addWidget(stop_);
  play_->SetLook(Glyph::Play, DeckKey::Tone::Teal);
  stop_->SetLook(Glyph::Stop, DeckKey::Tone::Amber);

  QObject::connect(play_, &QPushButton::clicked, this, [this] {
    binder_.ByHand(form_.cmdPlay, [this] { form_.cmdPlay.Press(forms::By::Hand); });
  });
  QObject::connect(stop_, &QPushButton::clicked, this,
                   [this] { binder_.StopByHand(StopCommand()); });
  binder_.StandsFor(*play_, form_.cmdPlay);
  binder_.StandsFor(*stop_, form_.cmdStop);
  binder_.StandsFor(*stop_, form_.cmdImportCompleteSnipetStop);
  const forms::Control* const shown[] = {&form_.cmdPlay, &form_.cmdStop,
                                         &form_.cmdImportCompleteSnipetStop, &form_.frmMain};
  for (const forms::Control* const control : shown) {
    binder_.Watch(*control, [this] { Show(); });
  }
  scale_.Fit([this, row] {
    setFixedSize(scale_(kPlace));
    row->setSpacing(scale_(kGapBetweenKeys));
    for (DeckKey* const key : {play_, stop_}) {
      key->setFont(DeckFont(scale_(kKeyLetters), QFont::Bold));
      key->setFixedHeight(height());
    }
    ShareWidth();
  });
}

DeckKey* PlayKeys::MakeKey() { return new DeckKey(Glyph::None, scale_, this); }

forms::Command& PlayKeys::StopCommand() {
  return form_.cmdStop.Visible ? form_.cmdStop : form_.cmdImportCompleteSnipetStop;
}

bool PlayKeys::ShowsBoth() const {
  const bool previews = form_.DeckRuns && !form_.cmdStop.Visible;
  return previews && form_.cmdPlay.Enabled;
}

void PlayKeys::ShareWidth() {
  const int half = (width() - scale_(kGapBetweenKeys)) / 2;
  for (DeckKey* const key : {play_, stop_}) key->setFixedWidth(ShowsBoth() ? half : width());
}

void PlayKeys::Show() {
  const bool runs = form_.DeckRuns;
  const bool both = ShowsBoth();
  if (runs && !both) FocusKeeper::TakeFrom(*play_);
  if (!runs) FocusKeeper::TakeFrom(*stop_);
  ShowCommand(*play_, form_.cmdPlay);
  ShowCommand(*stop_, StopCommand());
  ShareWidth();
  play_->setVisible(!runs || both);
  stop_->setVisible(runs);
}

void PlayKeys::ShowCommand(DeckKey& key, const forms::Command& command) {
  key.setObjectName(ToQt(command.Name));
  key.setText(ToQt(command.Caption.Get()));
  key.setToolTip(ToQt(command.Tooltip.Get()));
  SetHeardName(key, WithoutMnemonic(command.Caption.Get()));
  key.setEnabled(command.Enabled && command.Visible);
}

}  // namespace tavlo::platform::qt
