#include "tools/simulate/window/ThresholdSetting.h"

#include <utility>

#include <QFileInfo>
#include <QJsonObject>

#include "platform/linux/SettingsFile.h"

namespace quiverly {

ThresholdSetting::ThresholdSetting(QString name) : file(std::move(name)) {
    QObject::connect(&watcher, &QFileSystemWatcher::directoryChanged, &watcher, [this] { read(); });
    QObject::connect(&watcher, &QFileSystemWatcher::fileChanged, &watcher, [this] { read(); });
    read();
}

// The file, and the folder in which it is replaced or, as long as there is none, the nearest one above.
void ThresholdSetting::watch() {
    QString folder = QFileInfo(file).path();
    while (!QFileInfo::exists(folder) && QFileInfo(folder).path() != folder) folder = QFileInfo(folder).path();
    if (!watcher.directories().contains(folder)) {
        if (!watcher.directories().isEmpty()) watcher.removePaths(watcher.directories());
        watcher.addPath(folder);
    }
    if (QFileInfo::exists(file) && !watcher.files().contains(file)) watcher.addPath(file);
}

void ThresholdSetting::read() {
    watch();
    const QJsonValue stored = SettingsFile(file).read().value("bonko.threshold");
    const double next = stored.isDouble() ? stored.toDouble() : unset;
    if (std::exchange(threshold, next) != next && onChange) onChange(next);
}

} // namespace quiverly
