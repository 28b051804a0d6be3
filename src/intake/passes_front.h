#pragma once

#include <string>

namespace tavlo::intake {

/// What the passes show, and read, outside of folders and message boxes.
class PassesFront {
 public:
  virtual ~PassesFront() = default;

  /// Shows or hides `lblFtpParsing` and `lblFtpWait`.
  virtual void ShowFtpSort(bool shows) = 0;
  /// The text of `txtFtpParseImportDirPointer`.
  virtual std::string FtpParseImportDirPointer() const = 0;
  /// The text of `txtWavImportSubdirectory`.
  virtual std::string WavImportSubdirectory() const = 0;
  /// Says in the quiet line what needs no answer.
  virtual void Say(const std::string& text) = 0;
  /// Says how far a long work is, in place of what was said of it before; the empty text when it is
  /// over. Called while the loop only breathes: nothing but what is painted may change.
  virtual void SayHowFar(const std::string& text) = 0;
};

}  // namespace tavlo::intake
