#include "platform/linux/sensors/simulated_laptop.h"

#include <cerrno>
#include <utility>

#include "platform/linux/sensors/LaptopConnection.h"

namespace quiverly::sensors {

namespace {

class LaptopDevice : public Device {
public:
    LaptopDevice(std::shared_ptr<LaptopConnection> connection, std::uint8_t service)
        : connection(std::move(connection)), service(service) {}

    int open() override { return connection ? connection->open(service) : ENODEV; }
    void close() override { connection.reset(); }
    int descriptor() const override { return connection->descriptor(); }
    Reading read(std::span<std::uint8_t> buffer) override { return connection->readReport(buffer); }

private:
    std::shared_ptr<LaptopConnection> connection; // null once closed
    std::uint8_t service;
};

class LaptopService : public Service {
public:
    LaptopService(std::shared_ptr<LaptopConnection> connection, std::uint8_t index)
        : connection(std::move(connection)), index(index) {}

    std::optional<Properties> properties() const override { return connection->services()[index].properties; }
    void setProperty(std::string_view key, std::int32_t value) override {
        connection->writeProperty(index, key, value);
    }
    std::unique_ptr<Device> createDevice() const override { return std::make_unique<LaptopDevice>(connection, index); }

private:
    std::shared_ptr<LaptopConnection> connection;
    std::uint8_t index;
};

} // namespace

std::vector<std::unique_ptr<Service>> findSimulatedLaptop(std::string_view className) {
    std::vector<std::unique_ptr<Service>> found;
    const auto connection = LaptopConnection::connect();
    if (!connection) return found;
    for (std::size_t index = 0; index < connection->services().size(); ++index) {
        if (connection->services()[index].className != className) continue;
        found.push_back(std::make_unique<LaptopService>(connection, static_cast<std::uint8_t>(index)));
    }
    return found;
}

} // namespace quiverly::sensors
