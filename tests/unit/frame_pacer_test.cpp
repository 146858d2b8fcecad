// The frame pacer with frames that end at given times: what it leaves of each frame to sleep.
#include <gtest/gtest.h>

#include <vector>

#include "platform/frame_pacer.h"

using platform::FramePacer;
using namespace std::chrono;

TEST(FramePacer, SleepsTheRestOfEachFrameAndStartsAfreshAfterALateOne) {
    struct Case {
        const char* name;
        int rate;
        std::vector<double> ends, sleeps; // milliseconds from the start; what each frame sleeps
    } cases[] = {
        {"quick frames sleep the rest", 60, {0, 5, 17, 40}, {0, 11.667, 16.333, 10}},
        {"a late frame costs no sleep, and the next is not rushed", 60, {0, 50, 52}, {0, 0, 14.667}},
        {"a frame that ends on time sleeps nothing", 50, {0, 20, 30}, {0, 0, 10}},
        {"an unknown rate is taken as 60", 0, {0, 1}, {0, 15.667}},
        {"a fast display", 144, {0, 1}, {0, 5.944}},
    };
    using Ms = duration<double, std::milli>;
    for (const Case& c : cases) {
        FramePacer pacer(c.rate);
        auto start = FramePacer::Clock::now();
        for (std::size_t i = 0; i < c.ends.size(); ++i) {
            Ms slept = pacer.pause(start + duration_cast<FramePacer::Clock::duration>(Ms(c.ends[i])));
            EXPECT_NEAR(slept.count(), c.sleeps[i], 0.001) << c.name << ", frame " << i;
        }
    }
}
