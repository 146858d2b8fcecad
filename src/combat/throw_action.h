// ThrowAction: a grenade thrown at a free cell: the fuse, the throw, where a miss comes down, and
// the grenade leaving the thrower's hands to go off at once or to burn for the rounds to come.
#pragma once

#include "combat/action_report.h"
#include "toolkit/dialogue.h"
#include "toolkit/text.h"

class Cell;
class Character;
class Grenade;
class Map;

// One throw, event by event:
//
//   step         event                         what happens                              next
//   constructor  made by the creator           refused: a message box, hidden; else the  timerSet
//                                              report and the TimerWindow
//   timerSet     "Impact", or Enter in the     the fuse; the throw's Roll opens          thrown
//                TimerWindow
//   thrown       "Done" in the throw's Roll    an action spent; a miss scatters by the   OK button
//                                              range; the grenade leaves the thrower,
//                                              goes off at once or joins the updatables
//   OK button    click                         close: the creator's closeHandler runs    -
//
// The creator binds the grenade's explodeHandler before the throw; a grenade that goes off on
// impact with nobody listening is deleted at once. From the throw on, a burning grenade is held by
// the list of updatables alone.
class ThrowAction : public Dialogue {
  public:
    // The target is the map's hovered cell.
    ThrowAction(Window* parent, Character* thrower, Map* map);

    Map* map;
    int difficulty = 0;
    int roll = 0;
    float distance = 0;
    Character* thrower;
    Cell* targetCell;
    // The thrower's weapon at the start: it stays in the inventory, and so alive, until thrown.
    Grenade* grenade;
    Text* text = nullptr;
    char buffer[reportBufferSize] = {};

  private:
    int timerSet(Window* sender);
    int thrown(Window* sender);
    // Where a miss comes down, from the target cell; reports how far off and which way.
    void scatter(float& x, float& y);
};
