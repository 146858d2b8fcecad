// The desktop backend: input from the real window, gathered by GLFW 3 while the swap polls for
// events, translated into the program's key codes and reported in arrival order.
#include <GLFW/glfw3.h>

#include "platform/input_sink.h"

namespace platform::detail::desktop {
namespace {
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
    ::glfwSetCursorPosCallback(window, onCursor);
    ::glfwSetMouseButtonCallback(window, onButton);
    ::glfwSetScrollCallback(window, onScroll);
    ::glfwSetKeyCallback(window, onKey);
}

void deliver() {
    ::glfwPollEvents();
}

} // namespace platform::detail::desktop
