// Label: a caption with no box around it. It takes the pointer like any window, which keeps a
// dialogue from being dragged by the text on it.
#pragma once

#include "toolkit/window.h"

class Label : public Window {
  public:
    std::string caption;

    Label(Window* parent, std::string caption, float x, float y, float width, float height,
          std::string value);
    ~Label() override;
    void draw(float alpha) override;
};
