#include "ui/controls/Label.h"

#include <QEvent>
#include <QShowEvent>
#include <QTextLayout>

#include "ui/controls/FocusRing.h"
#include "ui/controls/accessibility.h"

namespace quiverly {

Label::Label(FontRole role, Tone tone, const QString& text) : QLabel(text), role(role), tone(tone) {
    describeAs(*this, QAccessible::StaticText);
    setTextFormat(Qt::PlainText);
    restyle();
    connect(&Theme::current(), &Theme::changed, this, &Label::restyle);
}

void Label::setText(const QString& next) {
    if (next == text()) return;
    QLabel::setText(next);
    balance();
    if (speechDelay && isVisible()) speakLater();
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

// Without a text cursor, which the toolkit shows where the keyboard can move it.
void Label::setSelectable(bool selectable) {
    const auto flags = selectable ? Qt::TextSelectableByMouse : Qt::NoTextInteraction;
    if (textInteractionFlags() == flags) return;
    if (selectable && !ring) ring = new FocusRing(*this);
    if (!selectable) clearFocus();
    setTextInteractionFlags(flags);
    setFocusPolicy(selectable ? Qt::StrongFocus : Qt::NoFocus);
}

void Label::speakChanges(double secondsAfter) {
    speechDelay = secondsAfter;
    describeAsSpeaking(*this);
}

void Label::speakLater() {
    if (*speechDelay == 0.0) return speak(*this);
    speech.schedule(*speechDelay, [this] {
        if (isVisible()) speak(*this);
    });
}

void Label::restyle() {
    QFont font = fontFor(role);
    if (tracking != 0.0) font.setLetterSpacing(QFont::AbsoluteSpacing, tracking);
    setFont(font);
    QPalette palette = this->palette();
    palette.setColor(QPalette::WindowText, Theme::current().color(tone));
    setPalette(palette);
}

// The margins that balance the lines leave the height as it is.
int Label::heightForWidth(int width) const {
    const QMargins margins = contentsMargins();
    return QLabel::heightForWidth(width + margins.left() + margins.right());
}

// Narrows the lines as far as it takes no more of them, and none begins with a dash.
void Label::balance() {
    if (!wordWrap() || width() <= 0) return;
    const int fewest = breaksAt(width()).lines;
    int tooNarrow = 0;
    int wideEnough = width();
    while (wideEnough - tooNarrow > 1) {
        const int middle = (tooNarrow + wideEnough) / 2;
        const Breaks breaks = breaksAt(middle);
        (breaks.overflow || breaks.lines > fewest ? tooNarrow : wideEnough) = middle;
    }
    while (wideEnough < width() && breaksAt(wideEnough).beforeDash) ++wideEnough;
    const int slack = width() - wideEnough;
    const int left = alignment() & Qt::AlignHCenter ? slack / 2 : 0;
    setContentsMargins(left, 0, slack - left, 0);
}

Label::Breaks Label::breaksAt(int lineWidth) const {
    const QString whole = text();
    QTextLayout layout(whole, font());
    Breaks breaks;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(lineWidth);
        ++breaks.lines;
        breaks.overflow |= line.naturalTextWidth() > lineWidth;
        breaks.beforeDash |= line.textLength() > 0 && whole[line.textStart()] == QChar(u'—');
    }
    layout.endLayout();
    return breaks;
}

void Label::showEvent(QShowEvent* event) {
    QLabel::showEvent(event);
    if (speechDelay && !event->spontaneous()) speakOnAppearing(*this);
}

void Label::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    balance();
}

void Label::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange) balance();
}

} // namespace quiverly
