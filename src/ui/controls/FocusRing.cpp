#include "ui/controls/FocusRing.h"

#include <QApplication>
#include <QKeyEvent>

#include "ui/Theme.h"
#include "ui/controls/painting.h"

namespace quiverly {

namespace {

constexpr int gap = 1;       // pixels between the control and the ring
constexpr int thickness = 2; // pixels

bool keyboardIsInUse = false;

void noticeInput(const QEvent& event) {
    if (event.type() == QEvent::MouseButtonPress) keyboardIsInUse = false;
    if (event.type() != QEvent::KeyPress) return;
    const int key = static_cast<const QKeyEvent&>(event).key();
    const bool isModifier = key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_Meta;
    if (!isModifier) keyboardIsInUse = true;
}

} // namespace

FocusRing::FocusRing(QWidget& control) : QWidget(&control), control(control) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    qApp->installEventFilter(this);
    connect(&control, &QObject::destroyed, this, [this] {
        qApp->removeEventFilter(this);
        hide();
        deleteLater();
    });
}

void FocusRing::surround(const QRectF& nextPart, double nextRadius) {
    part = nextPart;
    radius = nextRadius;
    if (isVisible()) follow();
}

bool FocusRing::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
        noticeInput(*event);
        [[fallthrough]];
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        follow();
        break;
    case QEvent::Move:
    case QEvent::Resize:
        if (watched == &control || isAround(*watched)) follow();
        break;
    default:
        break;
    }
    return false;
}

bool FocusRing::isDue() const {
    const QWidget* focus = QApplication::focusWidget();
    return keyboardIsInUse && focus && (focus == &control || focus == control.focusProxy());
}

bool FocusRing::isAround(const QObject& object) const {
    return object.isWidgetType() && static_cast<const QWidget&>(object).isAncestorOf(&control);
}

// What the ring lies in: the whole that scrolls with the control, or the window. A narrower parent would cut it off.
QWidget& FocusRing::surroundings() const {
    QWidget* whole = &control;
    while (!whole->isWindow() && whole->parentWidget()) {
        const QWidget* frame = whole->parentWidget()->parentWidget();
        if (frame && frame->inherits("QAbstractScrollArea")) break;
        whole = whole->parentWidget();
    }
    return *whole;
}

// In the coordinates of the parent.
QRectF FocusRing::outline() const {
    const int margin = gap + thickness;
    const QRectF inner = part.isNull() ? QRectF(control.rect()) : part;
    const QPoint origin = control.mapTo(parentWidget(), QPoint());
    return inner.translated(origin).adjusted(-margin, -margin, margin, margin);
}

void FocusRing::follow() {
    if (!isDue()) return hide();
    if (parentWidget() != &surroundings()) setParent(&surroundings());
    setGeometry(outline().toAlignedRect());
    raise();
    show();
}

void FocusRing::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    outlineRounded(painter, outline().translated(-pos()), radius + gap + thickness, Theme::current().colors().focus,
                   thickness);
}

} // namespace quiverly
