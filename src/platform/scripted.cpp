// The scripted backend: the same window and GL context, with input taken from a queue that a test
// or a demo fills. Everything queued is delivered at the next swap, through the same callbacks
// that the desktop backend uses, so the frame loop runs exactly the code that users run.
#include <GLFW/glfw3.h>

#include <deque>

#include "platform/input_sink.h"

namespace platform {
namespace detail::scripted {
namespace {
enum class Kind { Pointer, Button, Wheel, Key, Close };
struct Event {
    Kind kind;
    int a = 0, b = 0;
};
std::deque<Event> queue;
bool closing = false;
} // namespace

void attach(GLFWwindow*) {
    closing = false;
}

void deliver() {
    // Keep the connection to the window server serviced; the real window's own input is ignored.
    ::glfwPollEvents();
    while (!queue.empty()) {
        Event e = queue.front();
        queue.pop_front();
        switch (e.kind) {
        case Kind::Pointer:
            reportPointer(e.a, e.b);
            break;
        case Kind::Button:
            reportButton(e.a, e.b != 0);
            break;
        case Kind::Wheel:
            reportWheel(e.a);
            break;
        case Kind::Key:
            reportKey(e.a, e.b != 0);
            break;
        case Kind::Close:
            closing = true;
            break;
        }
    }
}

bool closeRequested() {
    return closing;
}

void clear() {
    queue.clear();
    closing = false;
}
} // namespace detail::scripted

namespace script {
using detail::scripted::Event;
using detail::scripted::Kind;
using detail::scripted::queue;

void movePointer(int x, int y) {
    queue.push_back({Kind::Pointer, x, y});
}
void setButton(int button, bool down) {
    queue.push_back({Kind::Button, button, down ? 1 : 0});
}
void turnWheel(int steps) {
    queue.push_back({Kind::Wheel, steps, 0});
}
void setKey(int key, bool down) {
    queue.push_back({Kind::Key, key, down ? 1 : 0});
}
void requestClose() {
    queue.push_back({Kind::Close, 0, 0});
}
int pending() {
    return static_cast<int>(queue.size());
}

void reset() {
    detail::scripted::clear();
    detail::InputState& s = detail::input();
    s.pointerX = s.pointerY = 0;
    s.wheel = 0;
    for (bool& b : s.buttons)
        b = false;
    for (bool& k : s.keys)
        k = false;
}
} // namespace script
} // namespace platform
