#pragma once

#include <functional>

#include <QFileSystemWatcher>
#include <QString>

namespace quiverly {

// The threshold that the application's settings hold, now and whenever their file changes. Main thread only.
class ThresholdSetting {
public:
    static constexpr double unset = 0.12; // g; the application's own default

    std::function<void(double threshold)> onChange; // g

    explicit ThresholdSetting(QString file);

    double value() const { return threshold; } // g

private:
    void watch();
    void read();

    QString file;
    QFileSystemWatcher watcher;
    double threshold = unset;
};

} // namespace quiverly
