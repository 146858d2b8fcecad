// MoveAction: a run along the way laid down on the map, from the checks through the "Running" roll
// to where the runner ends up, what a failed roll costs, and the report of it all.
#pragma once

#include "combat/action_report.h"
#include "toolkit/dialogue.h"
#include "toolkit/text.h"

class Character;
class Map;

// One move, event by event:
//
//   step         event                            what happens                              next
//   constructor  made by the creator              refused: a message box, hidden; a way     -
//                                                 that needs no roll: the runner stands at
//                                                 its end, hidden; else the report and the
//                                                 "Running" roll
//   rolled       "Done" in the "Running" roll     resolveMove; a slip, fall or tumble line  OK button,
//                                                 by the margin; tumble damage is rolled    or resisted
//                                                 at once, and the "PResist" roll opens
//   resisted     "Done" in the "PResist" roll     "No damage", or takeDamage and the state  OK button
//   OK button    click                            close: the creator's closeHandler runs    -
//
// A hidden window is deleted by its creator. The destructor clears both ways on the map, so that
// every way ends with its move, refused or not: the map must outlive the action.
class MoveAction : public Dialogue {
  public:
    MoveAction(Window* parent, Character* mover, Map* map);
    ~MoveAction() override;

    Map* map;
    // What a tumble did, before the runner resists it.
    int damage = 0;
    Character* mover;
    Text* text = nullptr;
    char buffer[reportBufferSize] = {};

  private:
    int rolled(Window* sender);
    int resisted(Window* sender);
};
