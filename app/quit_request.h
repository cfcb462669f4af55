// Answers the system's request to quit: a log-out, the application menu, ⌘Q.
//
// The toolkit would close the windows one by one, and a window that is closed has its own consequences: the
// introduction counts as done. Ending the loop ends the program in order. Installed by `main` on the
// application, for as long as that lives.
#pragma once

#include <QCoreApplication>
#include <QEvent>

namespace hopsel {

class QuitRequest final : public QObject {
  public:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::Quit) return false;
        event->accept();
        QCoreApplication::exit();
        return true;
    }
};

} // namespace hopsel
