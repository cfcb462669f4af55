#include "platform/linux/desktop/way_out_message.h"

#include "core/base/product.h"
#include "ui/design/texts.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>
#include <utility>

namespace hopsel {

std::unique_ptr<QWidget> wayOutMessage(const WayOut& way, std::function<void()> onHelp) {
    using l10n::Key;
    const QString command = QString::fromStdString(way.command);
    auto message = std::make_unique<QMessageBox>(
        QMessageBox::Warning, QString::fromUtf8(product::name.data(), qsizetype(product::name.size())),
        QString::fromStdString(way.what));
    message->setInformativeText(text(Key::wayOutCommand) + "\n\n" + command);
    message->setModal(false);
    message->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    message->setAttribute(Qt::WA_QuitOnClose, false);
    const auto* copy = message->addButton(text(Key::wayOutCopy), QMessageBox::ActionRole);
    const auto* help = message->addButton(text(Key::wayOutHelp), QMessageBox::HelpRole);
    auto* close = message->addButton(text(Key::wayOutClose), QMessageBox::RejectRole);
    message->setDefaultButton(close);
    message->setEscapeButton(close);
    QObject::connect(copy, &QPushButton::clicked, message.get(),
                     [command] { QGuiApplication::clipboard()->setText(command); });
    QObject::connect(help, &QPushButton::clicked, message.get(), [onHelp = std::move(onHelp)] { onHelp(); });
    message->show();
    return message;
}

} // namespace hopsel
