#pragma once

#include <QWidget>

#include "ui/controls/Label.h"

class QVBoxLayout;

namespace quiverly {

// One line of a step's progress: an icon for done, working, warning or slap now, and a text that wraps. A screen reader
// speaks each new text; one that tells of a failure can be copied.
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

    bool show(const Status& status); // whether its text is another one than before

private:
    class Icon;

    void alignWithIcon();

    Icon* icon;
    Label* text;
    QVBoxLayout* beside; // around the text
};

} // namespace quiverly
