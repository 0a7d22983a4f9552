#pragma once

#include <QPointer>
#include <QScrollArea>

class QScrollBar;

namespace quiverly {

class FocusRing;

// Scrolls a content vertically; horizontally it always has the room it needs. The keyboard reaches the area, and
// scrolls it, whenever there is something to scroll. A thin bar over the right edge shows how far it has been scrolled.
class ScrollArea : public QScrollArea {
public:
    explicit ScrollArea(QWidget* content); // takes the content over

    // Scrolls a part of the content into view, and keeps it there while the layout changes, until the user scrolls.
    void reveal(QWidget& part);

    QSize minimumSizeHint() const override;

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    void followRange();
    void keepRevealed();
    void restyleBar();

    QScrollBar* bar;
    FocusRing* ring;
    QPointer<QWidget> revealed;
};

} // namespace quiverly
