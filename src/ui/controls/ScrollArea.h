#pragma once

#include <QScrollArea>

namespace quiverly {

// Shows a content as wide as itself, scrolled up and down where there is more of it.
class ScrollArea : public QScrollArea {
public:
    explicit ScrollArea(QWidget* content); // takes the content over
};

} // namespace quiverly
