#pragma once

#include <QWidget>

#include "ui/controls/Label.h"

namespace quiverly {

// One line of a step's progress: an icon for done, working, warning or slap now, and a text that wraps.
class StatusLine : public QWidget {
public:
    struct Status {
        bool ok = false;
        QString text;
        bool warning = false; // ignored if ok
        bool forceWarning = false;
        bool hand = false;
    };

    StatusLine();

    void show(const Status& status);

private:
    class Icon;

    void alignWithIcon();

    Icon* icon;
    Label* text;
};

} // namespace quiverly
