// What screen readers are told that a widget is, where the toolkit would call it a mere box or label.
//
// A role is given once, when the widget is made, and stays. The toolkit owns the descriptions.
#pragma once

#include <QAccessible>
#include <QWidget>

namespace hopsel::design {

/// A heading, a dialog, a window's frame, tabs. A dialog inside of a window is told to be modal; a button
/// that is told to be a tab is selected when it is checked, and can be pressed.
void setAccessibleRole(QWidget* widget, QAccessible::Role role);

/// After the application object was made, and before its first window.
void describeRoles();

} // namespace hopsel::design
