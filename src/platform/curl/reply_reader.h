#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tavlo::platform {

/// What a server answers to a command.
struct ServerReply {
  int code = 0;      ///< 100 to 599.
  std::string text;  ///< Its lines as they came, codes included, each with '\n' behind it; long
                     ///< ones are left out.

  bool IsInterim() const { return code < 200; }
  bool IsGood() const { return code / 100 == 2; }
};

/// Reads the answers of a server out of the bytes that come. It keeps 4 kB of an answer and 4 kB of
/// its line at hand, however long both are.
class ReplyReader {
 public:
  /// Behind so many bytes an answer has no end.
  static constexpr std::size_t kLongestReply = 1'000'000;
  static constexpr std::size_t kKept = 4096;

  /// Takes bytes in up to the end of an answer, and returns how many; the rest belongs to the next.
  std::size_t Take(std::string_view bytes);
  /// The answer, once it is whole; then the next one begins.
  std::optional<ServerReply> Next();
  /// What came is no answer of an FTP server. Nothing can be read any more.
  bool IsNonsense() const { return nonsense_; }
  /// Bytes of an answer that is not whole yet.
  bool IsAmid() const { return taken_ > 0; }

 private:
  /// At the end of each line.
  void EndLine();

  ServerReply reply_;
  std::string line_;  ///< The beginning of the line at hand.
  std::size_t taken_ = 0;
  bool whole_ = false;
  bool nonsense_ = false;
};

}  // namespace tavlo::platform
