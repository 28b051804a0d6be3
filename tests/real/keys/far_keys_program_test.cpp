#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>

#include "keys/other_window.h"
#include "keys/text_editor.h"
#include "support/driven_program.h"
#include "support/keys.h"
#include "support/other_program.h"
#include "support/sound_files.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

constexpr int kRate = 8000;
constexpr double kSeconds = 120;

/// The real program with a document selected, and a letter in a text editor that has the keyboard.
struct FarKeysProgram : testing::Test {
  void SetUp() override {
    ASSERT_EQ(RunShell("setxkbmap us"), 0);
    ASSERT_TRUE(server.Start());
    home.MakeRoot(QuietSettings({{"PlayStopKey", "F4"},
                                 {"PlayHeldKey", "F2"},
                                 {"ForwardHeldKey", "F3"},
                                 {"ToBeginningKey", "F5"},
                                 {"ToEndKey", "F6"},
                                 {"SlowerKey", "F7"},
                                 {"FasterKey", "F8"},
                                 {"NormalSpeedKey", "F9"},
                                 {"CompleteKey", "CTRL+F12"},
                                 {"SaveKey", "CTRL+SHIFT+s"},
                                 {"SkipKey", "CTRL+odiaeresis"}}));
    for (const std::string& document : {first, second}) {
      home.AddToQueue(document, WaveBytes(Chirp(static_cast<int>(kSeconds) * kRate, kRate)));
    }
    program = std::make_unique<DrivenProgram>(home);
  }

  void Run(const std::function<void()>& script) {
    const int status = program->Run([&] {
      ASSERT_TRUE(program->Begin());
      Select(first);
      hands = std::make_unique<Hands>();
      ASSERT_TRUE(editor.ComeForward());
      script();
      if (program->Ask([&] { return program->Main().cmdSkip.Enabled.Get(); })) {
        program->Click("cmdSkip");
        ASSERT_TRUE(Until([&] { return program->IsReady(); }));
      }
      // A box that comes while somebody types elsewhere waits for a click.
      hands->BringForward(Screen().Deck().id);
      program->Settle();
      program->Exit();
    });
    EXPECT_EQ(status, 0);
  }
  void Select(const std::string& document) {
    program->ClickRow(program->RowOf(document));
    ASSERT_TRUE(program->Until([&] { return program->Main().cmdPlay.Enabled.Get(); }));
  }
  void Write(const std::string& text) {
    for (const char letter : text) hands->Keys({static_cast<std::uint32_t>(letter)});
    written += text;
  }
  /// Presses the keys together once the deck has heard that all keys are up: two taps with nothing
  /// between them are quicker than any finger.
  void Tap(std::initializer_list<std::uint32_t> symbols) {
    EXPECT_TRUE(program->Until([&] {
      return std::ranges::none_of(remote::kAfarActions, [&](const auto& name) {
        return program->Rooms().farHand.IsDown(name.action);
      });
    }));
    hands->Keys(symbols);
  }
  bool BecomesPlaying(bool plays) {
    return program->Until([&] { return program->Rooms().engine.IsPlaying == plays; });
  }
  bool BecomesSpeed(int offset) {
    return program->Until([&] { return program->Main().Slider1.Value.Get() == offset; });
  }
  bool Completes(const std::string& document) {
    return Until([&] { return std::filesystem::exists(home.CompletedPath() + "/" + document); });
  }
  static std::uint32_t FunctionKey(std::uint32_t number) { return 0xFFBD + number; }

  const std::string first = DocumentName("Brown", 1);
  const std::string second = DocumentName("Green", 2);
  SoundServer server;
  Home home;
  TextEditor editor;
  std::unique_ptr<DrivenProgram> program;
  std::unique_ptr<Hands> hands;
  std::string written;
};

TEST_F(FarKeysProgram, EachKeyDoesItsWorkWhileALetterIsWritten) {
  Run([&] {
    Write("dear ");
    Tap({FunctionKey(4)});
    EXPECT_TRUE(BecomesPlaying(true));
    Write("doctor ");
    Tap({FunctionKey(4)});
    EXPECT_TRUE(BecomesPlaying(false));
    Tap({FunctionKey(8)});
    EXPECT_TRUE(BecomesSpeed(5));
    Write("brown ");
    Tap({FunctionKey(7)});
    EXPECT_TRUE(BecomesSpeed(0));
    Tap({FunctionKey(7)});
    EXPECT_TRUE(BecomesSpeed(-5));
    Tap({FunctionKey(9)});
    EXPECT_TRUE(BecomesSpeed(0));
    Write("thank ");
    const auto position = [&] {
      return program->Ask([&] { return program->Rooms().documentInWork.CurrentSamplePosition; });
    };
    Tap({FunctionKey(6)});
    EXPECT_TRUE(Until([&] { return position() > (kSeconds - 10) * kRate; }));
    Tap({FunctionKey(5)});
    EXPECT_TRUE(Until([&] { return position() == 0; }));
    Write("you ");
    Tap({keys::kControl, FunctionKey(12)});
    EXPECT_TRUE(Completes(first));
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
    Write("for ");
    EXPECT_EQ(editor.Saved(written), written);
  });
}

TEST_F(FarKeysProgram, HeldKeyPlaysUntilItIsUpWhateverIsTypedMeanwhile) {
  Run([&] {
    for (int round = 0; round < 5; ++round) {
      hands->Hold(FunctionKey(2));
      EXPECT_TRUE(BecomesPlaying(true));
      Write("the quick brown fox ");
      hands->Hold(keys::kShift);
      hands->Keys({'a'});
      hands->LetGo(keys::kShift);
      written += 'A';
      EXPECT_TRUE(program->Ask([&] { return program->Rooms().engine.IsPlaying; }));
      hands->LetGo(FunctionKey(2));
      EXPECT_TRUE(BecomesPlaying(false));
      Write(" jumps ");
    }
    hands->Hold(FunctionKey(3));
    EXPECT_TRUE(
        program->Until([&] { return program->Rooms().transport.tmrRewindForward.Enabled(); }));
    hands->LetGo(FunctionKey(3));
    EXPECT_TRUE(
        program->Until([&] { return !program->Rooms().transport.tmrRewindForward.Enabled(); }));
    EXPECT_EQ(editor.Saved(written), written);
  });
}

TEST_F(FarKeysProgram, KeysFollowALayoutThatIsSwitchedInTheMiddleOfAWord) {
  Run([&] {
    Write("xy");
    hands->Hold(FunctionKey(2));
    EXPECT_TRUE(BecomesPlaying(true));
    ASSERT_EQ(RunShell("setxkbmap de"), 0);
    Write("xyz");
    EXPECT_TRUE(program->Ask([&] { return program->Rooms().engine.IsPlaying; }));
    hands->LetGo(FunctionKey(2));
    EXPECT_TRUE(BecomesPlaying(false));
    Write(" ");
    constexpr std::uint32_t kOdiaeresis = 0xF6;
    // The key of Skip is on this keyboard alone.
    EXPECT_TRUE(Until([&] {
      hands->Keys({keys::kControl, kOdiaeresis});
      return !program->Ask([&] { return program->Main().cmdSkip.Enabled.Get(); });
    }));
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
    ASSERT_EQ(RunShell("setxkbmap us"), 0);
    Write("zy");
    EXPECT_EQ(editor.Saved(written), written);
  });
}

TEST_F(FarKeysProgram, ProgramThatTypesWhatTheKeyboardHasNotTakesNoHeldKeyAway) {
  Run([&] {
    hands->Hold(FunctionKey(2));
    EXPECT_TRUE(BecomesPlaying(true));
    // It gives a key another meaning for each such letter.
    ASSERT_EQ(RunShell("xdotool type --delay 30 'Größe über ½ Straße'"), 0);
    written += "Größe über ½ Straße";
    EXPECT_TRUE(program->Ask([&] { return program->Rooms().engine.IsPlaying; }));
    hands->LetGo(FunctionKey(2));
    EXPECT_TRUE(BecomesPlaying(false));
    EXPECT_EQ(editor.Saved(written), written);
  });
}

TEST_F(FarKeysProgram, SaveStoresThePlaceAndTheLetterIsNotSaved) {
  Run([&] {
    Tap({FunctionKey(4)});
    EXPECT_TRUE(BecomesPlaying(true));
    Tap({FunctionKey(6)});
    Write("unfinished");
    Tap({keys::kControl, keys::kShift, 's'});
    EXPECT_TRUE(Until([&] {
      // Its name has another position then.
      return !std::filesystem::exists(home.QueuePath() + "/" + first) && program->IsReady();
    }));
    EXPECT_EQ(editor.Saved(written), written);
  });
}

TEST_F(FarKeysProgram, LockedScreenKeepsTheKeysToItself) {
  Run([&] {
    hands->Hold(FunctionKey(2));
    EXPECT_TRUE(BecomesPlaying(true));
    Write("a");
    ASSERT_TRUE(Until([&] { return editor.Saved(written) == written; }));
    OtherWindow lock;
    ASSERT_TRUE(Until([&] { return lock.Lock(); }));
    hands->LetGo(FunctionKey(2));
    EXPECT_TRUE(BecomesPlaying(false)) << "a held key that is let go there is let go";
    Tap({FunctionKey(4)});
    EXPECT_TRUE(Until([&] { return lock.Took().ends_with("+F4 -F4"); }));
    EXPECT_FALSE(program->Ask([&] { return program->Rooms().engine.IsPlaying; }));
    lock.Unlock();
    Tap({FunctionKey(4)});
    EXPECT_TRUE(BecomesPlaying(true));
    Tap({FunctionKey(4)});
    EXPECT_TRUE(BecomesPlaying(false));
  });
}

}  // namespace
}  // namespace tavlo::test
