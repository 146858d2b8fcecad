// Balloon: the one floating description box next to the pointer. It belongs to no window tree;
// the frame loop places it, draws it over everything and deletes it on any press.
#pragma once

#include "toolkit/window.h"

class Balloon : public Window {
  public:
    // Creates the balloon, sized to its text, and installs it as the one balloon, deleting the
    // former one. The caller keeps no pointer to it.
    Balloon(std::string text, float size);
};
