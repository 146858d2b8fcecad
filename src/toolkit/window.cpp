// Window: construction and destruction in the tree, drawing, caption layout, hit testing and the
// default event operations, which fire the matching Delegate.
#include "toolkit/window.h"

#include <GL/gl.h>

#include <algorithm>

#include "toolkit/balloon.h"
#include "toolkit/font.h"
#include "toolkit/input_state.h"
#include "toolkit/shapes.h"

namespace {
WindowRef* firstRef = nullptr; // the live references, newest first
}

WindowRef::WindowRef(Window* window) : window(window), previous(nullptr), next(firstRef) {
    if (next) next->previous = this;
    firstRef = this;
}

WindowRef::~WindowRef() {
    if (previous)
        previous->next = next;
    else
        firstRef = next;
    if (next) next->previous = previous;
}

Window::Window(Window* parent, float x, float y, float width, float height, std::string value)
    : parent(parent), value(std::move(value)), x(x), y(y), width(width), height(height) {
    if (parent) {
        parent->children.push_back(this);
        fontSize = parent->fontSize;
        alpha = parent->alpha;
    }
}

Window::~Window() {
    if (parent) std::erase(parent->children, this);
    for (WindowRef* ref = firstRef; ref; ref = ref->next)
        if (ref->window == this) ref->window = nullptr;
    if (focusWindow == this) focusWindow = nullptr;
    if (balloonWindow == this) balloonWindow = nullptr;
    if (hoverWindow == this) hoverWindow = nullptr;
    if (draggedWindow == this) {
        draggedWindow = nullptr;
        dragOrigin = nullptr;
    }
    if (dragOrigin == this) {
        // A dying origin must never be called at the drop. A movable window lifted out of it is
        // still its own, though outside its children: it dies with it, which ends the drag.
        dragOrigin = nullptr;
        Window* lifted = draggedWindow;
        if (lifted && lifted->movable && lifted->parent == this &&
            std::find(children.begin(), children.end(), lifted) == children.end())
            delete lifted;
    }
    deleteChildren();
}

void Window::deleteChildren() {
    // Each child takes itself out of this list as it dies, and may take siblings with it; one that
    // was moved under another parent meanwhile is taken out here.
    while (!children.empty()) {
        Window* child = children.front();
        delete child;
        if (!children.empty() && children.front() == child) children.erase(children.begin());
    }
}

void Window::onKey(int) {}

void Window::drawCaption(std::string caption) {
    int lines = lineCount(caption);
    float size = fontSize;
    float top = (height - size * lines - 0.1f) * 0.5f;
    float left = top + 0.25f;
    float at = left;
    if (alignment == 1)
        at = width - (measureText(caption, size) + left);
    else if (alignment == 2)
        at = (width - measureText(caption, size)) * 0.5f;
    drawText(caption, at, top, size);
}

void Window::draw(float a) {
    glColor4f(backColour[0], backColour[1], backColour[2], backColour[3] * a);
    fillRect(width, height);
    glColor4f(borderColour[0], borderColour[1], borderColour[2], borderColour[3] * a);
    outlineRect(width, height);
}

bool Window::afterDraw() {
    return true;
}
void Window::onWheel(int) {}
void Window::onMouseEnter() {
    mouseEnterHandler(this);
}
void Window::onMouseMove(int, int) {
    mouseMoveHandler(this);
}
void Window::onMouseLeave() {
    mouseLeaveHandler(this);
}

void Window::onFocus() {
    focusWindow = this;
    focusHandler(this);
}

void Window::onFocusLost() {
    focusLostHandler(this);
}
void Window::onButtonDown(int) {}
void Window::onButtonUp(int) {}
void Window::onLeftClick() {
    leftClickHandler(this);
}
void Window::onMiddleClick() {
    middleClickHandler(this);
}
void Window::onRightClick() {
    rightClickHandler(this);
}
void Window::onDragStart(Window* dragged) {
    dragStartHandler(dragged);
}
void Window::onDropRefused(Window* dragged) {
    dropRefusedHandler(dragged);
}
void Window::onDropAccepted(Window* dragged) {
    dropAcceptedHandler(dragged);
}
bool Window::acceptsDrop(Window* dragged) {
    return acceptsDropHandler(dragged) != 0;
}

void Window::removeChild(Window* child) {
    std::erase(children, child);
    childRemovedHandler(child);
}

void Window::addChild(Window* child) {
    children.push_back(child);
    child->parent = this;
    childAddedHandler(child);
}

void Window::raise() {
    if (!parent) return;
    std::erase(parent->children, this);
    parent->children.push_back(this);
}

bool Window::drawTree(float inherited) {
    if (!visible) return false;
    if (parent && (x > parent->width || x + width < 0 || y > parent->height || y + height < 0)) return false;
    glPushMatrix();
    glTranslatef(x, y, 0);
    float a = alpha * inherited;
    draw(a);
    // By index, so that a child added while drawing is drawn too and nothing is read past the end.
    for (std::size_t i = 0; i < children.size(); ++i)
        children[i]->drawTree(a);
    glPopMatrix();
    return afterDraw();
}

Window* hitTest(Window* root, float x, float y) {
    Window* current = root;
    for (;;) {
        x -= current->x;
        y -= current->y;
        Window* next = nullptr;
        for (auto it = current->children.rbegin(); it != current->children.rend(); ++it) {
            Window* c = *it;
            if (c->visible && c->x <= x && x <= c->x + c->width && c->y <= y && y <= c->y + c->height) {
                next = c;
                break;
            }
        }
        if (!next) return current;
        current = next;
    }
}
