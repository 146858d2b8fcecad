// Translation of GLFW 3 key numbers into the program's key codes.
#include <GLFW/glfw3.h>

#include "platform/glfw2.h"

namespace platform {

int translateKey(int key) {
    // GLFW 3 numbers the printable keys of the US layout by their ASCII code, letters upper case.
    if (key >= GLFW_KEY_SPACE && key <= GLFW_KEY_GRAVE_ACCENT) return key;
    if (key >= GLFW_KEY_KP_0 && key <= GLFW_KEY_KP_9) return KEY_KP_0 + (key - GLFW_KEY_KP_0);
    switch (key) {
    case GLFW_KEY_UP:
        return KEY_UP;
    case GLFW_KEY_DOWN:
        return KEY_DOWN;
    case GLFW_KEY_LEFT:
        return KEY_LEFT;
    case GLFW_KEY_RIGHT:
        return KEY_RIGHT;
    case GLFW_KEY_LEFT_SHIFT:
        return KEY_LSHIFT;
    case GLFW_KEY_RIGHT_SHIFT:
        return KEY_RSHIFT;
    case GLFW_KEY_ENTER:
        return KEY_ENTER;
    case GLFW_KEY_BACKSPACE:
        return KEY_BACKSPACE;
    case GLFW_KEY_PAGE_UP:
        return KEY_PAGEUP;
    case GLFW_KEY_PAGE_DOWN:
        return KEY_PAGEDOWN;
    case GLFW_KEY_KP_SUBTRACT:
        return KEY_KP_SUBTRACT;
    case GLFW_KEY_KP_ENTER:
        return KEY_KP_ENTER;
    default:
        return -1;
    }
}

} // namespace platform
