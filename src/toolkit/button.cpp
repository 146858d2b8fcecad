// Button, Switch and DirectSwitch: the bevel, and the state a click turns over.
#include "toolkit/button.h"

#include <GL/gl.h>

#include "toolkit/shapes.h"

Button::Button(Window* parent, std::string caption, float x, float y, float width, float height,
               std::string value)
    : Window(parent, x, y, width, height, std::move(value)), caption(std::move(caption)) {
    alignment = 2;
}

Button::~Button() = default;

void Button::draw(float a) {
    // The background's own alpha plays no part: a button is as opaque as its window.
    glColor4f(backColour[0], backColour[1], backColour[2], a);
    fillRect(width, height);
    // Light from the top left: raised, the top and left edges are light; sunken, the other pair.
    const float light = 0.85f, dark = 0.55f;
    float topLeft = pressed ? dark : light;
    float bottomRight = pressed ? light : dark;
    glBegin(GL_LINES);
    glColor4f(topLeft, topLeft, topLeft, a);
    glVertex2f(0, 0);
    glVertex2f(0, height);
    glVertex2f(0, 0);
    glVertex2f(width, 0);
    glColor4f(bottomRight, bottomRight, bottomRight, a);
    glVertex2f(width, height);
    glVertex2f(width, 0);
    glVertex2f(width, height);
    glVertex2f(0, height);
    glEnd();
    glColor4f(textColour[0], textColour[1], textColour[2], a);
    drawCaption(caption);
}

Switch::Switch(Window* parent, std::string caption, float x, float y, float width, float height,
               std::string value)
    : Button(parent, std::move(caption), x, y, width, height, std::move(value)) {}

void Switch::onLeftClick() {
    pressed = !pressed;
    leftClickHandler(this);
}

DirectSwitch::DirectSwitch(Window* parent, bool* variable, std::string caption, float x, float y, float width,
                           float height, std::string value)
    : Switch(parent, std::move(caption), x, y, width, height, std::move(value)), variable(variable) {
    pressed = *variable;
}

void DirectSwitch::onLeftClick() {
    *variable = !*variable;
    pressed = *variable;
    leftClickHandler(this);
}
