// Hexfold: the application object and root of the window tree.
#pragma once

#include "toolkit/window.h"

class Hexfold : public Window {
  public:
    // Opens the window, starts the image library, registers the input callbacks and builds the
    // screen.
    Hexfold();
    ~Hexfold() override;
    // The root paints nothing: the clear colour shows through.
    void draw(float alpha) override;
};
