#include "ui/design/text_field.h"

#include "ui/design/text.h"

namespace hopsel::design {

QLineEdit* textField(const QString& purpose) {
    auto* field = new QLineEdit;
    field->setAccessibleName(purpose);
    field->setPlaceholderText(purpose);
    field->setFont(fontOf(TextStyle::body));
    field->setTextMargins(8, 5, 8, 5);
    return field;
}

} // namespace hopsel::design
