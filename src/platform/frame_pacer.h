// FramePacer: holds a frame loop to at most a given rate, for window systems on which the swap does
// not wait for the display (a virtual display, a software renderer, some drivers).
#pragma once

#include <chrono>

namespace platform {

class FramePacer {
  public:
    using Clock = std::chrono::steady_clock;

    // The display's rate in frames a second; 60 where it is not known (0 or less).
    explicit FramePacer(int framesPerSecond);

    // How long to sleep after a frame that ended at `now`: the rest of its share of the second.
    // A frame that ended late costs no sleep, and the count starts afresh from it, so that the
    // frames after a slow one do not rush to catch up.
    Clock::duration pause(Clock::time_point now);

  private:
    Clock::duration period_;
    Clock::time_point next_;
    bool started_ = false;
};

} // namespace platform
