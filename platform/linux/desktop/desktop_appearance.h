// Light or dark, as the desktop has it, also when that changes while we run.
//
// Made by start-up after the application object; asks the desktop portal, without waiting for it. A session
// without a portal keeps the appearance that the toolkit found at the start.
#pragma once

#include "ui/design/colors.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <functional>

namespace hopsel {

class DesktopAppearance final : public QObject {
    Q_OBJECT

  public:
    explicit DesktopAppearance(const QDBusConnection& bus);

    /// Reports what is known at once, and every change.
    void start();

    std::function<void(design::Appearance)> onChange;

  private:
    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
    void ask();
    void take(const QVariant& value);
    void report(design::Appearance appearance);

    QDBusConnection bus_;
    design::Appearance fallback_;
    std::optional<design::Appearance> reported_;
};

} // namespace hopsel
