#pragma once

#include <functional>

#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariant>

#include "ui/Theme.h"

namespace quiverly {

// Tells the theme what the user has asked of every program: the answer of the desktop's settings portal, and every
// change of it. Without a portal the theme goes by what the toolkit knows. Main thread only.
class DesktopSettings : public QObject {
    Q_OBJECT

public:
    // Asks the portal, and calls onKnown once: on its answer, after a tenth of a second without one, or at once without
    // a session bus. So a window that is shown then need not change its colours. A later answer counts too.
    explicit DesktopSettings(std::function<void()> onKnown);

private slots:
    void change(const QDBusMessage& signal);

private:
    void ask();
    void read(const QDBusMessage& answer);
    void apply(const QString& group, const QString& key, const QVariant& value);
    void tellTheme();
    void finish();

    std::function<void()> onKnown; // empty once called
    Theme::Preferences preferences;
    bool motionIsUnwanted = false;
    bool animationsAreOff = false;
};

} // namespace quiverly
