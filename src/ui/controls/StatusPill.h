#pragma once

#include "ui/controls/Label.h"

namespace quiverly {

// A word in a capsule filled with a tint of its own colour.
class StatusPill : public Label {
public:
    StatusPill();

    void show(const QString& word, Tone tone);

private:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quiverly
