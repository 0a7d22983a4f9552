#include "app/activation.h"

#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>

#include <QGuiApplication>
#include <QWindow>

#include "ui/BonkoApp.h"

namespace quiverly {

namespace {

// The time, in milliseconds of the X server, at which the user did what a token of an X11 desktop stands for.
std::optional<xcb_timestamp_t> timeOf(const QByteArray& token) {
    constexpr std::string_view mark = "_TIME";
    const qsizetype at = token.lastIndexOf(mark.data());
    bool isNumber = false;
    const xcb_timestamp_t time = token.mid(at + static_cast<qsizetype>(mark.size())).toUInt(&isNumber);
    return at >= 0 && isNumber ? std::optional(time) : std::nullopt;
}

// The toolkit asks with the time of the last event that it saw, which window managers compare with what the user did
// since.
void askWindowManager(xcb_connection_t* connection, xcb_window_t window, xcb_timestamp_t time) {
    constexpr std::string_view name = "_NET_ACTIVE_WINDOW";
    const auto query = xcb_intern_atom(connection, 0, name.size(), name.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
        xcb_intern_atom_reply(connection, query, nullptr), std::free);
    if (!atom) return;
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom->atom;
    message.data.data32[0] = 1; // from an application
    message.data.data32[1] = time;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const auto mask = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): the shape of the library's call
    xcb_send_event(connection, 0, root, mask, reinterpret_cast<const char*>(&message));
    xcb_flush(connection);
}

} // namespace

QByteArray activationToken() {
    const QByteArray token = qgetenv("XDG_ACTIVATION_TOKEN");
    return token.isEmpty() ? qgetenv("DESKTOP_STARTUP_ID") : token;
}

void bringToFront(BonkoApp& app, const QByteArray& token) {
    const bool isWayland = QGuiApplication::platformName().startsWith("wayland");
    if (isWayland && !token.isEmpty()) qputenv("XDG_ACTIVATION_TOKEN", token); // where the toolkit looks for it
    app.show();
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    const auto time = timeOf(token);
    if (!x11 || !time) return;
    for (const QWindow* window : QGuiApplication::topLevelWindows()) {
        const bool isMain = window->isVisible() && window->type() == Qt::Window;
        if (isMain) askWindowManager(x11->connection(), static_cast<xcb_window_t>(window->winId()), *time);
    }
}

} // namespace quiverly
