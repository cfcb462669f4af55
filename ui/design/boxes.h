// What contents are put into: cards, dividers, small grounds behind a few letters, and lines with a symbol.
#pragma once

#include "ui/design/colors.h"
#include "ui/design/text.h"

#include <QFrame>
#include <QVBoxLayout>
#include <QWidget>

namespace hopsel::design {

/// A rounded ground over the whole width, with its contents in a column.
class Card final : public QWidget {
  public:
    explicit Card(int padding = 12, QWidget* parent = nullptr);

    QVBoxLayout* column() const { return column_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QVBoxLayout* column_;
};

/// A thin line between rows or columns.
class Divider final : public QWidget {
  public:
    explicit Divider(Qt::Orientation orientation, QWidget* parent = nullptr);

  protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A few letters on a rounded ground: the name of a key, the label of an input source, a tag.
class Plate final : public QWidget {
  public:
    enum class Kind {
        keyCap,      ///< padded 10 and 4; leaves out the middle of its text when there is no room
        sourceLabel, ///< 28 by 22
        tag,         ///< a small word in its tone on a ground of the same
    };

    Plate(const QString& text, Kind kind, Tone tone = Tone::primary, QWidget* parent = nullptr);

    QString text() const { return text_->text(); }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Kind kind_;
    Tone tone_;
    Text* text_;
};

/// A symbol and a text that breaks its lines, side by side.
QWidget* messageLine(const QString& symbol, const QString& text, Tone symbolTone,
                     Tone textTone = Tone::primary, TextStyle style = TextStyle::callout);

/// A message on an orange ground over the whole width, with more beneath it.
QWidget* banner(const QString& symbol, const QString& text, QWidget* more = nullptr);

/// Deletes everything in the layout, widgets and layouts beneath it included.
void clear(QLayout* layout);

} // namespace hopsel::design
