// Hexfold: start-up in its fixed order.
#include "shell/hexfold.h"

#include "map/map.h"
#include "platform/glfw2.h"
#include "shell/gallery.h"
#include "toolkit/balloon.h"
#include "toolkit/frame_step.h"
#include "toolkit/graphics.h"
#include "toolkit/input_state.h"

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
    // Until the dock and the combat panel exist, the screen shows the toolkit's widgets.
    openGallery(this);
}

Hexfold::~Hexfold() {
    // A balloon belongs to no tree: one still showing at the end is deleted here.
    if (balloonWindow) delete balloonWindow;
}

void Hexfold::draw(float) {}
