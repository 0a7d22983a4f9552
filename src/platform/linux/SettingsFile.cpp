#include "platform/linux/SettingsFile.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <filesystem>
#include <optional>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStandardPaths>

#include "sockets/FileDescriptor.h"

namespace quiverly {

namespace {

using Failure = tl::unexpected<std::error_code>;

constexpr qint64 mostBytes = 1 << 20; // far more than any settings of this program

Failure systemError() {
    return Failure(std::error_code(errno, std::generic_category()));
}

Failure inputOutputError() {
    return Failure(std::make_error_code(std::errc::io_error));
}

// The object in the file, an empty one when the file is blank; nothing when it holds anything else.
std::optional<QJsonObject> parse(QIODevice& file) {
    if (file.size() > mostBytes) return std::nullopt;
    const QByteArray content = file.readAll();
    if (content.trimmed().isEmpty()) return QJsonObject();
    const QJsonDocument document = QJsonDocument::fromJson(content);
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

// As parse(), with an empty object when there is no file. Opens files only: opening a pipe might never end.
tl::expected<std::optional<QJsonObject>, std::error_code> load(const QString& name) {
    const QFileInfo info(name);
    if (!info.exists()) return QJsonObject();
    QFile file(name);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) return inputOutputError();
    return parse(file);
}

bool setAside(const QString& name) {
    const QString target = QFileInfo(name).canonicalFilePath(); // where a link leads: that is what will be replaced
    const QString aside = target + ".unreadable";
    QString unused = aside;
    for (int number = 2; QFileInfo::exists(unused); ++number) unused = aside + '.' + QString::number(number);
    return QFile::rename(target, unused);
}

void closeToOthers(const QString& folder) {
    using std::filesystem::perms;
    std::error_code notOurs;
    std::filesystem::permissions(folder.toStdString(), perms::group_all | perms::others_all,
                                 std::filesystem::perm_options::remove, notOurs);
}

} // namespace

QString SettingsFile::nameOfTheUsers() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/quiverly/settings.json";
}

QJsonObject SettingsFile::read() const {
    return load(name).value_or(std::nullopt).value_or(QJsonObject());
}

tl::expected<void, std::error_code> SettingsFile::store(const QJsonObject& changes) const {
    const QString folder = QFileInfo(name).path();
    QDir().mkpath(folder);
    const FileDescriptor lock(::open(QFile::encodeName(folder), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!lock || ::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) return systemError();

    const auto found = load(name);
    if (!found) return Failure(found.error());
    QJsonObject settings = found->value_or(QJsonObject());
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        settings.insert(change.key(), change.value());
    }
    if (*found == settings) return {};

    closeToOthers(folder);
    QSaveFile file(name);
    const QByteArray content = QJsonDocument(settings).toJson();
    const bool isStored =
        file.open(QIODevice::WriteOnly) && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
        file.write(content) == content.size() && file.flush() && (*found || setAside(name)) && file.commit();
    if (!isStored) return inputOutputError();
    return {};
}

} // namespace quiverly
