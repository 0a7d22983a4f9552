#include "platform/calendar.h"

namespace quiverly {

calendar::TimePoint calendar::now() {
    return std::chrono::time_point_cast<TimePoint::duration>(std::chrono::system_clock::now());
}

} // namespace quiverly
