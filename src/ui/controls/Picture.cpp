#include "ui/controls/Picture.h"

#include "ui/controls/accessibility.h"

namespace quiverly {

Picture::Picture() {
    describeControlsToScreenReaders();
}

} // namespace quiverly
