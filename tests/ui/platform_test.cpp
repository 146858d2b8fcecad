// The window-library layer as the program sees it, through the scripted backend: input arrives
// only inside the swap, the polled state follows it, and moving the pointer by hand reports nothing.
#include <gtest/gtest.h>

#include "platform/glfw2.h"
#include "support/ui_driver.h"
#include "toolkit/frame_step.h"
#include "toolkit/input_state.h"

using namespace ui;
using namespace platform;

namespace {

class Platform : public UiTest {};

TEST_F(Platform, InputArrivesOnlyInsideTheSwapAndThePolledStateFollowsIt) {
    script::setButton(0, true);
    script::setKey('A', true);
    script::movePointer(50, 60);
    script::turnWheel(3);
    script::turnWheel(-1);
    EXPECT_EQ(glfwGetMouseButton(0) + glfwGetKey('A') + mouseX + glfwGetMouseWheel(), 0);
    glfwSwapBuffers();
    EXPECT_EQ(std::tuple(script::pending(), glfwGetMouseButton(0), glfwGetMouseButton(1), glfwGetKey('A'),
                         glfwGetMouseWheel(), mouseDeltaY, keyQueue.size()),
              std::tuple(0, 1, 0, 1, 2, 60, 1u));
    script::setKey('A', false);
    glfwSwapBuffers();
    EXPECT_EQ(glfwGetKey('A'), 0);

    // Setting the pointer by hand reports nothing; registering the callback reports the place.
    glfwSetMousePos(300, 200);
    glfwSwapBuffers();
    EXPECT_EQ(mouseX, 50);
    glfwSetMousePosCallback(mousePosCallback);
    EXPECT_EQ(std::pair(mouseX, mouseY), std::pair(300, 200));
}

TEST_F(Platform, OnlyOneWindowOpensAndItClosesWhenAsked) {
    EXPECT_EQ(glfwOpenWindow(1024, 768, 8, 8, 8, 8, 24, 0, GLFW_WINDOW), 0);
    script::requestClose();
    EXPECT_EQ(glfwGetWindowParam(GLFW_OPENED), 1);
    glfwSwapBuffers();
    EXPECT_EQ(glfwGetWindowParam(GLFW_OPENED), 0);
    script::reset();
    EXPECT_EQ(glfwGetWindowParam(GLFW_OPENED), 1);
}

} // namespace
