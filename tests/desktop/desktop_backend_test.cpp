// The desktop backend in a process of its own (one window a process, and the UI driver's is
// scripted): an idle frame loop is held to the display's rate even where the swap does not wait,
// as under a virtual display.
#include <gtest/gtest.h>

#include <chrono>

#include "platform/glfw2.h"
#include "toolkit/frame_step.h"
#include "toolkit/graphics.h"
#include "toolkit/window.h"

using Clock = std::chrono::steady_clock;

TEST(DesktopBackend, AnIdleFrameLoopRunsAtMostAtTheDisplaysRate) {
    setupGraphics();
    ASSERT_TRUE(graphicsOpened()) << "no window: run under xvfb-run";
    ASSERT_EQ(platform::currentBackend(), platform::Backend::Desktop);
    Window root(nullptr, 0, 0, 100, 100, "");
    ASSERT_TRUE(frameStep(&root)); // the first frame starts the count
    const int frames = 15;
    auto start = Clock::now();
    for (int i = 0; i < frames; ++i)
        ASSERT_TRUE(frameStep(&root));
    std::chrono::duration<double> took = Clock::now() - start;
    EXPECT_GE(took.count(), (frames - 1) / double(platform::frameRate()))
        << platform::frameRate() << " a second";
}
