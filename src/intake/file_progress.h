#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace tavlo::intake {

/// Says by file how far a batch is, as long as it lives, and takes it back at its end. A batch that
/// is over before anybody could read that says nothing.
class FileProgress {
 public:
  /// Says a text in place of the one before; the empty text says nothing.
  using Say = std::function<void(const std::string& text)>;

  /// `files`: how many there are, or nothing where that is not known.
  FileProgress(Say say, std::string doing, std::optional<std::size_t> files);
  ~FileProgress();
  FileProgress(const FileProgress&) = delete;

  /// The next file is begun.
  void Next();

 private:
  static constexpr std::size_t kWorthTelling = 50;

  const Say say_;
  const std::string doing_;
  const std::optional<std::size_t> files_;
  std::size_t begun_ = 0;
  bool told_ = false;
};

}  // namespace tavlo::intake
