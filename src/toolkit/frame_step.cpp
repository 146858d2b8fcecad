// The frame step: all input dispatch of the toolkit. It alone decides which window is hovered,
// pressed, dragged and focused, and it re-reads the global pointers after every call into a
// window, since any handler may delete windows (its own among them); the one window it holds
// itself, the one under the pointer, it holds by a WindowRef and finds again if it died.
//
// The left button, event by event:
//
//   state     event                                      action                    next
//   idle      button down                                press: remember target    pressed
//   pressed   pointer moved > 3 px over a window that    drag start                dragging
//             has dragDrop or movable
//   pressed   button up over the press target            onFocus, onLeftClick      idle
//   pressed   button up elsewhere                        nothing                   idle
//   dragging  pointer moves                              hover and ghost follow    dragging
//   dragging  button up                                  drop                      idle
#include "toolkit/frame_step.h"

#include <GL/gl.h>

#include "platform/glfw2.h"
#include "toolkit/balloon.h"
#include "toolkit/input_state.h"
#include "toolkit/window.h"

using namespace platform;

namespace {
void deleteBalloon() {
    if (balloonWindow) delete balloonWindow; // its destructor clears balloonWindow
}

// Sum of the positions of a window and all its ancestors, along the parent field.
void absolutePosition(Window* w, float& ax, float& ay) {
    ax = ay = 0;
    for (Window* p = w; p; p = p->parent) {
        ax += p->x;
        ay += p->y;
    }
}

void startDrag(Window* dragged) {
    pressTarget = nullptr;
    draggedWindow = dragged;
    dragOrigin = dragged->parent;
    if (dragged->dragDrop && dragOrigin) dragOrigin->onDragStart(dragged);
    // The start handler may have deleted the window, or its origin.
    if (draggedWindow != dragged) return;
    if (dragged->movable && dragOrigin) dragOrigin->removeChild(dragged);
    if (draggedWindow != dragged) return;
    float ax, ay;
    absolutePosition(dragged, ax, ay);
    dragOffsetX = ax - logicalX;
    dragOffsetY = ay - logicalY;
}

void pointerStep(Window* root) {
    logicalX = mouseX / pixelsPerUnitX;
    logicalY = mouseY / pixelsPerUnitY;
    // Found before the drag start, so that a window lifted out of the tree stays hovered for this
    // step; found again wherever a handler has deleted it.
    WindowRef target(hitTest(root, logicalX, logicalY));

    if (leftDown && !draggedWindow && hoverWindow && (hoverWindow->dragDrop || hoverWindow->movable)) {
        int dx = pressX - mouseX, dy = pressY - mouseY;
        if (dx * dx + dy * dy > 9) startDrag(hoverWindow);
        if (!target) target = hitTest(root, logicalX, logicalY);
    }

    if (target == hoverWindow) {
        target->onMouseMove(mouseDeltaX, mouseDeltaY);
    } else {
        deleteBalloon();
        if (hoverWindow) hoverWindow->onMouseLeave();
        if (!target) target = hitTest(root, logicalX, logicalY);
        hoverWindow = target;
        hoverWindow->onMouseEnter();
    }

    if (balloonWindow) {
        float w = balloonWindow->width, h = balloonWindow->height;
        float mx = logicalX, my = logicalY;
        float bx = (mx + 1 + w < 100) ? mx + 0.5f : mx - (w + 0.5f);
        if (bx < 0) bx = 100 - (w + 0.5f);
        float by = (my - 1 - h > 0) ? my - (h + 0.5f) : my + 0.5f;
        if (my + h > 100) by = 100 - (h + 0.5f);
        balloonWindow->x = bx;
        balloonWindow->y = by;
    }
    mouseDeltaX = mouseDeltaY = 0;
}

void drop() {
    Window* d = draggedWindow;
    if (d->dragDrop && hoverWindow) {
        Window* over = hoverWindow;
        bool accepted = over->acceptsDrop(d);
        // A dragged window that dies clears dragOrigin with it: the origin never hears of a dead one.
        if (dragOrigin) {
            if (accepted)
                dragOrigin->onDropAccepted(d);
            else
                dragOrigin->onDropRefused(d);
        }
        if (hoverWindow == over && !over->fixedOrder) over->raise();
    }
    // The move is done even when the drop was refused.
    if (draggedWindow == d && d->movable) {
        float nx = dragOffsetX + logicalX, ny = dragOffsetY + logicalY;
        for (Window* p = d->parent; p; p = p->parent) {
            nx -= p->x;
            ny -= p->y;
        }
        d->x = nx;
        d->y = ny;
        if (dragOrigin) dragOrigin->addChild(d);
    }
    draggedWindow = nullptr;
    dragOrigin = nullptr;
    pressTarget = nullptr;
    leftDown = false;
}

void leftButton() {
    bool down = glfwGetMouseButton(0) != 0;
    if (leftDown && !down) {
        if (!draggedWindow) {
            if (pressTarget && pressTarget == hoverWindow) {
                Window* w = hoverWindow;
                w->onFocus();
                if (hoverWindow == w) w->onLeftClick();
            }
            pressTarget = nullptr;
            leftDown = false;
        } else {
            drop();
        }
    }
    if (!leftDown && down) {
        pressX = mouseX;
        pressY = mouseY;
        leftDown = true;
        pressTarget = hoverWindow;
        if (focusWindow && focusWindow != hoverWindow) focusWindow->onFocusLost();
        deleteBalloon();
    }
}

void rightButton() {
    bool down = glfwGetMouseButton(1) != 0;
    if (rightDown && !down) {
        if (pressTarget && pressTarget == hoverWindow) hoverWindow->onRightClick();
        rightDown = false;
    }
    if (!rightDown && down) {
        pressX = mouseX;
        pressY = mouseY;
        rightDown = true;
        pressTarget = hoverWindow;
        deleteBalloon();
    }
}

void middleButton() {
    bool down = glfwGetMouseButton(2) != 0;
    if (middleDown && !down) {
        if (hoverWindow) hoverWindow->onButtonUp(2);
        middleDown = false;
    }
    if (!middleDown && down) {
        if (hoverWindow) hoverWindow->onButtonDown(2);
        middleDown = true;
        pressX = mouseX;
        pressY = mouseY;
    }
}

void drawFrame(Window* root) {
    glfwSwapBuffers();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glDisable(GL_DEPTH_TEST);
    root->visible = root->drawTree(1.0f);
    if (balloonWindow) balloonWindow->drawTree(1.0f);
    if (Window* d = draggedWindow) {
        // The ghost: drawn at the pointer, keeping the offset at which it was grabbed.
        glPushMatrix();
        glTranslatef(dragOffsetX + logicalX - d->x, dragOffsetY + logicalY - d->y, 0);
        float saved = d->alpha;
        d->alpha = 1.0f;
        d->drawTree(0.625f);
        d->alpha = saved;
        glPopMatrix();
    }
    glEnable(GL_DEPTH_TEST);
}
} // namespace

void keyCallback(int key, int action) {
    if (key < 0 || key >= 512) return;
    if (action == 0) {
        keyDown[key] = false;
    } else if (!keyDown[key]) {
        // A press of a key already held is a repeat of the window system: swallowed.
        keyQueue.push_back(key);
        keyDown[key] = true;
    }
}

void mousePosCallback(int x, int y) {
    mouseDeltaX = x - mouseX;
    mouseDeltaY = y - mouseY;
    mouseX = x;
    mouseY = y;
}

bool frameStep(Window* root) {
    if (glfwGetWindowParam(GLFW_OPENED) == 0) return false;

    int wheel = glfwGetMouseWheel();
    if (wheel != wheelPosition) {
        if (hoverWindow) hoverWindow->onWheel(wheel - wheelPosition);
        wheelPosition = wheel;
    }

    if (mouseDeltaX != 0 || mouseDeltaY != 0) pointerStep(root);

    leftButton();
    rightButton();
    middleButton();

    while (!keyQueue.empty()) {
        int key = keyQueue.front();
        keyQueue.pop_front();
        if (focusWindow) focusWindow->onKey(key);
    }

    drawFrame(root);
    return root->visible;
}
