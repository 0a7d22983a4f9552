#pragma once

#include <system_error>

#include <QJsonObject>
#include <QString>
#include <tl/expected.hpp>

namespace quiverly {

// Settings in one JSON object, in a file that only its user can read and several processes may use. No call waits for
// another process.
//
// The file is replaced as a whole: a reader finds the settings from before or after a change, and so does the next
// start after this process was killed. Changes are merged under the kernel's lock on the folder, which ends with the
// process that holds it.
//
// A file that holds something else reads as empty. Before it is replaced it is set aside, beside its old place, as
// NAME.unreadable (or NAME.unreadable.2, and so on). What cannot be read or set aside is not replaced.
class SettingsFile {
public:
    // Of the application's user.
    static QString nameOfTheUsers();

    explicit SettingsFile(QString name) : name(std::move(name)) {}

    QJsonObject read() const;

    // Stores these values beside those that the file holds, and writes nothing when they are there already. The error
    // is resource_unavailable_try_again while another process stores, or anything else.
    tl::expected<void, std::error_code> store(const QJsonObject& changes) const;

private:
    QString name;
};

} // namespace quiverly
