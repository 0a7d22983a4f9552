#pragma once

#include "ui/controls/Button.h"

namespace quiverly {

// A plain button beside others. A checkable one is filled with the accent while it is on.
class ActionButton : public Button {
public:
    explicit ActionButton(const QString& label);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

private:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quiverly
