// Text in the sizes and colours of the windows.
//
// Sizes are given in points at the usual system font and grow with the user's. The label follows a change of
// the palette by itself.
#pragma once

#include "ui/design/colors.h"

#include <QFont>
#include <QLabel>

namespace hopsel::design {

enum class TextStyle { largeTitle, title, title3, headline, body, key, callout, caption, events };

QFont fontOf(TextStyle style);
/// How much larger the user's system font is than the one that the sizes were chosen for.
qreal textScale();
/// A length that grows with the text.
int scaled(qreal length);

class Text final : public QLabel {
  public:
    explicit Text(const QString& text = {}, TextStyle style = TextStyle::body, Tone tone = Tone::primary,
                  QWidget* parent = nullptr);

    void setTone(Tone tone);
    /// Breaks lines instead of being cut off.
    Text* wrapped();
    /// Stays on one line and leaves out the middle when that is too long; the tool tip has the whole.
    Text* elided();

    QSize minimumSizeHint() const override;

  protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void applyTone();

    Tone tone_;
    bool isElided_ = false;
    bool isApplyingTone_ = false;
};

} // namespace hopsel::design
