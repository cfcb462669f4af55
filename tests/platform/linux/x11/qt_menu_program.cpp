// A program with a menu bar and a text field, which says what is typed into the field.
#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <cstdio>

namespace {

void tell(const QString& line) {
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    window.menuBar()->addMenu("&File")->addAction("&Quit");
    auto* field = new QLineEdit;
    window.setCentralWidget(field);
    QObject::connect(field, &QLineEdit::textChanged, [](const QString& text) { tell("text " + text); });
    field->setFocus();
    window.show();
    return QApplication::exec();
}
