// The cell editor: its fields, the ring of wall switches, and toggling a wall.
#include "map/cell_editor.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "map/cell.h"
#include "toolkit/edit.h"
#include "toolkit/input_state.h"
#include "toolkit/label.h"

EditWindow<Cell>::EditWindow(Window* parent, Cell* cell) : _EditWindow<Cell>(parent, cell, "Edit Cell") {
    x = std::min(logicalX - 11, 75.0f);
    y = std::min(logicalY + 6, 80.0f);
    struct Row {
        const char* caption;
        int* field;
        float x, width;
    };
    const Row rows[] = {{"Light:", &cell->light.dice, 6, 16},
                        {"Cover:", &cell->cover.dice, 6, 16},
                        {"Protect:", &cell->protect.dice, 8.5f, 7},
                        {"Hardness:", &cell->hardness.dice, 8.5f, 7},
                        {"Difficulty:", &cell->difficulty, 8.5f, 7}};
    float rowY = 3.5f;
    for (const Row& row : rows) {
        new Label(this, row.caption, 0.5f, rowY, 4, 1.5f, "");
        new DirectNumEdit(this, row.field, row.x, rowY, row.width, 1.5f, "");
        rowY += 2;
    }
    // Side 0 at the top, then clockwise, right of the lower fields.
    wallSwitches = std::make_unique<Switch*[]>(cell->sides);
    for (int i = 0; i < cell->sides; ++i) {
        float a = i * (6.2831853f / cell->sides);
        auto* s = new Switch(this, "", 18.5f + 2.5f * std::sin(a), 10.5f - 3.33333f * std::cos(a), 1.5f, 2,
                             std::to_string(i));
        s->pressed = cell->walls[i];
        s->leftClickHandler.bind(this, &EditWindow<Cell>::toggleWall);
        wallSwitches[i] = s;
    }
    resize(23, 16);
}

// A cell that dies takes its editor with it at once (the observer's death notice), so the cell is
// alive here.
void EditWindow<Cell>::rebuild() {
    for (int i = 0; i < object->sides; ++i)
        wallSwitches[i]->pressed = object->walls[i];
}

int EditWindow<Cell>::toggleWall(Window* sender) {
    auto* wall = static_cast<Switch*>(sender);
    int side = std::stoi(wall->value);
    if (side < 0 || side >= object->sides) return 0;
    object->walls[side] = wall->pressed;
    // The map and this window learn of it; the next path search respects the wall.
    object->notifyChanged();
    return 0;
}

EditWindow<Cell>* openCellEditor(Window* parent, Cell* cell) {
    for (_Observer* o : cell->observers) {
        if (auto* open = dynamic_cast<EditWindow<Cell>*>(o)) {
            open->raise();
            return nullptr;
        }
    }
    return new EditWindow<Cell>(parent, cell);
}
