// Button: the bevelled push button. Switch: a button that keeps an on/off state and shows it
// sunken. DirectSwitch: a switch that keeps its state in someone else's bool.
#pragma once

#include "toolkit/window.h"

class Button : public Window {
  public:
    std::string caption;  // centred
    bool pressed = false; // drawn sunken; a Switch's state, which callers may set directly

    Button(Window* parent, std::string caption, float x, float y, float width, float height,
           std::string value);
    ~Button() override;
    // Background, bevel and caption; no outline in the border colour.
    void draw(float alpha) override;
};

class Switch : public Button {
  public:
    Switch(Window* parent, std::string caption, float x, float y, float width, float height,
           std::string value);
    // Turns over, then fires leftClickHandler, which thus reads the new state.
    void onLeftClick() override;
};

class DirectSwitch : public Switch {
  public:
    bool* variable; // not owned; must outlive the switch

    DirectSwitch(Window* parent, bool* variable, std::string caption, float x, float y, float width,
                 float height, std::string value);
    // Turns the variable over and shows it. The variable is read only here and at construction,
    // so a change made elsewhere shows after the next click.
    void onLeftClick() override;
};
