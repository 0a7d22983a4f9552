#include "app/activation.h"

#include <QGuiApplication>

#include "ui/BonkoApp.h"

namespace quiverly {

QByteArray activationToken() {
    const QByteArray token = qgetenv("XDG_ACTIVATION_TOKEN");
    return token.isEmpty() ? qgetenv("DESKTOP_STARTUP_ID") : token;
}

void bringToFront(BonkoApp& app, const QByteArray& token) {
    const bool isWayland = QGuiApplication::platformName().startsWith("wayland");
    if (isWayland && !token.isEmpty()) qputenv("XDG_ACTIVATION_TOKEN", token); // where the toolkit looks for it
    app.show();
}

} // namespace quiverly
