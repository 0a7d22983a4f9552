#pragma once

#include <QLabel>

#include "ui/Fonts.h"
#include "ui/Theme.h"

namespace quiverly {

// A plain text in the font of its role and a colour of the theme.
class Label : public QLabel {
public:
    Label(FontRole role, Tone tone, const QString& text = {});

    void setTone(Tone tone);
    void setTracking(double pixels); // extra space between letters

    // Lets the text continue on further lines.
    void wrap(Qt::Alignment alignment = Qt::AlignLeft);

private:
    void restyle();

    FontRole role;
    Tone tone;
    double tracking = 0.0;
};

} // namespace quiverly
