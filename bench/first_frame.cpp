// How long a program takes from its start to its first frame.
//
//     bench-first-frame COMMAND [ARGUMENT...]
//
// Starts the command on a display without a window manager, and waits until one of its windows shows more than one
// colour along its middle lines. Prints the milliseconds since the start and the number of the process, ends the
// command with its own input, and waits for its end.

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience{30};
constexpr std::uint16_t leastSide = 60; // of a window, in pixels

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};

class Screen {
public:
    Screen() : connection(xcb_connect(nullptr, nullptr)) {}
    ~Screen() { xcb_disconnect(connection); }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    bool watch() {
        if (xcb_connection_has_error(connection) != 0) return false;
        root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
        const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(connection, root, XCB_CW_EVENT_MASK, &events);
        xcb_flush(connection);
        return true;
    }

    // Looks every millisecond.
    bool waitForFrame() {
        const Clock::time_point end = Clock::now() + patience;
        while (Clock::now() < end) {
            pollfd input{.fd = xcb_get_file_descriptor(connection), .events = POLLIN, .revents = 0};
            ::poll(&input, 1, windows.empty() ? 100 : 1);
            noteWindows();
            if (std::ranges::any_of(windows, [this](xcb_window_t window) { return isPainted(window); })) return true;
        }
        return false;
    }

private:
    void noteWindows() {
        while (const std::unique_ptr<xcb_generic_event_t, Free> event{xcb_poll_for_event(connection)}) {
            if ((event->response_type & 0x7F) != XCB_MAP_NOTIFY) continue;
            const auto* mapped = static_cast<const xcb_map_notify_event_t*>(static_cast<const void*>(event.get()));
            if (mapped->override_redirect == 0) windows.push_back(mapped->window);
        }
    }

    bool isPainted(xcb_window_t window) {
        const auto request = xcb_get_geometry(connection, window);
        const std::unique_ptr<xcb_get_geometry_reply_t, Free> place(
            xcb_get_geometry_reply(connection, request, nullptr));
        if (!place || place->width < leastSide || place->height < leastSide) return false;
        return hasColours(window, 0, static_cast<std::int16_t>(place->height / 2), place->width, 1) ||
               hasColours(window, static_cast<std::int16_t>(place->width / 2), 0, 1, place->height);
    }

    bool hasColours(xcb_window_t window, std::int16_t x, std::int16_t y, std::uint16_t width, std::uint16_t height) {
        const auto request = xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, x, y, width, height, ~0U);
        const std::unique_ptr<xcb_get_image_reply_t, Free> image(xcb_get_image_reply(connection, request, nullptr));
        if (!image) return false;
        const std::span<const std::uint8_t> bytes(xcb_get_image_data(image.get()),
                                                  static_cast<std::size_t>(xcb_get_image_data_length(image.get())));
        constexpr std::size_t pixel = 4; // bytes
        return bytes.size() > pixel && !std::equal(bytes.begin() + pixel, bytes.end(), bytes.begin());
    }

    xcb_connection_t* connection;
    xcb_window_t root = 0;
    std::vector<xcb_window_t> windows; // that were mapped
};

pid_t start(char** command) {
    const pid_t process = ::fork();
    if (process == 0) {
        ::close(STDIN_FILENO);
        ::execvp(command[0], command);
        ::_exit(127);
    }
    return process;
}

void end(pid_t process) {
    constexpr int tries = 500;
    ::kill(process, SIGTERM);
    for (int count = 0; count < tries && ::waitpid(process, nullptr, WNOHANG) == 0; ++count) ::poll(nullptr, 0, 10);
    ::kill(process, SIGKILL);
}

} // namespace

int main(int, char** argv) {
    Screen screen;
    if (argv[1] == nullptr || !screen.watch()) return 1;
    const Clock::time_point began = Clock::now();
    const pid_t process = start(argv + 1);
    if (process < 0) return 1;
    const bool painted = screen.waitForFrame();
    const std::chrono::duration<double, std::milli> passed = Clock::now() - began;
    if (painted) std::printf("frame %.3f %d\n", passed.count(), process);
    std::fflush(stdout);
    std::array<char, 1> byte{};
    if (painted && ::read(STDIN_FILENO, byte.data(), byte.size()) < 0) std::perror("bench-first-frame");
    end(process);
    return painted ? 0 : 1;
}
