#include "ui/controls/Label.h"

namespace quiverly {

Label::Label(FontRole role, Tone tone, const QString& text) : QLabel(text), role(role), tone(tone) {
    setTextFormat(Qt::PlainText);
    restyle();
    connect(&Theme::current(), &Theme::changed, this, &Label::restyle);
}

void Label::setTone(Tone next) {
    if (next == tone) return;
    tone = next;
    restyle();
}

void Label::setTracking(double pixels) {
    tracking = pixels;
    restyle();
}

void Label::wrap(Qt::Alignment alignment) {
    setWordWrap(true);
    setAlignment(alignment | Qt::AlignTop);
    QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void Label::restyle() {
    QFont font = fontFor(role);
    if (tracking != 0.0) font.setLetterSpacing(QFont::AbsoluteSpacing, tracking);
    setFont(font);
    QPalette palette = this->palette();
    palette.setColor(QPalette::WindowText, Theme::current().color(tone));
    setPalette(palette);
}

} // namespace quiverly
