// Dialogue: the movable top-level window, a background under a black title bar. Every list,
// editor and action window derives from it.
#pragma once

#include "toolkit/window.h"

class Dialogue : public Window {
  public:
    std::string caption; // the title

    // Movable, and raised by a drop on it, unlike a plain window.
    Dialogue(Window* parent, std::string caption, float x, float y, float width, float height,
             std::string value);
    ~Dialogue() override;
    void draw(float alpha) override;

    virtual void resize(float width, float height);
    // Fires closeHandler while the dialogue is still whole, then deletes it. In Delegate form so
    // that a button's leftClickHandler can be bound to it; the sender is not used.
    int close(Window* sender);
};
