#pragma once

#include <QSettings>

namespace quiverly {

// Settings in one JSON object. Every value is a QVariant that holds a QJsonValue and is written back as it was read, so
// that keys and types this program does not know survive.
//
// A file that holds something else reads as empty. Before it is replaced it is set aside, beside its old place, as
// NAME.unreadable (or NAME.unreadable.2, and so on); where that cannot be done it is not replaced.
QSettings::Format jsonSettingsFormat();

} // namespace quiverly
