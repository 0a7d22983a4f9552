#pragma once

#include "ui/controls/Button.h"

namespace quiverly {

// The prominent button: as wide as its layout allows, filled with its tint, with a white label.
class PushButton : public Button {
public:
    explicit PushButton(const QString& label);

    enum class Tint { accent, stop };
    void setTint(Tint tint);

    QSize sizeHint() const override;

private:
    void paintEvent(QPaintEvent* event) override;

    QRectF face() const override;

    Tint tint = Tint::accent;
};

} // namespace quiverly
