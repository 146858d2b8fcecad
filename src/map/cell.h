// Cell: one six-sided cell of the tactical map: its outline, height, terrain values, a wall flag for
// each side, its neighbours, the one character who stands on it, and the path search's scratch.
#pragma once

#include "map/vector3.h"
#include "rules/dice.h"
#include "rules/observer.h"

class Character;

class Cell : public Observed {
  public:
    // Six sides, all open, no neighbours, every corner at the origin.
    Cell();
    Cell(const Cell&) = delete;
    Cell& operator=(const Cell&) = delete;
    ~Cell() override;

    // The height of the top: the centre's z and every corner's.
    void setHeight(float z);

    Character* occupant = nullptr; // not owned
    // Only the dice count; the pips stay 0. Darkness and smoke do not add up, protection adds.
    DiceCode light;
    DiceCode cover;
    DiceCode protect;
    DiceCode hardness; // kept in the file, read by no rule
    int difficulty = 0;
    // Every loop over the sides runs to this, not to a constant. The arrays hold as many as a cell
    // can have, inside the cell: a map of a quarter of a million cells is then one allocation.
    static constexpr int maxSides = 6;
    int sides = 6;
    // The cell beyond each side, null beyond the edge; a walled side keeps its neighbour. Not owned.
    Cell* neighbours[maxSides] = {};
    // Side i runs from corners[i] to corners[(i + 1) % sides]; 0 is north, then clockwise.
    Vector3 corners[maxSides];
    // True: this side cannot be crossed on the way out of this cell.
    bool walls[maxSides] = {};

    // Scratch of the path search; meaningful on the cells of a found way and during a search.
    Cell* pathParent = nullptr;
    Vector3 centre; // centre of the top; z is the height
    float pathCost = 0;
    float pathEstimate = 0;
    unsigned char pathState = 255; // 255 unseen, 0 open, 1 closed
    unsigned pathOpenStamp = 0;    // which of its entries on the open list is the live one
};
