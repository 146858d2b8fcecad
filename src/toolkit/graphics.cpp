// Graphics set-up: the window, GLEW, and the state that every frame relies on.
#include "toolkit/graphics.h"

#include <GL/glew.h>
#include <IL/il.h>
#include <IL/ilut.h>

#include <cstdio>

#include "platform/glfw2.h"
#include "toolkit/font.h"

using namespace platform;

namespace {
bool opened = false;

void reportFailure() {
    std::fprintf(stderr, "hexfold: cannot open a 1024x768 OpenGL window: %s\n", lastError().c_str());
}
} // namespace

bool graphicsOpened() {
    return opened;
}

void setupGraphics() {
    if (!glfwInit()) {
        reportFailure();
        return;
    }
    if (!glfwOpenWindow(1024, 768, 8, 8, 8, 8, 24, 0, GLFW_WINDOW)) {
        reportFailure();
        glfwTerminate();
        return;
    }
    opened = true;
    glewInit();
    glViewport(0, 0, 1024, 768);
    // Every polygon is given top left, bottom left, bottom right, top right: counter-clockwise on
    // the screen. The other winding is culled.
    glEnable(GL_CULL_FACE);
    glClearColor(0, 0, 0, 1);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    // Logical (0, 0) at the top left corner of the clip space, (100, 100) at the bottom right.
    const GLfloat projection[16] = {0.02f, 0, 0, 0, 0, -0.02f, 0, 0, 0, 0, -1, 0, -1, 1, 0, 1};
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(projection);
    glMatrixMode(GL_MODELVIEW);
    loadFont();
}

void startImageLibrary() {
    ilInit();
    // The OpenGL renderer talks to the context; without a window there is none.
    if (!opened) return;
    ilutRenderer(ILUT_OPENGL);
    glDisable(GL_TEXTURE_2D);
}
