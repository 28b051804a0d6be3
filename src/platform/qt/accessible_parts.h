#pragma once

class QString;
class QWidget;

namespace tavlo::platform::qt {

/// Tells the toolkit what a screen reader meets in the widgets of our own: role, name and value,
/// and that a value set by it has the effect of a hand. To be called once there is an application.
void InstallAccessibleParts();

/// What a screen reader calls a widget, and what it says about it. An equal text is not set again,
/// since it would be told again.
void SetHeardName(QWidget& widget, const QString& name);
void SetHeardDescription(QWidget& widget, const QString& description);

}  // namespace tavlo::platform::qt
