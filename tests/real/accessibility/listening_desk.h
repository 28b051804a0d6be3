#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "accessibility/screen_reader.h"
#include "support/driven_program.h"
#include "support/keys.h"

namespace tavlo::test {

/// The real program with dictations in its Queue and a screen reader that listens to it. Both are
/// started once for all tests: each finds the deck at rest with the Queue on show, and leaves it
/// so.
class ListeningDesk : public testing::Test {
 public:
  /// Runs all tests; to be called once, in place of the usual macro.
  static int RunAllTests();

  static inline DrivenProgram* program = nullptr;
  static inline ScreenReader* reader = nullptr;
  /// What the screen reader met while the program started.
  static inline std::vector<HeardNode> splash;

 protected:
  void SetUp() override;
  void TearDown() override;

  static forms::MainForm& Main() { return program->Main(); }
  static forms::ConfigurationForm& Configuration() { return program->Windows().configuration; }
  /// Presses the keys together, each once the program has taken the one before.
  static void Keys(std::initializer_list<std::uint32_t> symbols);

  /// Whether a screen reader is told these words of the deck's state; what was told before them is
  /// forgotten.
  static bool Told(const std::string& words);
  /// The same of any event.
  static bool Heard(const std::string& event);
  /// Whether such a node comes to be in the program's windows.
  static bool Meets(const std::string& role, const std::string& name);

  /// The name of the widget that has the keyboard.
  static std::string Focus();
  /// Presses Tab, which must take the keyboard elsewhere; returns where.
  static std::string Tab(std::initializer_list<std::uint32_t> keys = {keys::kTab});
  static bool TabTo(const std::string& control);
  /// Tab reaches every enabled control of the active window that the keyboard is meant for.
  static void ExpectTabReachesEverything();

  /// Whether the window of that name comes to be the active one.
  static bool Active(const char* window);

  /// By their keys.
  static void OpenConfiguration();
  static void CloseConfiguration();
  static void Select(const std::string& author);
  static void Play();
  static void SkipDocument();
};

}  // namespace tavlo::test
