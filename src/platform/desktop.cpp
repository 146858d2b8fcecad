// The desktop backend: input from the real window, gathered by GLFW 3 while the swap polls for
// events, translated into the program's key codes and reported in arrival order; and the pace of
// the frame loop, held to the display's rate.
#include <GLFW/glfw3.h>

#include <thread>

#include "platform/frame_pacer.h"
#include "platform/input_sink.h"

namespace platform::detail::desktop {
namespace {
int rate = 60;
FramePacer pacer(rate);

// The primary display's rate, or 60 where the window system does not say (a virtual display).
int displayRate() {
    GLFWmonitor* monitor = ::glfwGetPrimaryMonitor();
    const GLFWvidmode* mode = monitor ? ::glfwGetVideoMode(monitor) : nullptr;
    return mode && mode->refreshRate > 0 ? mode->refreshRate : 60;
}

void onCursor(GLFWwindow*, double x, double y) {
    reportPointer(x, y);
}

void onButton(GLFWwindow*, int button, int action, int) {
    if (action == GLFW_PRESS || action == GLFW_RELEASE) reportButton(button, action == GLFW_PRESS);
}

void onScroll(GLFWwindow*, double, double yOffset) {
    reportWheel(yOffset);
}

void onKey(GLFWwindow*, int key, int scancode, int action, int) {
    // The window system's auto-repeat is not passed on: a held key is one press.
    if (action == GLFW_REPEAT) return;
    int code = translateKey(key, ::glfwGetKeyName(key, scancode));
    if (code >= 0) reportKey(code, action == GLFW_PRESS);
}
} // namespace

void attach(GLFWwindow* window) {
    rate = displayRate();
    pacer = FramePacer(rate);
    ::glfwSetCursorPosCallback(window, onCursor);
    ::glfwSetMouseButtonCallback(window, onButton);
    ::glfwSetScrollCallback(window, onScroll);
    ::glfwSetKeyCallback(window, onKey);
}

void pace() {
    // The swap interval of 1 waits for the display only where the driver honours it; elsewhere an
    // idle window would spin a core. Sleeping before the events are polled keeps input fresh.
    std::this_thread::sleep_for(pacer.pause(FramePacer::Clock::now()));
}

void deliver() {
    ::glfwPollEvents();
}

} // namespace platform::detail::desktop

int platform::frameRate() {
    return detail::desktop::rate;
}
