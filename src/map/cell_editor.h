// The cell editor: a cell's terrain values and, in a ring of six switches placed like the cell's
// sides, its walls. One editor per cell.
#pragma once

#include <memory>

#include "editors/edit_window.h"
#include "toolkit/button.h"

class Cell;

template <> class EditWindow<Cell> : public _EditWindow<Cell> {
  public:
    // Below the pointer and about centred on it, kept on the screen; builds its children at once.
    // Use openCellEditor, which opens no second editor for a cell.
    EditWindow(Window* parent, Cell* cell);
    // The fields read the cell at every draw; only the switches need bringing up to date.
    void rebuild() override;
    // The wall on the switch's side takes the switch's state.
    int toggleWall(Window* sender);

    std::unique_ptr<Switch*[]> wallSwitches; // one for each side; the switches are children
};

// Raises the cell's open editor and gives null, or opens a new one under parent and gives it.
EditWindow<Cell>* openCellEditor(Window* parent, Cell* cell);
