// Hexfold: start-up in its fixed order.
#include "shell/hexfold.h"

#include "map/map.h"
#include "platform/glfw2.h"
#include "shell/frame_step.h"
#include "shell/graphics.h"

using namespace platform;

Hexfold::Hexfold() : Window(nullptr, 0, 0, 1, 1, "") {
    fixedOrder = true;
    fontSize = 1.5f;
    setupGraphics();
    startImageLibrary();
    glfwSetKeyCallback(keyCallback);
    glfwSetMousePosCallback(mousePosCallback);
    x = 0;
    y = 0;
    width = 100;
    height = 100;
    openMap(this)->setArea(20.99609375f, 3, 78.90625f, 97.00521f); // where Combat will put it
}

Hexfold::~Hexfold() = default;

void Hexfold::draw(float) {}
