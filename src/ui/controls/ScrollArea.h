#pragma once

#include <QScrollArea>

namespace quiverly {

// Scrolls a content vertically; horizontally it always has the room it needs. The keyboard reaches the area, and
// scrolls it, whenever there is something to scroll.
class ScrollArea : public QScrollArea {
public:
    explicit ScrollArea(QWidget* content); // takes the content over

    QSize minimumSizeHint() const override;

private:
    class FocusRing;

    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

    FocusRing* ring;
};

} // namespace quiverly
