// Window: the base of everything on the screen. A rectangle in its parent's logical units, colours,
// flags, owned children in drawing order, and one Delegate for each kind of event.
#pragma once

#include <string>
#include <vector>

#include "toolkit/delegate.h"

class Window {
  public:
    std::vector<Window*> children; // drawing order: the last lies in front and is hit first
    Window* parent;
    std::string value;
    float x, y, width, height;
    float textColour[3] = {0, 0, 0};
    float alpha = 1;
    float backColour[4] = {0.7f, 0.7f, 0.7f, 1};
    float borderColour[4] = {0, 0, 0, 1};
    bool visible = true;
    bool dragDrop = false;
    bool movable = false;
    bool fixedOrder = true;
    float fontSize = 1.5f;
    int alignment = 0; // 0 left, 1 right, 2 centred

    Delegate leftClickHandler;
    Delegate middleClickHandler;
    Delegate rightClickHandler;
    Delegate mouseEnterHandler;
    Delegate mouseMoveHandler;
    Delegate mouseLeaveHandler;
    Delegate focusHandler;
    Delegate focusLostHandler;
    Delegate acceptsDropHandler;
    Delegate dragStartHandler;
    Delegate dropRefusedHandler;
    Delegate dropAcceptedHandler;
    Delegate childAddedHandler;
    Delegate childRemovedHandler;
    Delegate closeHandler;

    // Links the new window to the end of the parent's children (no childAddedHandler) and takes the
    // parent's font size and opacity.
    Window(Window* parent, float x, float y, float width, float height, std::string value);
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    virtual ~Window();
    virtual void onKey(int key);
    virtual void drawCaption(std::string caption);
    virtual void draw(float alpha);
    virtual bool afterDraw();
    virtual void onWheel(int delta);
    virtual void onMouseEnter();
    virtual void onMouseMove(int dx, int dy);
    virtual void onMouseLeave();
    virtual void onFocus();
    virtual void onFocusLost();
    virtual void onButtonDown(int button);
    virtual void onButtonUp(int button);
    virtual void onLeftClick();
    virtual void onMiddleClick();
    virtual void onRightClick();
    virtual void onDragStart(Window* dragged);
    virtual void onDropRefused(Window* dragged);
    virtual void onDropAccepted(Window* dragged);
    virtual bool acceptsDrop(Window* dragged);
    virtual void removeChild(Window* child);
    virtual void addChild(Window* child);

    // Moves the window to the end of its parent's children, in front of its siblings.
    void raise();
    void deleteChildren();
    // Draws this window and its subtree; gives afterDraw(), or false when not drawn.
    bool drawTree(float inherited);
};

// A pointer to a window that turns null when the window dies: for code that calls a handler and must
// then know whether a window that it holds survived it. Lives on the stack, for the length of a step.
class WindowRef {
  public:
    explicit WindowRef(Window* window = nullptr);
    ~WindowRef();
    WindowRef(const WindowRef&) = delete;
    WindowRef& operator=(const WindowRef&) = delete;
    WindowRef& operator=(Window* other) {
        window = other;
        return *this;
    }
    Window* get() const { return window; }
    Window* operator->() const { return window; }
    operator Window*() const { return window; }

  private:
    friend class Window;
    Window* window;
    WindowRef* previous;
    WindowRef* next;
};

// The deepest visible window under the point, which is given in the coordinates of root's parent.
// All four edges count as inside; the root itself is not tested.
Window* hitTest(Window* root, float x, float y);
