// Dialogue: drawing the title bar, resizing and closing.
#include "toolkit/dialogue.h"

#include <GL/gl.h>

#include "toolkit/font.h"
#include "toolkit/shapes.h"

namespace {
// The title bar is this high whatever the font size; creators place children below it.
constexpr float titleBarHeight = 3;
} // namespace

Dialogue::Dialogue(Window* parent, std::string caption, float x, float y, float width, float height,
                   std::string value)
    : Window(parent, x, y, width, height, std::move(value)), caption(std::move(caption)) {
    movable = true;
    fixedOrder = false;
}

Dialogue::~Dialogue() = default;

void Dialogue::draw(float a) {
    Window::draw(a);
    glColor4f(0, 0, 0, a);
    fillRect(width, titleBarHeight);
    // The title is a quarter unit larger than the window's text, with equal margins left and on top.
    glColor4f(1, 1, 1, a);
    float size = fontSize + 0.25f;
    float margin = (titleBarHeight - size - 0.1f) * 0.5f;
    drawText(caption, margin, margin, size);
}

void Dialogue::resize(float w, float h) {
    width = w;
    height = h;
}

int Dialogue::close(Window*) {
    closeHandler(this);
    // Nothing of this object may be touched after the delete; the caller's onLeftClick does
    // nothing after firing either.
    delete this;
    return 0;
}
