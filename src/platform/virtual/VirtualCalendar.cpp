#include "platform/virtual/VirtualCalendar.h"

#include "platform/virtual/VirtualPlatform.h"

namespace quiverly {

calendar::TimePoint calendar::now() {
    return VirtualPlatform::current().calendar.now;
}

} // namespace quiverly
