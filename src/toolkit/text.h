// Text: static multi-line text in a box, wrapped at spaces and cut off at the box's height.
#pragma once

#include "toolkit/window.h"

class Text : public Window {
  public:
    std::string caption; // empty after construction; callers assign it

    Text(Window* parent, float x, float y, float width, float height, std::string value);
    ~Text() override;
    // The text takes the border colour, which the box's outline leaves current.
    void draw(float alpha) override;
};
