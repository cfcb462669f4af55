// A line to type in.
#pragma once

#include <QLineEdit>

namespace hopsel::design {

/// `purpose` is what a screen reader says, and what stands in the field while it is empty.
QLineEdit* textField(const QString& purpose);

} // namespace hopsel::design
