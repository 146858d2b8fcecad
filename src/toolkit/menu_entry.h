// MenuEntry: a label on a background that lights up while the pointer rests on it; the dock's
// entries and the list windows' entries are made of it.
#pragma once

#include "toolkit/label.h"

class MenuEntry : public Label {
  public:
    // The outline is made invisible.
    MenuEntry(Window* parent, std::string caption, float x, float y, float width, float height,
              std::string value);
    void draw(float alpha) override;
    // Light up by 0.15 in each channel, and back on leaving, then fire the handler, which may
    // delete the entry. No clamping: the pointer cannot leave without having entered.
    void onMouseEnter() override;
    void onMouseLeave() override;
};
