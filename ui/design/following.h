// Keeps a view up to date with an observable object for as long as anybody can see the view.
#pragma once

#include "model/observable_object.h"

#include <QWidget>
#include <functional>

namespace hopsel {

/// Calls `refresh` now, each time that `view` is shown, and after each change of `object` while it is
/// visible. Ends with either of them; `refresh` may lean on both.
void follow(QWidget* view, ObservableObject& object, std::function<void()> refresh);

} // namespace hopsel
