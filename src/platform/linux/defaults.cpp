#include "platform/defaults.h"

#include <chrono>
#include <thread>
#include <utility>

#include <QCoreApplication>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QTimer>

#include "platform/linux/SettingsFile.h"

namespace quiverly {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// The settings of this run, and those of them that are not yet stored. Those go into the file in the next turn of the
// event loop, later while another process stores; the ones that cannot be stored, with the next change or at the end.
class Store {
public:
    static Store& ofTheUser() {
        static Store store(SettingsFile::nameOfTheUsers());
        static const bool endsWithTheApplication = (qAddPostRoutine([] { store.storeLast(); }), true);
        static_cast<void>(endsWithTheApplication);
        return store;
    }

    QJsonValue value(const char* key) const { return values.value(QLatin1String(key)); }

    void set(const char* key, const QJsonValue& value) {
        values.insert(QLatin1String(key), value);
        changes.insert(QLatin1String(key), value);
        storeIn(0ms);
    }

private:
    explicit Store(const QString& name) : file(name), values(file.read()) {}

    void storeIn(std::chrono::milliseconds pause) {
        if (std::exchange(willStore, true)) return;
        QTimer::singleShot(pause, QCoreApplication::instance(), [this] {
            willStore = false;
            if (isBusyWhenStored()) storeIn(100ms);
        });
    }

    // The window is gone: there is time for another process to finish, which takes it a few milliseconds. It is asked
    // for again and again, because the system has no wait for such a lock that comes to an end by itself.
    void storeLast() {
        const auto end = Clock::now() + 250ms;
        while (isBusyWhenStored() && Clock::now() < end) std::this_thread::sleep_for(1ms);
    }

    bool isBusyWhenStored() {
        if (changes.isEmpty()) return false;
        const auto stored = file.store(changes);
        if (stored) changes = {};
        return !stored && stored.error() == std::errc::resource_unavailable_try_again;
    }

    SettingsFile file;
    QJsonObject values;
    QJsonObject changes;
    bool willStore = false;
};

} // namespace

std::optional<std::string> defaults::text(const char* key) {
    const QJsonValue value = Store::ofTheUser().value(key);
    return value.isString() ? std::optional(value.toString().toStdString()) : std::nullopt;
}

std::optional<defaults::Object> defaults::object(const char* key) {
    const QJsonValue value = Store::ofTheUser().value(key);
    if (value.isUndefined()) return std::nullopt;
    if (value.isDouble()) return value.toDouble();
    if (value.isString()) return value.toString().toStdString();
    return OtherObject{};
}

void defaults::setText(const char* key, const std::string& value) {
    Store::ofTheUser().set(key, QString::fromStdString(value));
}

void defaults::setNumber(const char* key, double value) {
    Store::ofTheUser().set(key, value);
}

} // namespace quiverly
