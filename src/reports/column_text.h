#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tavlo::reports {

/// A text whose fields begin at given columns. Columns count from 1, in characters of UTF-8; a byte
/// that is no part of one counts as one character. What is put is always shown on one line: each
/// control character becomes a question mark. What is no proper UTF-8 becomes U+FFFD, as the lists
/// show it, since one such byte would have an editor read the whole text as another encoding.
class ColumnText {
 public:
  /// Continues the line.
  void Put(std::string_view text);
  /// Pads the line with blanks and puts the text at that column. Where the line has gone past the
  /// column already, the text stands at that column of the next line.
  void PutAt(std::size_t column, std::string_view text);
  void EndLine();

  /// All lines so far, each ended by a line feed.
  const std::string& Text() const { return text_; }
  void Reserve(std::size_t bytes) { text_.reserve(bytes); }

 private:
  std::string text_;
  std::size_t column_ = 1;  ///< Where the next character goes.
};

}  // namespace tavlo::reports
