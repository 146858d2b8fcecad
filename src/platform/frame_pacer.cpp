// FramePacer: the rest of each frame's share of the second, counted from frame to frame.
#include "platform/frame_pacer.h"

namespace platform {

FramePacer::FramePacer(int framesPerSecond)
    : period_(std::chrono::duration_cast<Clock::duration>(std::chrono::seconds(1)) /
              (framesPerSecond > 0 ? framesPerSecond : 60)) {}

FramePacer::Clock::duration FramePacer::pause(Clock::time_point now) {
    if (started_ && now < next_) {
        Clock::duration rest = next_ - now;
        next_ += period_;
        return rest;
    }
    started_ = true;
    next_ = now + period_;
    return Clock::duration::zero();
}

} // namespace platform
