// What both backends share: the state that the polling calls read, and the one place through which
// a backend reports an input event while the swap delivers it. Internal to src/platform.
#pragma once

#include "platform/glfw2.h"

struct GLFWwindow;

namespace platform::detail {

struct InputState {
    double pointerX = 0, pointerY = 0;
    bool buttons[3] = {false, false, false};
    double wheel = 0;
    bool keys[KEY_LAST + 1] = {};
    KeyCallback keyCallback = nullptr;
    MousePosCallback mousePosCallback = nullptr;
};

InputState& input();
GLFWwindow* window();

// Report input; called by a backend while it delivers events inside the swap.
void reportPointer(double x, double y);
void reportButton(int button, bool down);
void reportWheel(double steps);
void reportKey(int key, bool down);

// The backends: each gathers its input into the reports above when the swap asks it to.
namespace desktop {
void attach(GLFWwindow* window);
// Sleeps what is left of the frame, so that the loop runs at most at the display's rate.
void pace();
void deliver();
} // namespace desktop
namespace scripted {
void attach(GLFWwindow* window);
void deliver();
bool closeRequested();
void clear();
} // namespace scripted

} // namespace platform::detail
