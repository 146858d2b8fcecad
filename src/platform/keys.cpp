// Translation of GLFW 3 keys into the program's key codes: a printable key by what the active
// keyboard layout puts on it, a key of fixed meaning (arrows, shift, Enter, the keypad) by its place.
#include <GLFW/glfw3.h>

#include "platform/glfw2.h"

namespace platform {
namespace {
// The code of a key whose meaning is the same on every layout, or -1.
int fixedKey(int key) {
    if (key >= GLFW_KEY_KP_0 && key <= GLFW_KEY_KP_9) return KEY_KP_0 + (key - GLFW_KEY_KP_0);
    switch (key) {
    case GLFW_KEY_SPACE:
        return ' ';
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

// The keys that a layout may put a character on, outside the keypad; GLFW numbers them by what they
// carry on a US keyboard. A key that GLFW has no number for is named by its scancode alone.
bool layoutKey(int key) {
    return key == GLFW_KEY_UNKNOWN || (key >= GLFW_KEY_APOSTROPHE && key <= GLFW_KEY_WORLD_2);
}
} // namespace

int translateKey(int key, const char* layoutName) {
    int fixed = fixedKey(key);
    if (fixed >= 0 || !layoutKey(key)) return fixed;
    if (layoutName && layoutName[0]) {
        // One ASCII character; what else a layout carries (sharp s, accented letters) has no code.
        unsigned char c = static_cast<unsigned char>(layoutName[0]);
        if (layoutName[1] != '\0' || c <= ' ' || c >= 127) return -1;
        return (c >= 'a' && c <= 'z') ? c - 'a' + 'A' : c;
    }
    // The layout names nothing here (a dead key, a window system that does not tell): the key keeps
    // its place on a US keyboard.
    return key > GLFW_KEY_SPACE && key <= GLFW_KEY_GRAVE_ACCENT ? key : -1;
}

} // namespace platform
