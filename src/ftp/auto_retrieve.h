#pragma once

#include "forms/configuration_form.h"
#include "ftp/channel.h"

namespace tavlo::ftp {

/// Unattended retrieval: every few seconds it presses the keys of the Ftp view in the order in
/// which a person would. A press of a disabled key does nothing, and the order relies on it.
class AutoRetrieve {
 public:
  AutoRetrieve(Channel& channel, forms::ConfigurationForm& config);

  base::Timer tmrFtpAutoRetrieve;
  /// The user has switched it off; a tick that is under way does not arm the timer again.
  bool FtpAutoRetrieveOff = true;

 private:
  void Switch();
  void Tick();
  void PressKeys();
  void TellFailure();
  bool BoxIsYoung();

  Channel& channel_;
  forms::MainForm& form_;
  forms::ConfigurationForm& config_;
  int ticksUnderBox_ = 0;  ///< In a row.
};

}  // namespace tavlo::ftp
