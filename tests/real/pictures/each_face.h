#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

#include "support/driven_program.h"
#include "support/face.h"

namespace tavlo::test {

/// Clicks through every face that a driven program has, and calls `take` with a name for a picture
/// of each. The deck then has the face that it began with. For the script's thread.
inline void EachFace(DrivenProgram& program,
                     const std::function<void(const std::string& name)>& take) {
  forms::MainForm& main = program.Main();
  const forms::Table& faces = main.listFasciaImages;
  const auto chosen = [&] { return faces.ListIndex.Get(); };
  const int count = program.Ask([&] { return static_cast<int>(faces.Rows().size()); });
  for (int face = 0; face < count; ++face) {
    const int before = program.Ask(chosen);
    program.Do([&] { main.imageFaciaA.Click(); });
    ASSERT_TRUE(program.Until([&] { return chosen() != before; }));
    program.Settle();
    ASSERT_TRUE(program.Until([] { return !FaceIsOnItsWay(); }));
    const std::filesystem::path file = program.Ask([&] { return faces.TextAt(chosen(), 0); });
    take("face-" + file.stem().string());
  }
}

}  // namespace tavlo::test
