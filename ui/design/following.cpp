#include "ui/design/following.h"

#include <QEvent>

namespace hopsel {

namespace {

class ShowWatcher final : public QObject {
  public:
    ShowWatcher(QWidget* view, std::function<void()> look) : QObject(view), look_(std::move(look)) {
        view->installEventFilter(this);
    }
    bool eventFilter(QObject* /*view*/, QEvent* event) override {
        if (event->type() == QEvent::Show) look_();
        return false;
    }

  private:
    std::function<void()> look_;
};

} // namespace

void follow(QWidget* view, ObservableObject& object, std::function<void()> refresh) {
    refresh();
    new ShowWatcher(view, refresh);
    object.observe(view, [view, look = std::move(refresh)] {
        if (view->isVisible()) look();
    });
}

} // namespace hopsel
