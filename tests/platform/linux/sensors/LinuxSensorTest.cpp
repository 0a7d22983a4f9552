#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <list>
#include <memory>
#include <string>

#include "platform/linux/sensors/LaptopClient.h"
#include "support/Listener.h"
#include "support/LiveLaptop.h"
#include "support/OpenSensor.h"
#include "support/ProcessResources.h"
#include "support/Waiting.h"

namespace quiverly {
namespace {

TEST(LinuxSensorTest, AReaderReceivesSamplesOfOneGFromTheLaptopAtRest) {
    const LiveLaptop laptop;
    Listener listener;
    ASSERT_TRUE(listener.starts());
    EXPECT_TRUE(listener.hears(50));
    for (const Sample& sample : listener.samples.all()) {
        EXPECT_NEAR(sample.x, 0.0, 0.01);
        EXPECT_NEAR(sample.y, 0.0, 0.01);
        EXPECT_NEAR(sample.z, 1.0, 0.01);
    }
}

TEST(LinuxSensorTest, ASlapArrivesAtItsPeakWhicheverWayTheLaptopLies) {
    LiveLaptop laptop;
    Listener listener;
    ASSERT_TRUE(listener.starts());
    laptop.tell("tilt 1 -2 2");
    waitUntil([&] { return listener.samples.last().y < -0.6; });
    EXPECT_NEAR(listener.samples.last().x, 1.0 / 3.0, 0.01);
    EXPECT_TRUE(listener.hearsSlap(1.59, [&] { laptop.tell("slap 0.6"); }));
    EXPECT_NEAR(listener.samples.greatestMagnitude(), 1.6, 0.01);
}

TEST(LinuxSensorTest, ReportsBeginOnlyWithTheWakingThatFollowsTheOpening) {
    const LiveLaptop laptop;
    const auto wake = [] {
        const auto drivers = hid::findServices(hid::matchingClass("AppleSPUHIDDriver"));
        while (const auto driver = hid::nextService(*drivers)) {
            for (const char* key : {"SensorPropertyReportingState", "SensorPropertyPowerState", "ReportInterval"}) {
                hid::setProperty(*driver, key, 1000);
            }
        }
    };
    wake();
    OpenSensor sensor;
    ASSERT_EQ(sensor.opened, hid::success);
    hid::runLoop(0.25);
    EXPECT_TRUE(sensor.reports.empty());
    wake();
    hid::runLoop(10.0);
    ASSERT_FALSE(sensor.reports.empty());
    EXPECT_GE(sensor.reports[0].size(), 18U);
}

TEST(LinuxSensorTest, TheRegistryHasServicesThatAReaderIgnores) {
    const LiveLaptop laptop;
    int accelerometers = 0;
    int withoutIntegers = 0;
    int others = 0;
    hid::Handle<hid::Services> services;
    hid::Handle<hid::Service> service;
    // A laptop that gets no processor for long enough is taken for one that is not there.
    waitUntil([&] {
        services = hid::findServices(hid::matchingClass("AppleSPUHIDDevice"));
        service = hid::nextService(*services);
        return service != nullptr;
    });
    for (; service; service = hid::nextService(*services)) {
        const auto properties = hid::readProperties(*service);
        const auto page = hid::integerProperty(*properties, "PrimaryUsagePage");
        const auto usage = hid::integerProperty(*properties, "PrimaryUsage");
        if (page == 0xFF00 && usage == 3) {
            ++accelerometers;
            EXPECT_GT(others, 0) << "nothing stands before the accelerometer";
        } else if (page) {
            ++others;
            EXPECT_EQ(hid::open(*hid::createDevice(*service)), hid::noDevice);
        } else {
            ++withoutIntegers;
        }
    }
    EXPECT_EQ(accelerometers, 1);
    EXPECT_GE(others, 3);
    EXPECT_EQ(withoutIntegers, 2);
    EXPECT_EQ(hid::nextService(*hid::findServices(hid::matchingClass("AppleMultitouch"))), nullptr);
}

TEST(LinuxSensorTest, AThousandQuickStartsAndStopsLeaveNoThreadAndNoDescriptor) {
    const LiveLaptop laptop;
    const auto before = ProcessResources::now();
    {
        Listener listener;
        for (int cycle = 0; cycle < 1000; ++cycle) {
            ASSERT_TRUE(listener.starts()) << "in cycle " << cycle;
            if (cycle % 100 == 0) {
                ASSERT_TRUE(listener.hears());
            }
            listener.stop();
        }
    }
    EXPECT_TRUE(waitUntil([&] { return ProcessResources::now() == before; }));
}

TEST(LinuxSensorTest, ALaptopThatVanishesLeavesAQuietReaderThatRecoversWhenItIsBack) {
    LiveLaptop laptop;
    Listener listener;
    ASSERT_TRUE(listener.starts());
    ASSERT_TRUE(listener.hears());
    laptop.tell("vanish");
    waitUntil([&] { return !std::filesystem::exists(laptop.folder() / "quiverly-laptop.socket"); });
    EXPECT_TRUE(listener.reader.isRunning());
    listener.stop();
    EXPECT_FALSE(listener.start());
    EXPECT_EQ(listener.error(), "Accelerometer device missing on this Mac.");

    laptop.tell("appear");
    EXPECT_TRUE(listener.starts());
    EXPECT_TRUE(listener.hears());
}

TEST(LinuxSensorTest, TheRunLoopRestsWhenTheLaptopHasVanished) {
    auto laptop = std::make_unique<LiveLaptop>();
    const OpenSensor sensor;
    ASSERT_EQ(sensor.opened, hid::success);
    laptop.reset();

    constexpr double slice = 0.02;
    hid::runLoop(slice); // learns of the end
    const auto begin = std::chrono::steady_clock::now();
    const auto elapsed = [&] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    int returns = 0;
    while (elapsed() < 10 * slice) {
        hid::runLoop(slice);
        ++returns;
    }
    EXPECT_LE(returns, elapsed() / slice);
}

TEST(LinuxSensorTest, ASleepingLaptopStaysConnectedAndReportsNothingUntilItWakes) {
    LiveLaptop laptop;
    Listener listener;
    ASSERT_TRUE(listener.starts());
    ASSERT_TRUE(listener.hears());
    laptop.tell("sleep");
    laptop.tell("tilt 0 1 0");
    laptop.tell("slap 1"); // lost, and said to be
    laptop.tell("wake");
    EXPECT_TRUE(waitUntil([&] { return listener.samples.last().y > 0.9; }));
    EXPECT_LT(listener.samples.greatestMagnitude(), 1.1);
    EXPECT_NE(laptop.quit().find("the sensor does not report now: the slap is lost"), std::string::npos);
}

TEST(LinuxSensorTest, ADeniedSensorIsNotPermittedUntilItIsAllowed) {
    LiveLaptop laptop;
    Listener listener;
    laptop.tell("deny");
    EXPECT_TRUE(waitUntil([&] {
        const bool refused = !listener.start();
        listener.stop();
        return refused;
    }));
    EXPECT_EQ(listener.error(),
              "Need Input Monitoring permission (System Settings → Privacy & Security). Code -536870174.");
    laptop.tell("allow");
    EXPECT_TRUE(listener.starts());
    EXPECT_TRUE(listener.hears());
}

TEST(LinuxSensorTest, ManyReadersHearTheSameLaptop) {
    const LiveLaptop laptop;
    std::list<Listener> listeners(20);
    for (Listener& listener : listeners) ASSERT_TRUE(listener.starts());
    for (const Listener& listener : listeners) EXPECT_TRUE(listener.hears(10));
    listeners.pop_front();
    for (const Listener& listener : listeners) EXPECT_TRUE(listener.hears(10));
}

TEST(LinuxSensorTest, AReaderThatDoesNotReadLosesReportsAndDisturbsNoOther) {
    LiveLaptop laptop({.verbose = true});
    {
        const OpenSensor idle; // its run loop is never run
        ASSERT_EQ(idle.opened, hid::success);
        Listener listener;
        ASSERT_TRUE(listener.starts());
        EXPECT_TRUE(listener.hears(200)); // 1,600 reports, several times what a queue holds
    }
    const std::string said = laptop.quit();
    const auto dropped = [&](const std::string& client) {
        const auto line = said.substr(said.find(client + " left after "));
        return std::stoi(line.substr(line.find("reports, ") + 9));
    };
    EXPECT_GT(dropped("client 1"), 500) << said;
}

TEST(LinuxSensorTest, HundredsOfClientsComeAndGo) {
    const LiveLaptop laptop;
    std::list<std::shared_ptr<LaptopClient>> clients;
    while (clients.size() < 300) {
        std::shared_ptr<LaptopClient> client;
        ASSERT_TRUE(waitUntil([&] { return (client = LaptopClient::connect()) != nullptr; }));
        clients.push_back(std::move(client));
    }
    Listener listener;
    ASSERT_TRUE(listener.starts());
    EXPECT_TRUE(listener.hears());
    clients.clear();
    EXPECT_TRUE(listener.hears());
}

} // namespace
} // namespace quiverly
