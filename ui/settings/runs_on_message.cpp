#include "ui/settings/runs_on_message.h"

#include "core/base/product.h"
#include "model/texts/l10n.h"

#include <QMessageBox>
#include <QPushButton>

namespace hopsel {

namespace {

QString words(l10n::Key key) { return QString::fromStdString(l10n::t(key)); }

} // namespace

std::unique_ptr<QWidget> sayOnceThatTheProgramRunsOn(AppModel& model, std::function<void()> onQuit) {
    if (!model.takeTellingThatItRunsOn()) return nullptr;
    auto message = std::make_unique<QMessageBox>(
        QMessageBox::Information, QString::fromUtf8(product::name.data(), qsizetype(product::name.size())),
        words(l10n::Key::runsOnTitle));
    message->setInformativeText(words(l10n::Key::runsOnBody));
    message->setAttribute(Qt::WA_QuitOnClose, false);
    auto* ok = message->addButton(words(l10n::Key::runsOnOK), QMessageBox::AcceptRole);
    const auto* quit = message->addButton(words(l10n::Key::menuQuit), QMessageBox::DestructiveRole);
    message->setDefaultButton(ok);
    message->setEscapeButton(ok);
    QObject::connect(quit, &QPushButton::clicked, message.get(), [onQuit = std::move(onQuit)] { onQuit(); });
    message->show();
    return message;
}

} // namespace hopsel
