#pragma once

#include <optional>

#include <QLabel>

#include "ui/Debounce.h"
#include "ui/Fonts.h"
#include "ui/Theme.h"

namespace quiverly {

class FocusRing;

// A plain text in the font of its role and a colour of the theme.
class Label : public QLabel {
public:
    Label(FontRole role, Tone tone, const QString& text = {});

    void setText(const QString& text);
    void setTone(Tone tone);
    void setTracking(double pixels); // extra space between letters

    // Lets the text continue on further lines, which are broken so that none is much shorter than the others.
    void wrap(Qt::Alignment alignment = Qt::AlignLeft);

    // Lets the user select and copy the text, and reach it with the keyboard.
    void setSelectable(bool selectable);

    // Has a screen reader speak the text when it appears, and each new one once that has not changed for so long.
    void speakChanges(double secondsAfter = 0.0);

    int heightForWidth(int width) const override;

private:
    // How the text is broken into lines of some width.
    struct Breaks {
        int lines = 0;
        bool overflow = false;   // a word is wider than that
        bool beforeDash = false; // a line begins with one
    };

    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

    void restyle();
    void balance();
    Breaks breaksAt(int lineWidth) const;
    void speakLater();

    FontRole role;
    Tone tone;
    double tracking = 0.0;
    FocusRing* ring = nullptr;
    std::optional<double> speechDelay;
    Debounce speech;
};

} // namespace quiverly
