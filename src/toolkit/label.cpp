// Label: draws its caption in the text colour, nothing else.
#include "toolkit/label.h"

#include <GL/gl.h>

Label::Label(Window* parent, std::string caption, float x, float y, float width, float height,
             std::string value)
    : Window(parent, x, y, width, height, std::move(value)), caption(std::move(caption)) {}

Label::~Label() = default;

void Label::draw(float a) {
    glColor4f(textColour[0], textColour[1], textColour[2], a);
    drawCaption(caption);
}
