// Filled and outlined rectangles in the toolkit's winding.
#include "toolkit/shapes.h"

#include <GL/gl.h>

namespace {
void corners(float width, float height) {
    glVertex2f(0, 0);
    glVertex2f(0, height);
    glVertex2f(width, height);
    glVertex2f(width, 0);
}
} // namespace

void fillRect(float width, float height) {
    glBegin(GL_QUADS);
    corners(width, height);
    glEnd();
}

void outlineRect(float width, float height) {
    glBegin(GL_LINE_LOOP);
    corners(width, height);
    glEnd();
}
