#include "intake/window_front.h"

namespace tavlo::intake {

void WindowFront::ShowFtpSort(bool shows) {
  window_.Form().lblFtpParsing.Visible = shows;
  window_.Form().lblFtpWait.Visible = shows;
}

std::string WindowFront::FtpParseImportDirPointer() const {
  return window_.Form().txtFtpParseImportDirPointer.Value;
}

std::string WindowFront::WavImportSubdirectory() const {
  return window_.Form().txtWavImportSubdirectory.Value;
}

}  // namespace tavlo::intake
