// MenuEntry: background, caption, and the light under the pointer.
#include "toolkit/menu_entry.h"

namespace {
constexpr float highlight = 0.15f;
}

MenuEntry::MenuEntry(Window* parent, std::string caption, float x, float y, float width, float height,
                     std::string value)
    : Label(parent, std::move(caption), x, y, width, height, std::move(value)) {
    borderColour[3] = 0;
}

void MenuEntry::draw(float a) {
    Window::draw(a);
    Label::draw(a);
}

// The look changes first: a handler may delete the entry (a list rebuilt from a hover), and
// nothing touches it after the handler.
void MenuEntry::onMouseEnter() {
    for (int i = 0; i < 3; ++i)
        backColour[i] += highlight;
    mouseEnterHandler(this);
}

void MenuEntry::onMouseLeave() {
    for (int i = 0; i < 3; ++i)
        backColour[i] -= highlight;
    mouseLeaveHandler(this);
}
