#pragma once

#include <QWidget>

namespace quiverly {

class Label;

// One step of a numbered list: its badge, its title, and its content while it is active. The first step still shows
// its content when it is complete.
class StepRow : public QWidget {
public:
    StepRow(int number, const QString& title, QWidget* content); // takes the content over

    void show(bool active, bool complete);

private:
    class Badge;

    int number;
    Badge* badge;
    Label* title;
    QWidget* content;
};

} // namespace quiverly
