#include "platform/linux/json_settings.h"

#include <optional>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

namespace quiverly {

namespace {

constexpr qint64 mostBytes = 1 << 20; // far more than any settings of this program

// The object in the file, an empty one when the file is blank; nothing when it holds anything else.
std::optional<QJsonObject> parse(QIODevice& file) {
    if (file.size() > mostBytes) return std::nullopt;
    const QByteArray content = file.readAll();
    if (content.trimmed().isEmpty()) return QJsonObject();
    const QJsonDocument document = QJsonDocument::fromJson(content);
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

QString unusedName(const QString& name) {
    QString candidate = name;
    for (int number = 2; QFileInfo::exists(candidate); ++number) candidate = name + '.' + QString::number(number);
    return candidate;
}

// Whether nothing is lost when the file of that name is replaced.
bool makeReplaceable(const QString& name) {
    QFile file(QFileInfo(name).canonicalFilePath()); // where a link leads: that is what will be replaced
    if (!file.exists()) return true;
    if (!file.open(QIODevice::ReadOnly)) return false;
    if (parse(file)) return true;
    return file.rename(unusedName(file.fileName() + ".unreadable"));
}

bool read(QIODevice& file, QSettings::SettingsMap& settings) {
    const auto object = parse(file);
    if (!object) return false;
    for (auto entry = object->begin(); entry != object->end(); ++entry) {
        settings.insert(entry.key(), QVariant::fromValue(QJsonValue(entry.value())));
    }
    return true;
}

bool write(QIODevice& file, const QSettings::SettingsMap& settings) {
    QJsonObject object;
    for (auto entry = settings.begin(); entry != settings.end(); ++entry) {
        object.insert(entry.key(), QJsonValue::fromVariant(entry.value()));
    }
    const QByteArray content = QJsonDocument(object).toJson();
    return file.write(content) == content.size() && makeReplaceable(static_cast<QFileDevice&>(file).fileName());
}

} // namespace

QSettings::Format jsonSettingsFormat() {
    static const QSettings::Format format = QSettings::registerFormat("json", read, write);
    return format;
}

} // namespace quiverly
