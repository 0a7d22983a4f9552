#pragma once

#include <QPushButton>

#include "ui/Fonts.h"

namespace quiverly {

class FocusRing;

// What the buttons have in common: the ring of the keyboard, Enter, the font of the theme. How it looks is for each.
class Button : public QPushButton {
public:
    Button(const QString& label, FontRole font);

protected:
    static constexpr double cornerRadius = 6; // of the design, in pixels

    virtual QRectF face() const { return rect(); } // what is filled

private:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    FocusRing* ring;
};

} // namespace quiverly
