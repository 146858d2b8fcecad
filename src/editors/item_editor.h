// The item editor: one window for every class of item, with the rows of the item's class.
#pragma once

#include "editors/edit_window.h"

class Item;

template <> class EditWindow<Item> : public _EditWindow<Item> {
  public:
    EditWindow(Window* parent, Item* item);
    void rebuild() override;
};
