// A HID sensor hub with one accelerometer, for the real driver of sensor hubs: in a virtual machine, over /dev/uhid.
//
//   sensor-hub [BUS VENDOR PRODUCT]    hexadecimal
//
// It obeys the lines that come in on standard input: a number is from now on the acceleration along z, in thousandths
// of g; "mute" and "speak" make it answer nothing, and answer again. At the end of its input it is unplugged.

#include <fcntl.h>
#include <linux/uhid.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>

namespace {

// The report descriptor: one collection, an accelerometer in units of 0.001 g. Its feature report has the state of
// reporting, the state of power, the interval and the sensitivity; its input report the three axes.
constexpr std::uint8_t descriptor[] = {
    0x05, 0x20, 0x09, 0x01, 0xA1, 0x01,                                     // sensors: a collection
    0x85, 0x01, 0x09, 0x73, 0xA1, 0x00,                                     // report 1: a 3D accelerometer
    0x0A, 0x16, 0x03, 0x15, 0x00, 0x25, 0x05, 0x75, 0x08, 0x95, 0x01,       // state of reporting, one of
    0xA1, 0x02, 0x0A, 0x40, 0x08, 0x0A, 0x41, 0x08, 0x0A, 0x42, 0x08,       //
    0x0A, 0x43, 0x08, 0x0A, 0x44, 0x08, 0x0A, 0x45, 0x08, 0xB1, 0x00, 0xC0, //
    0x0A, 0x19, 0x03, 0x15, 0x00, 0x25, 0x05, 0x75, 0x08, 0x95, 0x01,       // state of power, one of
    0xA1, 0x02, 0x0A, 0x50, 0x08, 0x0A, 0x51, 0x08, 0x0A, 0x52, 0x08,       //
    0x0A, 0x53, 0x08, 0x0A, 0x54, 0x08, 0x0A, 0x55, 0x08, 0xB1, 0x00, 0xC0, //
    0x0A, 0x0E, 0x03, 0x15, 0x00, 0x27, 0xFF, 0xFF, 0xFF, 0x7F, 0x75, 0x20, // interval in ms, 32 bits
    0x95, 0x01, 0x55, 0x00, 0xB1, 0x02,                                     //
    0x0A, 0x52, 0x14, 0x15, 0x00, 0x26, 0xFF, 0x7F, 0x75, 0x10, 0x95, 0x01, // sensitivity, 16 bits
    0x55, 0x0D, 0xB1, 0x02,                                                 //
    0x0A, 0x53, 0x04, 0x16, 0x01, 0x80, 0x26, 0xFF, 0x7F, 0x75, 0x10,       // x, 16 bits, in 10^-3 g
    0x95, 0x01, 0x55, 0x0D, 0x66, 0x1A, 0x00, 0x81, 0x02,                   //
    0x0A, 0x54, 0x04, 0x16, 0x01, 0x80, 0x26, 0xFF, 0x7F, 0x75, 0x10,       // y
    0x95, 0x01, 0x55, 0x0D, 0x66, 0x1A, 0x00, 0x81, 0x02,                   //
    0x0A, 0x55, 0x04, 0x16, 0x01, 0x80, 0x26, 0xFF, 0x7F, 0x75, 0x10,       // z
    0x95, 0x01, 0x55, 0x0D, 0x66, 0x1A, 0x00, 0x81, 0x02,                   //
    0xC0, 0xC0,
};

class SensorHub {
public:
    SensorHub(std::uint32_t bus, std::uint32_t vendor, std::uint32_t product) {
        uhid_event create = {};
        create.type = UHID_CREATE2;
        std::strcpy(reinterpret_cast<char*>(create.u.create2.name), "Simulated sensor hub");
        std::ranges::copy(descriptor, create.u.create2.rd_data);
        create.u.create2.rd_size = std::size(descriptor);
        create.u.create2.bus = static_cast<std::uint16_t>(bus);
        create.u.create2.vendor = vendor;
        create.u.create2.product = product;
        send(create);
    }

    void obey(const std::string& line) {
        if (line == "mute" || line == "speak") {
            isMute = line == "mute";
        } else {
            z = static_cast<std::int16_t>(std::atoi(line.c_str()));
        }
    }

    // Handles the next request of the driver's.
    void answer() {
        uhid_event request = {};
        if (::read(device, &request, sizeof request) <= 0 || isMute) return;
        uhid_event reply = {};
        if (request.type == UHID_GET_REPORT) {
            reply.type = UHID_GET_REPORT_REPLY;
            reply.u.get_report_reply.id = request.u.get_report.id;
            reply.u.get_report_reply.size = fill(reply.u.get_report_reply.data, request.u.get_report.rtype);
        } else if (request.type == UHID_SET_REPORT) {
            reply.type = UHID_SET_REPORT_REPLY;
            reply.u.set_report_reply.id = request.u.set_report.id;
            const std::size_t size = std::min<std::size_t>(request.u.set_report.size, feature.size());
            std::copy_n(request.u.set_report.data, size, feature.begin());
        } else {
            return;
        }
        send(reply);
    }

    int descriptorToPoll() const { return device; }

private:
    std::uint16_t fill(std::uint8_t* data, std::uint8_t kind) const {
        if (kind != UHID_INPUT_REPORT) {
            std::ranges::copy(feature, data);
            return static_cast<std::uint16_t>(feature.size());
        }
        const std::array<std::int16_t, 3> axes = {0, 0, z};
        data[0] = 1;
        std::memcpy(data + 1, axes.data(), sizeof axes);
        return 1 + sizeof axes;
    }

    void send(const uhid_event& event) const {
        if (::write(device, &event, sizeof event) != sizeof event) {
            std::perror("sensor-hub: /dev/uhid");
            std::exit(1);
        }
    }

    const int device = ::open("/dev/uhid", O_RDWR | O_CLOEXEC);
    std::array<std::uint8_t, 9> feature = {1, 0, 5, 100}; // report 1, no reporting, off, every 100 ms
    std::int16_t z = 1000;
    bool isMute = false;
};

std::uint32_t number(char** arguments, int count, int index, std::uint32_t otherwise) {
    return index < count ? static_cast<std::uint32_t>(std::strtoul(arguments[index], nullptr, 16)) : otherwise;
}

} // namespace

int main(int count, char** arguments) {
    SensorHub hub(number(arguments, count, 1, 0x18), number(arguments, count, 2, 0x8087),
                  number(arguments, count, 3, 0x0AC2));
    std::string line;
    for (;;) {
        std::array<pollfd, 2> inputs = {{{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0},
                                         {.fd = hub.descriptorToPoll(), .events = POLLIN, .revents = 0}}};
        if (::poll(inputs.data(), inputs.size(), -1) <= 0) continue;
        if (inputs[1].revents != 0) hub.answer();
        if (inputs[0].revents == 0) continue;
        char byte = 0;
        if (::read(STDIN_FILENO, &byte, 1) != 1) return 0;
        if (byte == '\n') {
            hub.obey(line);
            line.clear();
        } else {
            line += byte;
        }
    }
}
