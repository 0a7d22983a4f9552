#include "platform/workspace.h"

#include <filesystem>
#include <system_error>

#include <QByteArray>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>
#include <QString>
#include <QUrl>

#include "platform/bundle.h"
#include "platform/linux/SensorPage.h"
#include "platform/linux/sensors/iio/Accelerometer.h"

namespace quiverly {

namespace {

namespace fs = std::filesystem;

// The copy of a page among the system's documents, where there is one: a browser in a sandbox may read those, but not
// the data of other programs.
fs::path readableByBrowsers(const fs::path& page) {
    const fs::path copy = page.parent_path().parent_path() / "doc" / "quiverly" / page.filename();
    std::error_code unreadable;
    return fs::is_regular_file(copy, unreadable) ? copy : page;
}

// Whether the browser may be a snap, which reads none of the user's hidden folders.
bool mayBrowserBeSnap() {
    std::error_code unreadable;
    return fs::exists("/var/lib/snapd/desktop/applications", unreadable);
}

// A page that says what is wrong on this machine, in the folder of the user's that may be emptied at any time. Nothing
// where it cannot be written.
std::optional<QString> pageOfThisMachine(const fs::path& shipped) {
    QFile input(QString::fromStdString(shipped.string()));
    if (!input.open(QIODevice::ReadOnly)) return std::nullopt;
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + "/quiverly");
    if (!folder.mkpath(".")) return std::nullopt;
    QSaveFile output(folder.filePath("motion-sensor.html"));
    if (!output.open(QIODevice::WriteOnly)) return std::nullopt;
    output.write(
        QByteArray::fromStdString(sensorPage(input.readAll().toStdString(), findSensorTroubles(systemFolder()))));
    return output.commit() ? std::optional(output.fileName()) : std::nullopt;
}

} // namespace

std::optional<std::string> workspace::sensorAccessPage() {
    const auto shipped = bundle::resource("motion-sensor", "html");
    if (!shipped) return std::nullopt;
    const auto own = mayBrowserBeSnap() ? std::nullopt : pageOfThisMachine(*shipped);
    const QString page = own.value_or(QString::fromStdString(readableByBrowsers(*shipped).string()));
    return QUrl::fromLocalFile(page).toEncoded().toStdString();
}

void workspace::openURL(const std::string& url) {
    QDesktopServices::openUrl(QUrl::fromEncoded(QByteArray::fromStdString(url)));
}

} // namespace quiverly
