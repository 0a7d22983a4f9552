#include "ui/controls/ScrollArea.h"

#include <QEvent>
#include <QScrollBar>

#include "ui/Theme.h"
#include "ui/controls/painting.h"

namespace quiverly {

// Lies over the content.
class ScrollArea::FocusRing : public QWidget {
public:
    explicit FocusRing(QWidget* area) : QWidget(area) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

private:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        if (focusIsVisible(*parentWidget())) drawFocusRing(painter, rect(), 4, Theme::current().colors().focus);
    }
};

ScrollArea::ScrollArea(QWidget* content) : ring(new FocusRing(this)) {
    setAccessibleName("Contents");
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setWidget(content);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this,
            [this](int, int last) { setFocusPolicy(last > 0 ? Qt::TabFocus : Qt::NoFocus); });
}

QSize ScrollArea::minimumSizeHint() const {
    const QSize content = widget()->minimumSizeHint().expandedTo(widget()->minimumSize());
    return {content.width() + verticalScrollBar()->sizeHint().width(), QScrollArea::minimumSizeHint().height()};
}

bool ScrollArea::eventFilter(QObject* watched, QEvent* event) {
    if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
    return QScrollArea::eventFilter(watched, event);
}

void ScrollArea::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    ring->setGeometry(rect());
}

void ScrollArea::focusInEvent(QFocusEvent* event) {
    QScrollArea::focusInEvent(event);
    ring->raise();
    ring->show();
}

void ScrollArea::focusOutEvent(QFocusEvent* event) {
    QScrollArea::focusOutEvent(event);
    ring->hide();
}

} // namespace quiverly
