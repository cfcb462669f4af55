#include "platform/linux/desktop/report_delivery.h"

#include "platform/linux/bus/bus_call.h"
#include "platform/linux/desktop/program_launcher.h"
#include "platform/posix/posix_file_storage.h"

#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QStandardPaths>
#include <QUrl>
#include <system_error>

namespace hopsel {

namespace {

QString folderToStartIn() {
    const QString downloads = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    return QFileInfo(downloads).isDir() ? downloads : QDir::homePath();
}

/// Nothing when the user cancelled.
QString askForFile(const QString& suggestedName) {
    QFileDialog dialog;
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setNameFilter("*.txt");
    dialog.setDefaultSuffix("txt");
    dialog.setDirectory(folderToStartIn());
    dialog.selectFile(suggestedName);
    if (dialog.exec() != QDialog::Accepted) return {};
    return dialog.selectedFiles().value(0);
}

} // namespace

DesktopReportDelivery::DesktopReportDelivery(std::shared_ptr<BusLink> session, Log& log)
    : session_(std::move(session)), log_(log) {}

std::optional<std::filesystem::path> DesktopReportDelivery::saveFile(const std::string& suggestedName,
                                                                     const std::string& contents) {
    const QString name = askForFile(QString::fromStdString(suggestedName));
    if (name.isEmpty()) return std::nullopt;
    std::filesystem::path file = QFile::encodeName(name).toStdString();
    try {
        PosixFileStorage({}).writeAtomically(file, contents);
    } catch (const std::system_error& error) {
        log_.write(Log::Level::error, "Report", std::string("not saved: ") + error.what());
        return std::nullopt;
    }
    reveal(file);
    return file;
}

void DesktopReportDelivery::reveal(const std::filesystem::path& file) {
    const QString folder = QString::fromStdString(file.parent_path().string());
    if (!session_->isConnected()) return openFolder(folder);
    const QUrl address = QUrl::fromLocalFile(QString::fromStdString(file.string()));
    const QString fileManager = "org.freedesktop.FileManager1";
    QDBusMessage call =
        bus_call::method({fileManager, "/org/freedesktop/FileManager1"}, fileManager, "ShowItems",
                         {QStringList{address.toString(QUrl::FullyEncoded)}, QString()});
    call.setAutoStartService(true);
    constexpr std::chrono::seconds patience(3); // a folder that opens much later would only startle
    session_->call(
        call, &context_,
        [this, folder](const QDBusMessage& reply) {
            if (reply.type() == QDBusMessage::ErrorMessage) openFolder(folder);
        },
        patience);
}

void DesktopReportDelivery::openFolder(const QString& folder) {
    if (!openWithDesktop(folder))
        log_.write(Log::Level::info, "Report", "no file manager to show the saved report in");
}

void DesktopReportDelivery::copyToClipboard(const std::string& text) {
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

void DesktopReportDelivery::openMail(const std::string& address) {
    if (address.rfind("mailto:", 0) != 0) return;
    if (!openWithDesktop(QString::fromStdString(address)))
        log_.write(Log::Level::error, "Report", "no program to write a mail with");
}

} // namespace hopsel
