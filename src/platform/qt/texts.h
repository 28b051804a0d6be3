#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace tavlo::platform::qt {

/// The text as it is; bytes that are not UTF-8 become U+FFFD.
QString ToQt(std::string_view text);

/// The text in a form that can be shown on one line whatever a file name holds: control characters
/// become their visible pictures, marks that turn the direction of writing become U+FFFD.
QString ToOneLine(std::string_view text);

/// The text as a tooltip that shows it letter for letter, for the toolkit would take what looks
/// like mark-up for mark-up.
QString ToTooltip(const QString& text);

/// A text that has to fit the screen in a box or a tooltip, whatever it holds: of a very long one
/// the middle is left out, and a very long word may be broken.
QString ToScreen(const QString& text);

/// The caption without the ampersand that marks its key, for people who hear it.
QString WithoutMnemonic(std::string_view caption);

std::string FromQt(const QString& text);

}  // namespace tavlo::platform::qt
