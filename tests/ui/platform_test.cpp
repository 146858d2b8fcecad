// The window-library layer as the program sees it, through the scripted backend: input arrives
// only inside the swap, the polled state follows it, and moving the pointer by hand reports nothing.
#include <gtest/gtest.h>

#include "platform/glfw2.h"
#include "shell/frame_step.h"
#include "support/ui_driver.h"
#include "toolkit/input_state.h"

using namespace ui;
using namespace platform;

namespace {

class Platform : public UiTest {};

TEST_F(Platform, InputIsDeliveredOnlyInsideTheSwap) {
    script::setButton(0, true);
    script::setKey('A', true);
    script::movePointer(50, 60);
    EXPECT_EQ(glfwGetMouseButton(0), 0);
    EXPECT_EQ(glfwGetKey('A'), 0);
    EXPECT_EQ(mouseX, 0);
    EXPECT_EQ(script::pending(), 3);
    glfwSwapBuffers();
    EXPECT_EQ(script::pending(), 0);
    EXPECT_EQ(glfwGetMouseButton(0), 1);
    EXPECT_EQ(glfwGetMouseButton(1), 0);
    EXPECT_EQ(glfwGetKey('A'), 1);
    EXPECT_EQ(mouseX, 50);
    EXPECT_EQ(mouseDeltaY, 60);
    EXPECT_EQ(keyQueue.size(), 1u) << "the key callback saw the press";
    script::setKey('A', false);
    script::setButton(0, false);
    glfwSwapBuffers();
    EXPECT_EQ(glfwGetKey('A'), 0);
    EXPECT_EQ(glfwGetMouseButton(0), 0);
}

TEST_F(Platform, TheWheelIsTheSumOfItsStepsFromZero) {
    EXPECT_EQ(glfwGetMouseWheel(), 0);
    script::turnWheel(3);
    script::turnWheel(-1);
    glfwSwapBuffers();
    EXPECT_EQ(glfwGetMouseWheel(), 2);
    script::turnWheel(-5);
    glfwSwapBuffers();
    EXPECT_EQ(glfwGetMouseWheel(), -3);
}

TEST_F(Platform, SettingThePointerMovesItWithoutAReport) {
    script::movePointer(100, 100);
    glfwSwapBuffers();
    glfwSetMousePos(300, 200);
    EXPECT_EQ(mouseX, 100) << "no position report for a move by hand";
    glfwSwapBuffers();
    EXPECT_EQ(mouseX, 100);
    // Registering the callback reports where the pointer is now.
    glfwSetMousePosCallback(mousePosCallback);
    EXPECT_EQ(mouseX, 300);
    EXPECT_EQ(mouseY, 200);
}

TEST_F(Platform, OnlyOneWindowOpensAndItClosesWhenAsked) {
    EXPECT_EQ(glfwGetWindowParam(GLFW_OPENED), 1);
    EXPECT_EQ(glfwOpenWindow(1024, 768, 8, 8, 8, 8, 24, 0, GLFW_WINDOW), 0) << "a second window is refused";
    EXPECT_EQ(currentBackend(), Backend::Scripted);
    script::requestClose();
    EXPECT_EQ(glfwGetWindowParam(GLFW_OPENED), 1);
    glfwSwapBuffers();
    EXPECT_EQ(glfwGetWindowParam(GLFW_OPENED), 0);
    script::reset();
    EXPECT_EQ(glfwGetWindowParam(GLFW_OPENED), 1);
}

} // namespace
