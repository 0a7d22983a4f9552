#include "platform/workspace.h"

#include <QDesktopServices>
#include <QString>
#include <QUrl>

#include "platform/bundle.h"

namespace quiverly {

std::optional<std::string> workspace::sensorAccessPage() {
    const auto page = bundle::resource("motion-sensor", "html");
    if (!page) return std::nullopt;
    return QUrl::fromLocalFile(QString::fromStdString(page->string())).toEncoded().toStdString();
}

void workspace::openURL(const std::string& url) {
    QDesktopServices::openUrl(QUrl::fromEncoded(QByteArray::fromStdString(url)));
}

} // namespace quiverly
