#include "platform/linux/tray/gnome_indicator.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QList>
#include <algorithm>
#include <array>
#include <utility>

namespace hopsel {

namespace {

constexpr qsizetype longestToken = 255;

/// As the extension calls them, in the order of the kinds.
constexpr std::array kinds{"toggle", "action",  "window",  "choice",    "header", "info",
                           "ok",     "neutral", "problem", "separator", "menu"};

QString symbolOf(const StatusItemAppearance& appearance) {
    if (appearance.symbolName == "pause.circle") return QStringLiteral("paused");
    if (appearance.symbolName == "exclamationmark.triangle") return QStringLiteral("problem");
    return QStringLiteral("keyboard");
}

/// As it goes over the bus.
struct Line {
    QString kind;
    QString text;
    bool isOn;
    QString key;
};

QDBusArgument& operator<<(QDBusArgument& out, const Line& line) {
    out.beginStructure();
    out << line.kind << line.text << line.isOn << line.key;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, Line& line) {
    in.beginStructure();
    in >> line.kind >> line.text >> line.isOn >> line.key;
    in.endStructure();
    return in; // NOLINT(bugprone-return-const-ref-from-parameter): the library's own form
}

/// It goes into the environment, from where programs that we start have it, too.
bool isToken(const QString& told) {
    return !told.isEmpty() && told.size() <= longestToken &&
           std::all_of(told.begin(), told.end(), [](QChar c) { return c > u' ' && c < u'\x7f'; });
}

} // namespace

GnomeIndicator::GnomeIndicator(std::shared_ptr<GnomeExtension> extension, StatusMenu& menu)
    : extension_(std::move(extension)), menu_(menu) {
    qDBusRegisterMetaType<Line>();
    qDBusRegisterMetaType<QList<Line>>();
    extension_->observe(&context_, [this] { extensionChanged(); });
    extension_->listen("Clicked", "ss", &context_, [this](const QDBusMessage& signal) {
        clicked(signal.arguments()[0].toString(), signal.arguments()[1].toString());
    });
}

void GnomeIndicator::show(const StatusItemAppearance& appearance) {
    wanted_.symbol = symbolOf(appearance);
    wanted_.labels.clear();
    wanted_.current = 0;
    if (const auto& badge = appearance.badge) {
        wanted_.labels.append(QString::fromStdString(badge->first));
        if (badge->second) {
            wanted_.labels.append(QString::fromStdString(*badge->second));
            wanted_.current = badge->firstIsCurrent ? 0 : 1;
        }
    }
}

void GnomeIndicator::setName(const std::string& name) {
    wanted_.name = QString::fromStdString(name);
    wanted_.lines = menu_description::lines(menu_);
    sendIfNew();
}

void GnomeIndicator::extensionChanged() {
    isSending_ = false;
    sent_.reset();
    sendIfNew();
}

void GnomeIndicator::sendIfNew() {
    if (isSending_ || sent_ == wanted_ || !extension_->can("indicator")) return;
    QList<Line> lines;
    for (const MenuLine& line : wanted_.lines)
        lines.append(
            {QLatin1String(kinds[static_cast<std::size_t>(line.kind)]), line.text, line.isOn, line.key});
    isSending_ = true;
    sent_ = wanted_;
    extension_->call(
        "Show", {wanted_.name, wanted_.symbol, wanted_.labels, wanted_.current, QVariant::fromValue(lines)},
        &context_, [this](const QDBusMessage& reply) {
            isSending_ = false;
            // Not at once, or it would be again and again: the next change is soon.
            if (reply.type() == QDBusMessage::ErrorMessage) return sent_.reset();
            sendIfNew();
        });
}

void GnomeIndicator::clicked(const QString& key, const QString& token) {
    // The toolkit takes the right to the focus from here when it activates a window.
    if (isToken(token)) qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
    if (key.isEmpty()) return menu_.perform(MenuAction::toggleEngine);
    menu_description::click(menu_, key);
}

} // namespace hopsel
