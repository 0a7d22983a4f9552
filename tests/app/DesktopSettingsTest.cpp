#include "app/DesktopSettings.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QTest>

#include "support/ChildProcess.h"
#include "support/Environment.h"
#include "support/TemporaryFolder.h"
#include "support/Waiting.h"
#include "ui/Theme.h"

namespace quiverly {
namespace {

using Settings = QMap<QString, QVariantMap>;

constexpr char path[] = "/org/freedesktop/portal/desktop";
constexpr char interface[] = "org.freedesktop.portal.Settings";

// Stands in for the settings portal of a desktop.
class Portal : public QDBusVirtualObject {
public:
    Settings settings;
    bool isSilent = false;
    QVariant nonsense; // answered instead of the settings, if there is any

    Portal() : bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, "portal")) {
        qDBusRegisterMetaType<Settings>();
        EXPECT_TRUE(bus.registerVirtualObject(path, this));
        EXPECT_TRUE(bus.registerService("org.freedesktop.portal.Desktop"));
    }
    ~Portal() override {
        bus.unregisterService("org.freedesktop.portal.Desktop");
        bus.unregisterObject(path);
    }
    Portal(const Portal&) = delete;
    Portal& operator=(const Portal&) = delete;

    bool wasAsked() const { return question.has_value(); }

    void answer() { bus.send(question->createReply(nonsense.isValid() ? nonsense : QVariant::fromValue(settings))); }

    void change(const QString& group, const QString& key, const QVariant& value) {
        emitChange({group, key, QVariant::fromValue(QDBusVariant(value))});
    }

    void emitChange(const QVariantList& arguments) {
        QDBusMessage signal = QDBusMessage::createSignal(path, interface, "SettingChanged");
        signal.setArguments(arguments);
        bus.send(signal);
    }

private:
    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        if (message.interface() != interface || message.member() != "ReadAll") return false;
        question = message;
        if (!isSilent) answer();
        return true;
    }

    QDBusConnection bus;
    std::optional<QDBusMessage> question;
};

class DesktopSettingsTest : public testing::Test {
protected:
    // The toolkit connects to the session bus once: one bus for all tests.
    static void SetUpTestSuite() {
        folder = std::make_unique<TemporaryFolder>();
        const auto address = folder->path() / "address";
        daemon = std::make_unique<ChildProcess>(
            std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address"}, address,
            folder->path() / "complaints");
        std::string line;
        waitUntil([&] {
            std::ifstream said(address);
            return std::getline(said, line) && !said.eof();
        });
        setVariable("DBUS_SESSION_BUS_ADDRESS", line.c_str());
    }
    static void TearDownTestSuite() {
        daemon.reset();
        folder.reset();
    }

    ~DesktopSettingsTest() override { Theme::current().prefer({}); }

    void ask() {
        settings = std::make_unique<DesktopSettings>([this] { ++known; });
        EXPECT_TRUE(QTest::qWaitFor([this] { return known > 0; }, 60'000));
    }

    static void expectSoon(const auto& condition) { EXPECT_TRUE(QTest::qWaitFor(condition, 60'000)); }
    static bool isDark() { return Theme::current().isDark(); }
    static bool hasHighContrast() { return Theme::current().hasHighContrast(); }
    static bool reducesMotion() { return Theme::current().reducesMotion(); }

    int known = 0; // how often it was told

private:
    static inline std::unique_ptr<TemporaryFolder> folder;
    static inline std::unique_ptr<ChildProcess> daemon;

    std::unique_ptr<DesktopSettings> settings;
};

TEST_F(DesktopSettingsTest, TheThemeIsAsThePortalAnswers) {
    Portal portal;
    portal.settings["org.freedesktop.appearance"] = {{"color-scheme", 1U}, {"contrast", 1U}};
    portal.settings["org.gnome.desktop.interface"] = {{"enable-animations", false}};
    ask();
    expectSoon(isDark);
    EXPECT_TRUE(hasHighContrast());
    EXPECT_TRUE(reducesMotion());
    EXPECT_EQ(known, 1);
}

TEST_F(DesktopSettingsTest, TheThemeFollowsEveryChange) {
    Portal portal;
    ask();
    portal.change("org.freedesktop.appearance", "color-scheme", 1U);
    expectSoon(isDark);
    portal.change("org.freedesktop.appearance", "contrast", 1U);
    expectSoon(hasHighContrast);
    portal.change("org.freedesktop.appearance", "reduced-motion", 1U);
    expectSoon(reducesMotion);
    portal.change("org.freedesktop.appearance", "color-scheme", 0U);
    expectSoon([] { return !isDark(); });
    portal.change("org.freedesktop.appearance", "contrast", 0U);
    expectSoon([] { return !hasHighContrast(); });
    portal.change("org.gnome.desktop.interface", "enable-animations", false);
    portal.change("org.freedesktop.appearance", "reduced-motion", 0U);
    portal.change("org.freedesktop.appearance", "color-scheme", 1U);
    expectSoon(isDark);
    EXPECT_TRUE(reducesMotion());
    portal.change("org.gnome.desktop.interface", "enable-animations", true);
    expectSoon([] { return !reducesMotion(); });
}

TEST_F(DesktopSettingsTest, APortalThatIsSilentHoldsNothingUp) {
    Portal portal;
    portal.isSilent = true;
    portal.settings["org.freedesktop.appearance"] = {{"color-scheme", 1U}};
    ask();
    expectSoon([&] { return portal.wasAsked(); });
    EXPECT_FALSE(isDark());
    portal.answer();
    expectSoon(isDark);
    EXPECT_EQ(known, 1);
}

TEST_F(DesktopSettingsTest, WithoutAPortalTheThemeIsTheToolkits) {
    ask();
    EXPECT_FALSE(isDark());
    EXPECT_FALSE(hasHighContrast());
    EXPECT_FALSE(reducesMotion());
}

TEST_F(DesktopSettingsTest, ValuesOfTheWrongKindAreIgnored) {
    Portal portal;
    portal.settings["org.freedesktop.appearance"] = {{"color-scheme", "1"}, {"contrast", true}};
    portal.settings["org.gnome.desktop.interface"] = {{"enable-animations", 0U}, {"color-scheme", 1U}};
    ask();
    portal.change("org.freedesktop.appearance", "contrast", 1U);
    expectSoon(hasHighContrast);
    EXPECT_FALSE(isDark());
    EXPECT_FALSE(reducesMotion());
}

TEST_F(DesktopSettingsTest, MalformedMessagesAreIgnored) {
    Portal portal;
    portal.nonsense = QVariant("dark");
    ask();
    portal.emitChange({});
    portal.emitChange({"org.freedesktop.appearance", "color-scheme", 1U});
    portal.change("org.freedesktop.appearance", "contrast", 1U);
    expectSoon(hasHighContrast);
    EXPECT_FALSE(isDark());
}

} // namespace
} // namespace quiverly
