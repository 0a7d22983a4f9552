#pragma once

#include <QPushButton>

namespace quiverly {

class FocusRing;

// The prominent button: as wide as its layout allows, filled with its tint, with a white label.
class PushButton : public QPushButton {
public:
    explicit PushButton(const QString& label);

    enum class Tint { accent, stop };
    void setTint(Tint tint);

    QSize sizeHint() const override;

private:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

    QRectF face() const;

    Tint tint = Tint::accent;
    FocusRing* ring;
};

} // namespace quiverly
