#pragma once

#include <QPushButton>

namespace quiverly {

class FocusRing;

// A plain button beside others. A checkable one is filled with the accent while it is on.
class ActionButton : public QPushButton {
public:
    explicit ActionButton(const QString& label);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

private:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

    FocusRing* ring;
};

} // namespace quiverly
