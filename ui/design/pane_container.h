// The frame that all panes of the Settings window share: a title, a subtitle, the contents, and a scroll bar
// when they do not fit.
#pragma once

#include <QScrollArea>
#include <QVBoxLayout>

namespace hopsel::design {

class PaneContainer : public QScrollArea {
  public:
    explicit PaneContainer(const QString& title, const QString& subtitle = {}, QWidget* parent = nullptr);

    /// The contents go here, top to bottom.
    QVBoxLayout* content() const { return content_; }

  private:
    QVBoxLayout* content_;
};

} // namespace hopsel::design
