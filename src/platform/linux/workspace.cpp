#include "platform/workspace.h"

#include <filesystem>
#include <system_error>

#include <QDesktopServices>
#include <QString>
#include <QUrl>

#include "platform/bundle.h"

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

} // namespace

std::optional<std::string> workspace::sensorAccessPage() {
    const auto page = bundle::resource("motion-sensor", "html");
    if (!page) return std::nullopt;
    const QString file = QString::fromStdString(readableByBrowsers(*page).string());
    return QUrl::fromLocalFile(file).toEncoded().toStdString();
}

void workspace::openURL(const std::string& url) {
    QDesktopServices::openUrl(QUrl::fromEncoded(QByteArray::fromStdString(url)));
}

} // namespace quiverly
