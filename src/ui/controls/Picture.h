#pragma once

#include <QWidget>

namespace quiverly {

// A widget that only shows something. Its accessible name tells what.
class Picture : public QWidget {
public:
    Picture();
};

} // namespace quiverly
