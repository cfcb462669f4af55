// The symbols of menus and windows: one-colour drawings of this project, in any colour and at any size.
#pragma once

#include "ui/design/colors.h"

#include <QIcon>
#include <QPixmap>
#include <QString>
#include <QWidget>

namespace hopsel::design {

/// `name`: "keyboard", "pause.circle" and so on, as the files under symbols/ are named. `size` in points.
QPixmap symbolPixmap(const QString& name, QSize size, const QColor& color, qreal devicePixelRatio);

/// A symbol beside a text. It says nothing to a screen reader; the text does.
class Symbol final : public QWidget {
  public:
    Symbol(QString name, int points, Tone tone, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QString name_;
    int points_;
    Tone tone_;
};

/// A small filled circle that shows a state by its colour. It too leaves the words to the text beside it.
class Dot final : public QWidget {
  public:
    explicit Dot(Tone tone = Tone::secondary, QWidget* parent = nullptr);

    Tone tone() const { return tone_; }
    void setTone(Tone tone);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Tone tone_;
};

/// The program's own, for its windows and for the page about it.
QIcon applicationIcon();

/// An icon in its own colours, as large as asked for whatever the size of the text.
class Picture final : public QWidget {
  public:
    Picture(const QIcon& icon, int points, QWidget* parent = nullptr);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QIcon icon_;
};

} // namespace hopsel::design
