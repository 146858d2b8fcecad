// Label: a caption with no box around it. MenuEntry: a label on a background that lights up
// under the pointer, as in the dock and the list windows.
#pragma once

#include "toolkit/window.h"

class Label : public Window {
  public:
    std::string caption;

    Label(Window* parent, std::string caption, float x, float y, float width, float height, std::string value);
    ~Label() override;
    void draw(float alpha) override;
};
