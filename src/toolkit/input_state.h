// The input state: process-wide variables for pointer, hover, focus, balloon, drag, press and keys.
// Written by the frame loop and the input callbacks; windows read several of them.
#pragma once

#include <deque>

class Window;
class Balloon;

// Logical units: the screen is 100 x 100 whatever its pixels.
constexpr float pixelsPerUnitX = 10.24f;
constexpr float pixelsPerUnitY = 7.68f;

extern int mouseX, mouseY;           // pointer in pixels
extern int mouseDeltaX, mouseDeltaY; // the last step of the pointer, in pixels
extern float logicalX, logicalY;     // pointer in logical units, refreshed when it moved
extern int pressX, pressY;           // pointer in pixels at the last press
extern int wheelPosition;
extern Window* hoverWindow;
extern Window* focusWindow;
extern Balloon* balloonWindow;
extern Window* draggedWindow;
extern Window* dragOrigin; // the parent of the dragged window when the drag began
extern float dragOffsetX, dragOffsetY;
extern Window* pressTarget; // compared with hoverWindow, never followed otherwise
extern bool leftDown, rightDown, middleDown;
extern bool keyDown[512];
extern std::deque<int> keyQueue;

// Puts every variable back to its start value, without deleting anything.
void resetInputState();
