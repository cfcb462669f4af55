// The same as gtk_password_program.py, made with Qt Widgets.
#include <QApplication>
#include <QLineEdit>
#include <QSocketNotifier>
#include <QVBoxLayout>
#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

int main(int argc, char** argv) {
    sigset_t wanted;
    sigemptyset(&wanted);
    sigaddset(&wanted, SIGUSR1);
    sigaddset(&wanted, SIGUSR2);
    sigprocmask(SIG_BLOCK, &wanted, nullptr);
    const int descriptor = signalfd(-1, &wanted, 0);

    const QApplication application(argc, argv);
    QWidget window;
    auto* column = new QVBoxLayout(&window);
    auto* password = new QLineEdit;
    auto* plain = new QLineEdit;
    password->setEchoMode(QLineEdit::Password);
    column->addWidget(password);
    column->addWidget(plain);
    QSocketNotifier notifier(descriptor, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &window, [&] {
        signalfd_siginfo info{};
        if (read(descriptor, &info, sizeof info) == sizeof info)
            (info.ssi_signo == SIGUSR1 ? password : plain)->setFocus();
    });
    window.show();
    return QApplication::exec();
}
