#pragma once

#include "ui/controls/Label.h"

namespace quiverly {

// A right-aligned number. Every digit takes the width of the widest, so that the others stay where they are when one
// changes.
class MonospacedDigits : public Label {
public:
    MonospacedDigits(FontRole role, Tone tone);

private:
    void paintEvent(QPaintEvent* event) override;

    int advance(QChar character) const;
};

} // namespace quiverly
