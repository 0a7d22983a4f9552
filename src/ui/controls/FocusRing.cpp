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
    connect(&control, &QObject::destroyed, this, &QObject::deleteLater);
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
        if (watched == &control) follow();
        break;
    default:
        break;
    }
    return false;
}

bool FocusRing::isDue() const {
    const QWidget* focus = QApplication::focusWidget();
    return keyboardIsInUse && focus && (focus == &control || control.isAncestorOf(focus));
}

// In the coordinates of the parent.
QRectF FocusRing::outline() const {
    const int margin = gap + thickness;
    const QPoint origin = parentWidget() == &control ? QPoint() : control.pos();
    const QRectF inner = part.isNull() ? QRectF(control.rect()) : part;
    return inner.translated(origin).adjusted(-margin, -margin, margin, margin);
}

// The ring lies beside the control, so that it can be larger.
void FocusRing::follow() {
    if (!isDue()) return hide();
    QWidget* const surroundings = control.parentWidget() ? control.parentWidget() : &control;
    if (parentWidget() != surroundings) setParent(surroundings);
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
