// The classic window-library calls on top of GLFW 3: the window, the polled state, and the swap
// that asks the chosen backend to deliver its input through the callbacks.
#include <GLFW/glfw3.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "platform/input_sink.h"

namespace platform {
namespace detail {
namespace {
InputState inputState;
GLFWwindow* theWindow = nullptr;
bool initialised = false;
Backend backend = Backend::Desktop;
Backend openedBackend = Backend::Desktop;
std::string errorText;

void onError(int code, const char* description) {
    if (code == GLFW_PLATFORM_ERROR || code == GLFW_API_UNAVAILABLE || code == GLFW_VERSION_UNAVAILABLE)
        errorText = description ? description : "unknown error";
}

bool displayNamed() {
    const char* x11 = std::getenv("DISPLAY");
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    return (x11 && *x11) || (wayland && *wayland);
}
} // namespace

InputState& input() {
    return inputState;
}
GLFWwindow* window() {
    return theWindow;
}

void reportPointer(double x, double y) {
    inputState.pointerX = x;
    inputState.pointerY = y;
    if (inputState.mousePosCallback)
        inputState.mousePosCallback(static_cast<int>(std::floor(x)), static_cast<int>(std::floor(y)));
}

void reportButton(int button, bool down) {
    if (button >= 0 && button < 3) inputState.buttons[button] = down;
}

void reportWheel(double steps) {
    inputState.wheel += steps;
}

void reportKey(int key, bool down) {
    if (key < 0 || key > KEY_LAST) return;
    inputState.keys[key] = down;
    if (inputState.keyCallback) inputState.keyCallback(key, down ? 1 : 0);
}
} // namespace detail

using namespace detail;

namespace {
// How the process takes its memory. Both settings pay on a virtual machine, where each page fault
// costs some 15 us: a start took 13,000 of them, half in pictures and buffers that the renderer
// fills at once.
void setUpMemory() {
    // A software renderer takes the memory for a frame's primitives and frees it when the frame is
    // drawn. By default the freed top of the heap goes back to the system, and the next frame takes
    // every page of it in again, a fault each: on a large map that was half of a frame. The process
    // keeps up to a gigabyte of it instead.
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    // Blocks of up to 32 MB (the ground picture, the renderer's textures, the map's buffers) come
    // from the heap rather than from mappings of their own, and the heap starts with 80 MB whose
    // pages the kernel may back with huge ones: one fault for 2 MB instead of 512. Where the kernel
    // does not offer huge pages, or the heap cannot grow, nothing changes but the threshold.
    constexpr std::uintptr_t hugePage = std::uintptr_t(2) << 20;
    mallopt(M_MMAP_THRESHOLD, 32 << 20);
    mallopt(M_TOP_PAD, 64 << 20);
    auto before = reinterpret_cast<std::uintptr_t>(sbrk(0));
    void* block = std::malloc(16 << 20);
    asm volatile("" : : "r"(block) : "memory"); // the heap must really grow
    auto after = reinterpret_cast<std::uintptr_t>(sbrk(0));
    std::uintptr_t from = (before + hugePage - 1) & ~(hugePage - 1), to = after & ~(hugePage - 1);
    if (before != std::uintptr_t(-1) && to > from)
        madvise(reinterpret_cast<void*>(from), to - from, MADV_HUGEPAGE);
    std::free(block);
    mallopt(M_TOP_PAD, 128 << 10); // the default again
}
} // namespace

int glfwInit() {
    if (initialised) return 1;
    // Once a process: a second attempt after a failed one would only find the heap grown already.
    static const bool memorySetUp = (setUpMemory(), true);
    (void)memorySetUp;
    errorText.clear();
    ::glfwSetErrorCallback(onError);
    if (!displayNamed()) {
        errorText = "no display";
        return 0;
    }
    if (::glfwInit() != GLFW_TRUE) {
        if (errorText.empty()) errorText = "the window system could not be reached";
        return 0;
    }
    initialised = true;
    return 1;
}

int glfwOpenWindow(int width, int height, int redBits, int greenBits, int blueBits, int alphaBits,
                   int depthBits, int stencilBits, int mode) {
    if (!initialised || theWindow) return 0;
    ::glfwDefaultWindowHints();
    ::glfwWindowHint(GLFW_RED_BITS, redBits);
    ::glfwWindowHint(GLFW_GREEN_BITS, greenBits);
    ::glfwWindowHint(GLFW_BLUE_BITS, blueBits);
    ::glfwWindowHint(GLFW_ALPHA_BITS, alphaBits);
    ::glfwWindowHint(GLFW_DEPTH_BITS, depthBits);
    ::glfwWindowHint(GLFW_STENCIL_BITS, stencilBits);
    ::glfwWindowHint(GLFW_DOUBLEBUFFER, GLFW_TRUE);
    ::glfwWindowHint(GLFW_RESIZABLE, GLFW_FALSE);
    // The program draws with the fixed-function pipeline: any context version that keeps it.
    ::glfwWindowHint(GLFW_CLIENT_API, GLFW_OPENGL_API);
    GLFWmonitor* monitor = mode == GLFW_FULLSCREEN ? ::glfwGetPrimaryMonitor() : nullptr;
    theWindow = ::glfwCreateWindow(width, height, "Hexfold", monitor, nullptr);
    if (!theWindow) {
        if (errorText.empty()) errorText = "no suitable OpenGL configuration";
        return 0;
    }
    ::glfwMakeContextCurrent(theWindow);
    openedBackend = backend;
    // A new window starts with nothing held and the wheel at 0.
    for (bool& b : inputState.buttons)
        b = false;
    for (bool& k : inputState.keys)
        k = false;
    inputState.wheel = 0;
    if (openedBackend == Backend::Desktop) {
        // Swap at the display's rate instead of spinning a core; the backend's own pace holds the
        // loop where the swap does not wait.
        ::glfwSwapInterval(1);
        desktop::attach(theWindow);
    } else {
        ::glfwSwapInterval(0);
        scripted::attach(theWindow);
    }
    return 1;
}

void glfwTerminate() {
    if (!initialised) return;
    ::glfwTerminate();
    theWindow = nullptr;
    initialised = false;
}

int glfwGetWindowParam(int param) {
    if (param != GLFW_OPENED || !theWindow) return 0;
    if (openedBackend == Backend::Scripted) return scripted::closeRequested() ? 0 : 1;
    return ::glfwWindowShouldClose(theWindow) ? 0 : 1;
}

void glfwSwapBuffers() {
    if (!theWindow) return;
    // Only the desktop backend keeps time: the scripted one runs as fast as its driver asks.
    if (openedBackend == Backend::Desktop) {
        desktop::pace();
        desktop::deliver();
    } else {
        scripted::deliver();
    }
    ::glfwSwapBuffers(theWindow);
}

int glfwGetMouseButton(int button) {
    if (button < 0 || button > 2) return 0;
    return inputState.buttons[button] ? 1 : 0;
}

int glfwGetMouseWheel() {
    return static_cast<int>(std::lround(inputState.wheel));
}

int glfwGetKey(int key) {
    if (key < 0 || key > KEY_LAST) return 0;
    return inputState.keys[key] ? 1 : 0;
}

void glfwSetMousePos(int x, int y) {
    inputState.pointerX = x;
    inputState.pointerY = y;
    if (theWindow && openedBackend == Backend::Desktop) ::glfwSetCursorPos(theWindow, x, y);
}

void glfwSetKeyCallback(KeyCallback callback) {
    inputState.keyCallback = callback;
}

void glfwSetMousePosCallback(MousePosCallback callback) {
    inputState.mousePosCallback = callback;
    if (theWindow && openedBackend == Backend::Desktop) {
        double x = 0, y = 0;
        ::glfwGetCursorPos(theWindow, &x, &y);
        inputState.pointerX = x;
        inputState.pointerY = y;
    }
    if (callback)
        callback(static_cast<int>(std::floor(inputState.pointerX)),
                 static_cast<int>(std::floor(inputState.pointerY)));
}

void selectBackend(Backend chosen) {
    backend = chosen;
}
Backend currentBackend() {
    return theWindow ? openedBackend : backend;
}

std::string lastError() {
    return errorText.empty() ? "unknown error" : errorText;
}

} // namespace platform
