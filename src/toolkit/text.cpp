// Text: a box with wrapped text inside a margin of half a unit.
#include "toolkit/text.h"

#include "toolkit/font.h"

Text::Text(Window* parent, float x, float y, float width, float height, std::string value)
    : Window(parent, x, y, width, height, std::move(value)) {}

Text::~Text() = default;

void Text::draw(float a) {
    Window::draw(a);
    drawWrappedText(caption, 0.5f, 0.5f, width - 1, height - 1, fontSize);
}
