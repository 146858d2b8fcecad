// Balloon: a grey box sized to a label that holds its text.
#include "toolkit/balloon.h"

#include "toolkit/font.h"
#include "toolkit/input_state.h"
#include "toolkit/label.h"

Balloon::Balloon(std::string text, float size) : Window(nullptr, 0, 0, 1, 1, "") {
    fontSize = size;
    float w = measureText(text, size);
    float h = lineCount(text) * size;
    new Label(this, text, 0.25f, 0.5f, w, h, "");
    width = w + 1;
    height = h + 1;
    if (balloonWindow) delete balloonWindow;
    balloonWindow = this;
}
