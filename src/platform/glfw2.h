// The window-library interface that the program is written against: one window, buttons and wheel
// polled each frame, pointer and key events delivered through callbacks, only inside the buffer
// swap. Implemented on GLFW 3 with a desktop backend (real input) and a scripted backend (input
// from a queue that a test or a demo fills). Nothing outside src/platform includes GLFW itself.
#pragma once

#include <string>

namespace platform {

// Window modes and parameters of the classic interface.
constexpr int GLFW_WINDOW = 0x00010001;
constexpr int GLFW_FULLSCREEN = 0x00010002;
constexpr int GLFW_OPENED = 0x00020001;

// Key codes of the program (letters as upper-case ASCII, digits and the other printable keys as
// their ASCII code, special keys from 256 up).
constexpr int KEY_UP = 283;
constexpr int KEY_DOWN = 284;
constexpr int KEY_LEFT = 285;
constexpr int KEY_RIGHT = 286;
constexpr int KEY_LSHIFT = 287;
constexpr int KEY_RSHIFT = 288;
constexpr int KEY_ENTER = 294;
constexpr int KEY_BACKSPACE = 295;
constexpr int KEY_PAGEUP = 298;
constexpr int KEY_PAGEDOWN = 299;
constexpr int KEY_KP_0 = 302;
constexpr int KEY_KP_9 = 311;
constexpr int KEY_KP_SUBTRACT = 314;
constexpr int KEY_KP_ENTER = 318;
constexpr int KEY_LAST = 511;

using KeyCallback = void (*)(int key, int action);
using MousePosCallback = void (*)(int x, int y);

// Starts the library; 1 on success, 0 on failure.
int glfwInit();
// Opens the one window; 1 on success, 0 on failure. Fails also when a window is open already.
int glfwOpenWindow(int width, int height, int redBits, int greenBits, int blueBits, int alphaBits,
                   int depthBits, int stencilBits, int mode);
void glfwTerminate();
// GLFW_OPENED: 1 while the window is open and nobody asked to close it.
int glfwGetWindowParam(int param);
// Delivers all pending input through the callbacks, then shows the back buffer. The desktop
// backend first sleeps what is left of the frame, so that the loop runs at most at the display's
// rate (60 a second where it is not known); the scripted backend never sleeps.
void glfwSwapBuffers();
// 1 while button n is held: 0 left, 1 right, 2 third.
int glfwGetMouseButton(int button);
// The wheel position: the sum of all wheel steps so far, starting at 0.
int glfwGetMouseWheel();
// 1 while the key with this code is held.
int glfwGetKey(int key);
// Moves the pointer, in pixels from the window's top left corner. No position callback results.
void glfwSetMousePos(int x, int y);
// action is 1 for a press and 0 for a release; keys without a code are not delivered.
void glfwSetKeyCallback(KeyCallback callback);
// Registering delivers the present pointer position once, at once.
void glfwSetMousePosCallback(MousePosCallback callback);

// --- Beyond the classic interface ---

enum class Backend { Desktop, Scripted };
// Chooses where input comes from; takes effect at the next glfwOpenWindow.
void selectBackend(Backend backend);
Backend currentBackend();

// The rate in frames a second to which the desktop backend holds the frame loop: the display's,
// or 60 where it is not known.
int frameRate();

// Why the last glfwInit or glfwOpenWindow failed, in a few words ("no display", ...).
std::string lastError();

// The program's code for a GLFW 3 key, or -1 for a key that the program has no code for.
// `layoutName` is what the active keyboard layout names the key (glfwGetKeyName), null for none:
// a printable key types what the layout puts on it, so "z" on the German key at the US "Y".
int translateKey(int glfwKey, const char* layoutName);

// The scripted backend's input queue. Each call appends an event; everything queued is delivered,
// in order, at the next glfwSwapBuffers.
namespace script {
void movePointer(int x, int y);
void setButton(int button, bool down);
void turnWheel(int steps);
void setKey(int key, bool down);
// Makes the window report itself closed from the next swap on, as if the user had closed it.
void requestClose();
// Forgets queued events and held buttons and keys, puts the pointer at (0, 0) and the wheel at 0.
void reset();
// Events waiting for the next swap.
int pending();
} // namespace script

} // namespace platform
