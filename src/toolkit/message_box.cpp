// MessageBox: default size and placement, the message and the "OK" button at fixed places.
#include "toolkit/message_box.h"

#include "toolkit/button.h"

MessageBox::MessageBox(Window* parent, std::string caption, std::string message, float x, float y,
                       float width, float height)
    : Dialogue(parent, std::move(caption), x, y, width, height, "") {
    if (width == 0) {
        this->width = 35;
        this->height = 15;
    }
    // The subtrahends are not the default size: a default box on the whole screen stands at
    // (35, 38), a little right of and above the middle.
    if (parent) {
        if (x == -1) this->x = (parent->width - 30) * 0.5f;
        if (y == -1) this->y = (parent->height - 24) * 0.5f;
    }
    // The message and the button keep these places in a box of any size.
    text = new Text(this, 1, 4, 33, 5, "");
    text->caption = std::move(message);
    Button* ok = new Button(this, "OK", 13, 11, 7, 3, "");
    ok->leftClickHandler.bind(static_cast<Dialogue*>(this), &Dialogue::close);
}
