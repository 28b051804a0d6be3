#include <gtest/gtest.h>

#include <string>

#include "bus/media_program.h"

namespace tavlo::test {
namespace {

/// The program while its bus is not what it should be. It is asked by the bus's address, for the
/// program takes a silent bus out of its environment.
struct LostBus : MediaProgram {
  void Script(const std::function<void()>& script) {
    const int status = program->Run([&] {
      ASSERT_TRUE(program->Begin());
      script();
      LeaveDocument();
      program->Exit();
    });
    EXPECT_EQ(status, 0);
  }
  bool Says(const std::string& status) {
    return Until([&] { return Get("PlaybackStatus") == "s \"" + status + "\""; });
  }
  bool MediaKeysWork() {
    return program->Ask([&] {
      const std::string& line = program->Windows().configuration.lblMediaKeys.Value.Get();
      return line == "Media keys, headset buttons and lock screens run the deck.";
    });
  }
  void PlayByHand() {
    Select();
    program->Click("cmdPlay");
    ASSERT_TRUE(Until([&] { return Playing(); }));
  }
};

struct LateBus : LostBus {
  void BeforeStart() override { bus.Freeze(); }
};

TEST_F(LateBus, IsFoundOnceItWakesUp) {
  Script([&] {
    EXPECT_FALSE(MediaKeysWork());
    bus.Thaw();
    EXPECT_TRUE(Says("Stopped"));
    EXPECT_TRUE(Until([&] { return MediaKeysWork(); }));
  });
}

TEST_F(LostBus, ThatDiesTakesNothingFromTheDeckAndIsFoundAgain) {
  Script([&] {
    ASSERT_TRUE(Says("Stopped"));
    PlayByHand();
    bus.Kill();
    ASSERT_TRUE(Until([&] { return !MediaKeysWork(); }));
    EXPECT_TRUE(Playing());
    program->Click("cmdStop");
    ASSERT_TRUE(Until([&] { return !Playing(); }));
    bus.Restart();
    EXPECT_TRUE(Says("Paused"));
    EXPECT_TRUE(Until([&] { return MediaKeysWork(); }));
    EXPECT_EQ(Call(kPlayer, "Play"), "");
    EXPECT_TRUE(Until([&] { return Playing(); }));
    EXPECT_EQ(Call(kPlayer, "Pause"), "");
    EXPECT_TRUE(Until([&] { return !Playing(); }));
  });
}

TEST_F(LostBus, ThatHangsHoldsUpNothingAndIsToldLaterHowTheDeckStands) {
  Script([&] {
    ASSERT_TRUE(Says("Stopped"));
    bus.Freeze();
    PlayByHand();
    program->Click("cmdStop");
    ASSERT_TRUE(Until([&] { return !Playing(); }));
    bus.Thaw();
    EXPECT_TRUE(Says("Paused"));
  });
}

}  // namespace
}  // namespace tavlo::test
