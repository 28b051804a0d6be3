#pragma once

#include <QImage>
#include <QPalette>
#include <string>
#include <vector>

#include "faults.h"
#include "support/driven_program.h"

namespace tavlo::test {

/// Takes pictures of a driven program's windows on a light desktop and on a dark one, whose own
/// colours can be read, and fails the test for every fault that they show. Pictures with a fault
/// are kept in the folder of the build; with TAVLO_SCREENSHOTS all are, in the folder that it
/// names. For the script's thread.
class Album {
 public:
  /// `name` is the folder below in which this album's pictures stand.
  Album(DrivenProgram& program, std::string name);

  /// Takes the window in front once it stands still.
  void Take(const std::string& name);
  /// The same on a light desktop alone, for what no desktop changes.
  void TakeLight(const std::string& name);

 private:
  struct Look {
    QImage screen;
    QRect windows;  ///< Where the program's windows stand on the screen, in pixels.
    std::vector<std::string> faults;
  };

  static QWidget* Front();
  QImage FrontNow();
  void WaitForRest();
  Look LookNow();
  void TakeIn(const std::string& shade, const std::string& name);
  void UsePalette(const QPalette& palette);

  DrivenProgram& program_;
  const std::string name_;
  QPalette light_;
};

}  // namespace tavlo::test
