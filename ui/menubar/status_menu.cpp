#include "ui/menubar/status_menu.h"

#include "core/base/overloaded.h"
#include "model/texts/l10n.h"
#include "ui/design/colors.h"
#include "ui/design/text.h"
#include "ui/menubar/menu_label.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOptionMenuItem>
#include <QWidgetAction>
#include <algorithm>

namespace hopsel {

namespace {

using design::Tone;

/// No mnemonics, no column of shortcuts.
QString itemText(const std::string& text) {
    return StatusMenu::plainText(text).replace(u'&', QLatin1String("&&"));
}

/// Seen on light and on dark panels alike.
QColor dotColor(MenuStatusLevel level) {
    switch (level) {
    case MenuStatusLevel::ok: return {0x2D, 0xA4, 0x4E};
    case MenuStatusLevel::neutral: return {0x8A, 0x8A, 0x94};
    case MenuStatusLevel::problem: return {0xE0, 0x3E, 0x36};
    }
    return {};
}

QIcon dot(const QColor& color) {
    QIcon icon;
    for (const int pixels : {16, 32}) {
        QPixmap pixmap(pixels, pixels);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawEllipse(QRectF(pixmap.rect()).center(), pixels * 0.3, pixels * 0.3);
        painter.end();
        icon.addPixmap(pixmap, QIcon::Normal);
        // The line cannot be clicked; its colour is not to fade because of that.
        icon.addPixmap(pixmap, QIcon::Disabled);
    }
    return icon;
}

Tone textTone(const MenuItemSpec& spec) {
    if (std::holds_alternative<menu_item::Header>(spec)) return Tone::accent;
    const auto* status = std::get_if<menu_item::Status>(&spec);
    if (status == nullptr || status->level == MenuStatusLevel::neutral) return Tone::secondary;
    return status->level == MenuStatusLevel::ok ? Tone::positive : Tone::problem;
}

std::optional<MenuAction> actionOf(const MenuItemSpec& spec) {
    if (const auto* toggle = std::get_if<menu_item::Toggle>(&spec)) return toggle->action;
    if (const auto* action = std::get_if<menu_item::Action>(&spec)) return action->action;
    return std::nullopt;
}

/// A menu is read at a glance: of very many rules only the first are in it.
std::vector<MenuItemSpec> withoutTooManyLines(std::vector<MenuItemSpec> specs) {
    constexpr std::ptrdiff_t most = 10;
    const auto isInfo = [](const MenuItemSpec& spec) {
        return std::holds_alternative<menu_item::Info>(spec);
    };
    auto first = std::find_if(specs.begin(), specs.end(), isInfo);
    while (first != specs.end()) {
        const auto end = std::find_if_not(first, specs.end(), isInfo);
        if (const auto count = end - first; count > most) {
            const auto kept = first + most - 1;
            *kept = menu_item::Info{l10n::t(l10n::Key::menuMoreRules, {std::to_string(count - most + 1)})};
            specs.erase(kept + 1, end);
            break;
        }
        first = std::find_if(end, specs.end(), isInfo);
    }
    return specs;
}

bool haveSameShape(const std::vector<MenuItemSpec>& a, const std::vector<MenuItemSpec>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& one, const auto& other) {
        return one.index() == other.index() && actionOf(one) == actionOf(other);
    });
}

void fill(const MenuItemSpec& spec, QAction& item) {
    std::visit(Overloaded{
                   [&](const menu_item::Toggle& toggle) {
                       item.setText(itemText(toggle.title));
                       item.setChecked(toggle.isOn);
                   },
                   [&](const menu_item::Action& action) { item.setText(itemText(action.title)); },
                   [&](const menu_item::Header& header) { item.setText(itemText(header.text)); },
                   [&](const menu_item::Info& info) { item.setText(itemText(info.text)); },
                   [&](const menu_item::Status& status) {
                       item.setText(itemText(status.text));
                       item.setIcon(dot(dotColor(status.level)));
                   },
                   [](const menu_item::Separator&) {},
               },
               spec);
    if (const auto* owner = qobject_cast<QWidgetAction*>(&item))
        static_cast<MenuLabel*>(owner->defaultWidget())->setLine(spec, item.text().replace("&&", "&"));
}

} // namespace

QString StatusMenu::plainText(const std::string& text) {
    constexpr qsizetype longest = 120;
    QString line = QString::fromStdString(text);
    std::replace_if(
        line.begin(), line.end(), [](QChar c) { return c.category() == QChar::Other_Control; }, u' ');
    if (line.size() > longest) line = line.left(longest - 1) + QChar(u'…');
    return line;
}

std::size_t StatusMenu::placeOfSources(const std::vector<MenuItemSpec>& lines) {
    const auto current = std::find_if(lines.begin(), lines.end(), [](const MenuItemSpec& spec) {
        return std::holds_alternative<menu_item::Info>(spec);
    });
    return static_cast<std::size_t>(current - lines.begin());
}

StatusMenu::StatusMenu(Read read, OnAction onAction, Sources sources)
    : read_(std::move(read)), onAction_(std::move(onAction)), sources_(std::move(sources)) {
    setAccessibleName(QStringLiteral("Hopsel"));
    connect(this, &QMenu::aboutToShow, this, &StatusMenu::refresh);
    refresh();
}

void StatusMenu::refresh() {
    std::vector<MenuItemSpec> specs = withoutTooManyLines(read_());
    const bool isNew = !haveSameShape(specs, shown_);
    if (isNew) rebuild(specs);
    for (std::size_t i = 0; i < specs.size(); ++i) {
        QAction& item = *items_[static_cast<qsizetype>(i)];
        // A click has turned the check mark by itself, whatever came of it.
        const auto* toggle = std::get_if<menu_item::Toggle>(&specs[i]);
        if (isNew || specs[i] != shown_[i] || (toggle != nullptr && item.isChecked() != toggle->isOn))
            fill(specs[i], item);
    }
    shown_ = std::move(specs);
    refreshSources();
}

void StatusMenu::showLabels() {
    hasLabels_ = true;
    shown_.clear();
    refresh();
}

QAction* StatusMenu::addItem(const MenuItemSpec& spec) {
    if (!hasLabels_ || actionOf(spec) || std::holds_alternative<menu_item::Separator>(spec))
        return addAction(QString());
    auto* item = new QWidgetAction(this);
    item->setDefaultWidget(new MenuLabel(spec));
    addAction(item);
    return item;
}

void StatusMenu::rebuild(const std::vector<MenuItemSpec>& specs) {
    clear();
    items_.clear();
    sourceMenu_.reset();
    shownSources_.clear();
    for (const MenuItemSpec& spec : specs) {
        QAction* item = addItem(spec);
        items_.push_back(item);
        item->setMenuRole(QAction::NoRole); // nothing moves to an application menu because of its words
        item->setSeparator(std::holds_alternative<menu_item::Separator>(spec));
        item->setCheckable(std::holds_alternative<menu_item::Toggle>(spec));
        if (const auto action = actionOf(spec))
            connect(item, &QAction::triggered, this, [this, what = *action] { perform(what); });
        else
            item->setEnabled(false);
        QFont font = item->font();
        if (std::holds_alternative<menu_item::Header>(spec)) {
            font.setPixelSize(design::scaled(11));
            font.setWeight(QFont::DemiBold);
        }
        if (std::holds_alternative<menu_item::Status>(spec)) font.setWeight(QFont::Medium);
        item->setFont(font);
    }
}

void StatusMenu::refreshSources() {
    std::vector<MenuSource> sources = sources_.read();
    const bool isSame =
        std::equal(sources.begin(), sources.end(), shownSources_.begin(), shownSources_.end(),
                   [](const MenuSource& one, const MenuSource& other) { return one.id == other.id; });
    shownSources_ = std::move(sources);
    if (!isSame) rebuildSources();
    if (!sourceMenu_) return;
    const QList<QAction*> choices = sourceMenu_->actions();
    for (std::size_t i = 0; i < shownSources_.size(); ++i) {
        QAction& choice = *choices[static_cast<qsizetype>(i)];
        choice.setText(itemText(shownSources_[i].name));
        choice.setChecked(shownSources_[i].isCurrent); // a click has turned it by itself
    }
}

void StatusMenu::rebuildSources() {
    sourceMenu_.reset();
    const std::size_t place = placeOfSources(shown_);
    if (shownSources_.empty() || place == shown_.size()) return;
    sourceMenu_ = std::make_unique<QMenu>(QString::fromStdString(l10n::t(l10n::Key::menuSources)));
    for (const MenuSource& source : shownSources_) {
        QAction* choice = sourceMenu_->addAction(QString());
        choice->setMenuRole(QAction::NoRole);
        choice->setCheckable(true);
        connect(choice, &QAction::triggered, this, [this, id = source.id] { choose(id); });
    }
    insertMenu(items_.value(static_cast<qsizetype>(place) + 1), sourceMenu_.get());
}

void StatusMenu::refreshLater() {
    QMetaObject::invokeMethod(this, &StatusMenu::refresh, Qt::QueuedConnection);
}

void StatusMenu::perform(MenuAction action) {
    refreshLater(); // ahead of the action, which may end this menu
    onAction_(action);
}

void StatusMenu::choose(const std::string& id) {
    refreshLater();
    sources_.select(id);
}

void StatusMenu::initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const {
    QMenu::initStyleOption(option, action);
    const qsizetype index = items_.indexOf(action);
    if (index < 0 || static_cast<std::size_t>(index) >= shown_.size()) return;
    const MenuItemSpec& spec = shown_[static_cast<std::size_t>(index)];
    if (actionOf(spec)) return;
    // What only informs is not greyed out like something that could be clicked at another time.
    const QColor color = design::color(textTone(spec), QApplication::palette());
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        option->palette.setColor(QPalette::Disabled, role, color);
}

} // namespace hopsel
