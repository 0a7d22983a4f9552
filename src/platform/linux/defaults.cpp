#include "platform/defaults.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonValue>
#include <QSettings>
#include <QStandardPaths>
#include <QString>

#include "platform/linux/json_settings.h"

namespace quiverly {

namespace {

// None, which keeps the settings for this run only, when something that is no file is in its place: reading that might
// never end.
QString settingsFile() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    const QFileInfo file(folder + "/quiverly/settings.json");
    return file.exists() && !file.isFile() ? QString() : file.filePath();
}

// Writes changes in the next turn of the event loop, and the last ones when the application ends.
QSettings& store() {
    static QSettings settings(settingsFile(), jsonSettingsFormat());
    static const bool willSync = (qAddPostRoutine([] { settings.sync(); }), true);
    static_cast<void>(willSync);
    return settings;
}

void write(const char* key, const QJsonValue& value) {
    store().setValue(key, QVariant::fromValue(value));
}

} // namespace

std::optional<std::string> defaults::text(const char* key) {
    const auto stored = object(key);
    const std::string* text = stored ? std::get_if<std::string>(&*stored) : nullptr;
    return text ? std::optional(*text) : std::nullopt;
}

std::optional<defaults::Object> defaults::object(const char* key) {
    if (!store().contains(key)) return std::nullopt;
    const QJsonValue value = store().value(key).toJsonValue();
    if (value.isDouble()) return value.toDouble();
    if (value.isString()) return value.toString().toStdString();
    return OtherObject{};
}

void defaults::setText(const char* key, const std::string& value) {
    write(key, QString::fromStdString(value));
}

void defaults::setNumber(const char* key, double value) {
    write(key, value);
}

} // namespace quiverly
