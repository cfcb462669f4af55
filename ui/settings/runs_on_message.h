// Tells, once in the life of an installation, that closing the window has not ended the program.
//
// For desktops without a panel, where nothing else shows that it runs. The message is its caller's, and hides
// itself when it is answered.
#pragma once

#include "model/app_model.h"

#include <QWidget>
#include <functional>
#include <memory>

namespace hopsel {

/// The message, which is shown already; null where it was said before. `onQuit` is called if the user would
/// rather end the program.
std::unique_ptr<QWidget> sayOnceThatTheProgramRunsOn(AppModel& model, std::function<void()> onQuit);

} // namespace hopsel
