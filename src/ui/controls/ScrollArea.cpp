#include "ui/controls/ScrollArea.h"

#include <QEvent>
#include <QScrollBar>

#include "ui/Theme.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/accessibility.h"

namespace quiverly {

namespace {

constexpr int barWidth = 10;   // pixels
constexpr int ringInset = 4;   // pixels; the ring is inside the area, for the area fills the window
constexpr int roomAround = 12; // pixels between what is revealed and the edge of the area

QString barStyle(const Theme::Colors& colors) {
    return QString("QScrollBar { background: transparent; width: %1px; margin: 0; }"
                   "QScrollBar::handle { background: %2; border-radius: 3px; margin: 2px; min-height: 32px; }"
                   "QScrollBar::handle:hover, QScrollBar::handle:pressed { background: %3; }"
                   "QScrollBar::add-line, QScrollBar::sub-line { height: 0; }"
                   "QScrollBar::add-page, QScrollBar::sub-page { background: none; }")
        .arg(barWidth)
        .arg(colors.tertiary.name(), colors.secondary.name());
}

} // namespace

ScrollArea::ScrollArea(QWidget* content) : bar(new QScrollBar(Qt::Vertical, this)), ring(new FocusRing(*this)) {
    describeAs(*this, QAccessible::NoRole, "Contents");
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setWidget(content);

    QScrollBar* const hidden = verticalScrollBar();
    connect(hidden, &QScrollBar::rangeChanged, this, &ScrollArea::followRange);
    connect(hidden, &QScrollBar::valueChanged, bar, &QScrollBar::setValue);
    connect(bar, &QScrollBar::valueChanged, hidden, &QScrollBar::setValue);
    for (const QScrollBar* scrolled : {hidden, bar}) {
        connect(scrolled, &QScrollBar::actionTriggered, this, [this] { revealed = nullptr; });
    }
    bar->setAttribute(Qt::WA_OpaquePaintEvent, false);
    bar->hide();
    connect(&Theme::current(), &Theme::changed, this, &ScrollArea::restyleBar);
    restyleBar();
}

void ScrollArea::restyleBar() {
    bar->setStyleSheet(barStyle(Theme::current().colors()));
}

void ScrollArea::followRange() {
    const QScrollBar& hidden = *verticalScrollBar();
    const bool scrolls = hidden.maximum() > 0;
    bar->setRange(hidden.minimum(), hidden.maximum());
    bar->setPageStep(hidden.pageStep());
    bar->setSingleStep(hidden.singleStep());
    bar->setVisible(scrolls);
    bar->raise();
    setFocusPolicy(scrolls ? Qt::TabFocus : Qt::NoFocus);
    describeAs(*this, scrolls ? QAccessible::Pane : QAccessible::NoRole, "Contents");
    keepRevealed();
}

QSize ScrollArea::minimumSizeHint() const {
    const QSize content = widget()->minimumSizeHint().expandedTo(widget()->minimumSize());
    return {content.width(), QScrollArea::minimumSizeHint().height()};
}

void ScrollArea::reveal(QWidget& part) {
    revealed = &part;
    keepRevealed();
}

void ScrollArea::keepRevealed() {
    if (!revealed) return;
    QScrollBar& hidden = *verticalScrollBar();
    const int top = revealed->mapTo(widget(), QPoint()).y();
    const int bottom = top + revealed->height() + roomAround;
    if (bottom > hidden.value() + viewport()->height()) hidden.setValue(bottom - viewport()->height());
    if (top - roomAround < hidden.value()) hidden.setValue(top - roomAround);
}

bool ScrollArea::eventFilter(QObject* watched, QEvent* event) {
    const bool handled = QScrollArea::eventFilter(watched, event);
    if (watched == widget() && event->type() == QEvent::LayoutRequest) {
        updateGeometry();
        keepRevealed();
    }
    return handled;
}

void ScrollArea::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    bar->setGeometry(width() - barWidth, 0, barWidth, height());
    ring->surround(rect().adjusted(ringInset, ringInset, -ringInset, -ringInset), 4);
    keepRevealed();
}

} // namespace quiverly
