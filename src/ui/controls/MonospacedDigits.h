#pragma once

#include "ui/controls/Label.h"

namespace quiverly {

// A number at the right edge of its place. Every digit is as wide as the widest, so that nothing moves while it
// changes.
class MonospacedDigits : public Label {
public:
    MonospacedDigits(FontRole role, Tone tone);

private:
    void paintEvent(QPaintEvent* event) override;

    int advance(QChar character) const;
};

} // namespace quiverly
