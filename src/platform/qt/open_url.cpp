#include <QDesktopServices>
#include <QUrl>

#include "platform/workspace.h"

namespace quiverly {

void workspace::openURL(const std::string& url) {
    QDesktopServices::openUrl(QUrl::fromEncoded(QByteArray::fromStdString(url)));
}

} // namespace quiverly
