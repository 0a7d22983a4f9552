#pragma once

#include <QWidget>

namespace quiverly {

class Label;

// One step of a numbered list: its badge, its title and, where it has any to show, its content.
class StepRow : public QWidget {
public:
    StepRow(int number, const QString& title, QWidget* content); // takes the content over

    void show(bool active, bool complete, bool showsContent);

private:
    class Badge;

    Badge* badge;
    Label* title;
    QWidget* content;
};

} // namespace quiverly
