#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <utility>

namespace tavlo::test {

/// Writes the name of a document field by field:
///
///     Document().By("Brown").Id(1234).Priority().At("3 9 2004 14 5 12").Saved(83211).Name()
class Document {
 public:
  /// Sets a field of the head, counted from 1, to any text.
  Document& Field(std::size_t number, std::string text) {
    head_.at(number - 1) = std::move(text);
    return *this;
  }

  Document& System(std::string id) { return Field(1, std::move(id)); }
  Document& By(std::string author) { return Field(3, std::move(author)); }
  Document& Id(int authorId) { return Field(4, std::to_string(authorId)); }
  /// "month day year hour minute second"
  Document& At(const std::string& moment) {
    std::size_t begin = 0;
    for (std::size_t number = 5; number <= 10; ++number) {
      const auto end = moment.find(' ', begin);
      Field(number, moment.substr(begin, end - begin));
      begin = end + 1;
    }
    return *this;
  }
  Document& Department(int department) { return Field(11, std::to_string(department)); }
  Document& WorkType(int workType) { return Field(13, std::to_string(workType)); }
  Document& About(std::string subject) { return Field(14, std::move(subject)); }
  Document& Saved(long position) { return Field(15, std::to_string(position)); }
  Document& Priority() { return Field(16, "P"); }

  /// What stands between the `_` and the dot.
  Document& Tail(std::string tail) {
    tail_ = std::move(tail);
    return *this;
  }
  Document& Ending(std::string ending) {
    ending_ = std::move(ending);
    return *this;
  }

  std::string Name() const {
    std::string name = head_[0];
    for (std::size_t i = 1; i < head_.size(); ++i) name += " " + head_[i];
    return name + "_" + tail_ + ending_;
  }

 private:
  std::array<std::string, 16> head_{"0007", "0",  "Brown", "1234", "3",  "9",      "2004", "14",
                                    "5",    "12", "2",     "0",    "17", "cardio", "0",    "0"};
  std::string tail_;
  std::string ending_ = ".wav";
};

}  // namespace tavlo::test
