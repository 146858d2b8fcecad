// MessageBox: a small dialogue with a message and an "OK" button that closes it; the usual way of
// telling the user what failed or what a roll gave.
#pragma once

#include "toolkit/dialogue.h"
#include "toolkit/text.h"

class MessageBox : public Dialogue {
  public:
    Text* text; // the message

    // A width of 0 gives the default size of 35 x 15; an x or y of -1 places the box near the
    // middle of the parent, which must then be given.
    MessageBox(Window* parent, std::string caption, std::string message, float x, float y, float width,
               float height);
};
