// The input state's variables, all zero, false or null at start.
#include "toolkit/input_state.h"

#include <algorithm>

int mouseX = 0, mouseY = 0;
int mouseDeltaX = 0, mouseDeltaY = 0;
float logicalX = 0, logicalY = 0;
int pressX = 0, pressY = 0;
int wheelPosition = 0;
Window* hoverWindow = nullptr;
Window* focusWindow = nullptr;
Balloon* balloonWindow = nullptr;
Window* draggedWindow = nullptr;
Window* dragOrigin = nullptr;
float dragOffsetX = 0, dragOffsetY = 0;
Window* pressTarget = nullptr;
bool leftDown = false, rightDown = false, middleDown = false;
bool keyDown[512] = {};
std::deque<int> keyQueue;

void resetInputState() {
    mouseX = mouseY = mouseDeltaX = mouseDeltaY = 0;
    logicalX = logicalY = 0;
    pressX = pressY = 0;
    wheelPosition = 0;
    hoverWindow = focusWindow = draggedWindow = dragOrigin = pressTarget = nullptr;
    balloonWindow = nullptr;
    dragOffsetX = dragOffsetY = 0;
    leftDown = rightDown = middleDown = false;
    std::fill(std::begin(keyDown), std::end(keyDown), false);
    keyQueue.clear();
}
