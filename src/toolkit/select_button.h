// SelectButton: a drop-down choice. A button shows the present choice; a click opens the list of
// the other entries below it, and a click on an entry makes that the choice.
#pragma once

#include "toolkit/button.h"

class SelectButton : public Window {
  public:
    Button* button;         // the present choice: its caption and value
    Window* list;           // the other entries, one Button each, hidden while closed
    Delegate selectHandler; // fired with `button` when the user has chosen an entry

    SelectButton(Window* parent, float x, float y, float width, float height, std::string value);

    // The first entry with a value becomes the choice and is returned as `button`; later ones
    // join the list, which stays sorted by "caption|value". Returns the Button that was made.
    Button* addEntry(std::string caption, std::string value);
    // Makes the listed entry with this value the choice; fires nothing. An unknown value, or the
    // value of the present choice, changes nothing.
    void select(std::string value);

    // The handlers behind `button` and the entries; which of the first two is bound to `button`
    // is the state of the drop-down.
    int openList(Window* sender);
    int closeList(Window* sender);
    int choose(Window* entry);

  private:
    // The entry windows stay where they are; their texts move into sorted order.
    void sortEntries();
};
