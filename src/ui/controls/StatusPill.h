#pragma once

#include "ui/controls/Label.h"

namespace quiverly {

// A word in a capsule of its own colour, thinned.
class StatusPill : public Label {
public:
    StatusPill();

    void show(const QString& word, Tone tone);

private:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quiverly
