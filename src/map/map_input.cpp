// What the pointer does on the map: hovering a cell, clicking it, laying a way down, opening the
// sheet or the editor of a cell, taking a dropped character, and the two camera gestures, panning
// with the right button and turning with the third.
#include "editors/character_sheet.h"
#include "editors/list_entry.h"
#include "map/cell_editor.h"
#include "map/map.h"
#include "platform/glfw2.h"
#include "toolkit/balloon.h"
#include "toolkit/input_state.h"

void Map::onMouseMove(int dx, int dy) {
    Vector3 hit;
    Cell* cell = pick(static_cast<float>(mouseX), static_cast<float>(mouseY), &hit);
    // Panning comes first when both gestures run at once.
    if (rightDown) pan(dx, dy, cell != nullptr);
    if (middleDown) turn(dx, dy, cell != nullptr);
    if (cell == hovered) return;
    hovered = cell;
    if (balloonWindow) delete balloonWindow; // its destructor clears the pointer
    if (!cell)
        clearPendingPath();
    else if (cell->occupant)
        occupiedHoverHandler(this);
    else
        emptyHoverHandler(this);
}

void Map::pan(int dx, int dy, bool overCell) {
    // The map is grabbed: the point under the pointer before the step comes under it again.
    float beforeX = static_cast<float>(mouseX - dx), beforeY = static_cast<float>(mouseY - dy);
    Vector3 a, b;
    if (overCell)
        pick(beforeX, beforeY, &a);
    else
        screenToPlane(beforeX, beforeY, &a, 0);
    screenToPlane(static_cast<float>(mouseX), static_cast<float>(mouseY), &b, a.z);
    pressTarget = nullptr; // this gesture is no click
    Vector3 p = camera.position();
    camera.placeAt({p.x + a.x - b.x, p.y + a.y - b.y, p.z});
}

void Map::turn(int dx, int dy, bool overCell) {
    // About the point under the press: 3 pixels make a degree, sideways about the vertical, up
    // and down about the camera's own x axis.
    Vector3 c;
    if (overCell)
        pick(static_cast<float>(pressX), static_cast<float>(pressY), &c);
    else
        screenToPlane(static_cast<float>(pressX), static_cast<float>(pressY), &c, 0);
    camera.rotateAround(dx / 3.0f, 0, 0, 1, true, &c);
    camera.rotateAround(-dy / 3.0f, 1, 0, 0, false, &c);
    // The pointer stands still while the view turns, so every step is measured from the press.
    platform::glfwSetMousePos(pressX, pressY);
    mouseX = pressX;
    mouseY = pressY;
    pressTarget = nullptr;
}

void Map::onButtonDown(int) {
    focusWindow = this;
}

void Map::onLeftClick() {
    if (!hovered) return;
    // The right shift key only: the left one does not lay a way down.
    if (platform::glfwGetKey(platform::KEY_RSHIFT)) {
        if (!hovered->occupant) commitPath();
        return;
    }
    if (hovered->occupant)
        occupiedClickHandler(this);
    else
        emptyClickHandler(this);
}

void Map::onRightClick() {
    // The windows open at the root, over everything.
    Window* root = this;
    while (root->parent)
        root = root->parent;
    if (hovered && hovered->occupant) new EditWindow<Character>(root, hovered->occupant);
    // The map draws from the cell's fields, which the editor writes without a word: it follows the cell.
    if (hovered && !hovered->occupant && openCellEditor(root, hovered)) followCell(hovered);
    if (!committedPath.empty()) pathResetHandler(this);
}

bool Map::acceptsDrop(Window* dragged) {
    auto* entry = dynamic_cast<ListEntry<Character>*>(dragged);
    if (entry && entry->item && hovered) {
        placeCharacter(entry->item, hovered);
        dropHandler(this);
    }
    return false;
}
