#include "app/DesktopSettings.h"

#include <optional>
#include <utility>

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QMap>
#include <QStringList>
#include <QTimer>

namespace quiverly {

namespace {

constexpr int patience = 100;          // milliseconds
constexpr int longestAnswer = 120'000; // milliseconds; of a portal that has yet to start

constexpr char service[] = "org.freedesktop.portal.Desktop";
constexpr char path[] = "/org/freedesktop/portal/desktop";
constexpr char interface[] = "org.freedesktop.portal.Settings";

constexpr char appearance[] = "org.freedesktop.appearance";
constexpr char desktopInterface[] = "org.gnome.desktop.interface";

std::optional<unsigned> number(const QVariant& value) {
    if (value.typeId() != QMetaType::UInt) return std::nullopt;
    return value.toUInt();
}

std::optional<bool> darkness(unsigned colorScheme) {
    if (colorScheme == 1) return true;
    if (colorScheme == 2) return false;
    return std::nullopt; // no preference
}

} // namespace

DesktopSettings::DesktopSettings(std::function<void()> onKnown) : onKnown(std::move(onKnown)) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        finish();
        return;
    }
    // From any sender: for a named one the toolkit would wait until the bus has told who that is.
    bus.connect({}, path, interface, "SettingChanged", this, SLOT(change(QDBusMessage)));
    ask();
    QTimer::singleShot(patience, this, &DesktopSettings::finish);
}

void DesktopSettings::ask() {
    QDBusMessage query = QDBusMessage::createMethodCall(service, path, interface, "ReadAll");
    query << QStringList{appearance, desktopInterface};
    const QDBusPendingCall call = QDBusConnection::sessionBus().asyncCall(query, longestAnswer);
    auto* const watcher = new QDBusPendingCallWatcher(call, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        read(watcher->reply());
        finish();
    });
}

void DesktopSettings::read(const QDBusMessage& answer) {
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != "a{sa{sv}}") return;
    QMap<QString, QVariantMap> groups;
    answer.arguments().constFirst().value<QDBusArgument>() >> groups;
    for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
        for (auto setting = group->cbegin(); setting != group->cend(); ++setting) {
            apply(group.key(), setting.key(), setting.value());
        }
    }
    tellTheme();
}

void DesktopSettings::change(const QDBusMessage& signal) {
    if (signal.signature() != "ssv") return;
    const QVariantList arguments = signal.arguments();
    apply(arguments[0].toString(), arguments[1].toString(), arguments[2].value<QDBusVariant>().variant());
    tellTheme();
}

// Ignores a value of the wrong kind.
void DesktopSettings::apply(const QString& group, const QString& key, const QVariant& value) {
    const auto asNumber = number(value);
    if (group == appearance && asNumber) {
        if (key == "color-scheme") preferences.dark = darkness(*asNumber);
        if (key == "contrast") preferences.highContrast = *asNumber == 1;
        if (key == "reduced-motion") motionIsUnwanted = *asNumber == 1;
    }
    const bool isSwitch = value.typeId() == QMetaType::Bool;
    if (group == desktopInterface && key == "enable-animations" && isSwitch) animationsAreOff = !value.toBool();
}

void DesktopSettings::tellTheme() {
    preferences.reducedMotion = motionIsUnwanted || animationsAreOff;
    Theme::current().prefer(preferences);
}

void DesktopSettings::finish() {
    if (const auto call = std::exchange(onKnown, nullptr)) call();
}

} // namespace quiverly
