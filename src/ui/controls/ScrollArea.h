#pragma once

#include <QScrollArea>

namespace quiverly {

// Shows a content at least as wide as it needs, scrolled up and down where there is more of it. The keyboard reaches
// the area, and scrolls it, while it can be scrolled.
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
