#pragma once

#include <QPushButton>

namespace quiverly {

// The prominent button: as wide as its layout allows, filled with its tint, with a white label.
class PushButton : public QPushButton {
public:
    explicit PushButton(const QString& label);

    void setTint(const QColor& tint);

    QSize sizeHint() const override;

private:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

    QColor tint;
};

} // namespace quiverly
