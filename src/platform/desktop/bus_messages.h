#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavlo::platform::desktop {

/// The bytes of a call of one of the message bus's own methods that takes no arguments, as they go
/// over its socket behind the greeting. The serial, which is not 0, tells calls apart.
std::string CallOfTheBus(std::uint32_t serial, std::string_view method);

/// Counts the answers in what a bus sends behind the greeting, and skips its signals. Errors are
/// answers too. For a bus of this machine, whose byte order is ours.
class BusAnswers {
 public:
  /// Takes the next bytes as they came, whole messages or not.
  void Take(std::string_view bytes);
  int Count() const { return count_; }
  /// Something came that is no message.
  bool Garbled() const { return garbled_; }

 private:
  bool TakeMessage();

  std::string waiting_;  ///< The beginning of a message whose rest has not come.
  int count_ = 0;
  bool garbled_ = false;
};

}  // namespace tavlo::platform::desktop
