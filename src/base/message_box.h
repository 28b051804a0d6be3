#pragma once

#include <string>

namespace tavlo::base {

enum class Icon { None, Information, Question, Warning, Critical };
enum class Buttons { Ok, YesNo };
enum class Reply { Ok, Yes, No };

/// What a modal message box says. Texts are UTF-8; line breaks are line feeds.
struct MessageBox {
  std::string title;
  std::string text;
  Icon icon = Icon::None;
  Buttons buttons = Buttons::Ok;
  /// The answer that Enter and the space bar give where there is a choice. What deletes asks for
  /// No, so that a key that was meant for something else deletes nothing.
  Reply byDefault = Reply::Yes;
};

}  // namespace tavlo::base
