// Roll: the dice window through which every roll of the game goes. It rolls a character's code
// with a wild die, or takes what real dice showed, lets character points buy extra dice, and hands
// the total to whoever waits on its closeHandler.
#pragma once

#include <string>
#include <vector>

#include "rules/character.h"
#include "rules/random_source.h"
#include "toolkit/button.h"
#include "toolkit/dialogue.h"
#include "toolkit/edit.h"
#include "toolkit/label.h"

// A step that needs a roll opens a Roll, binds its closeHandler to the next step and returns to the
// frame loop. "Done" closes the window: the handler gets the Roll, reads total while the window
// still lives, and the window is deleted right after. No step keeps a pointer to a Roll.
//
// The window, event by event ("picked": points picked on a switch, waiting to be spent):
//
//   state    event                          action                                          next
//   waiting  "Roll", or Enter in entryEdit  the main roll: a typed number of 0 or more      rolled
//                                           stands as it is, else the code rolls with the
//                                           wild die; the dice row, "Total:", the switches
//                                           up to pointsLeft
//   rolled   "Done"                         close: closeHandler, then delete                -
//   rolled   switch i pressed               pointsChosen = i, "Roll", entryEdit shown and   picked
//                                           given the keys
//   picked   another switch pressed         the others released, pointsChosen = i           picked
//   picked   the switch released            pointsChosen = 0, "Done", entryEdit hidden      rolled
//   picked   "Roll", or Enter in entryEdit  spending: the typed number or i dice, a blue    rolled
//                                           row; points fall; switches beyond pointsLeft
//                                           hidden
//   rolled,  totalEdit changed              "Reset" shown                                   same
//   picked   Enter in totalEdit             total = the field, "Reset" hidden               same
//            "Reset"                        the field = total, "Reset" hidden               same
//
// Enter in entryEdit also empties the field; a click on "Roll" leaves it as it is.
class Roll : public Dialogue {
  public:
    static constexpr int switchCount = 5;

    // x or y of -1 centres the window in the parent, which must exist; the character must outlive
    // the window. name picks the code: "Damage", "PResist", "EResist", or a skill, which the window
    // then names as the skill actually found.
    Roll(Window* parent, Character* character, std::string name, int pointLimit, float x, float y);
    ~Roll() override;

    // Seeded from the system here, and drawn from only when something is rolled.
    RandomSource random;
    Character* character;
    std::string name;
    DiceCode code;
    int pointsChosen = 0;
    int pointsLeft;
    // The regular dice as rolled, or the one number typed.
    std::vector<int> dice;
    // The wild die and all that it exploded into.
    std::vector<int> wildDice;
    std::vector<int> pointDice;
    Button* rollButton;
    Button* resetButton;
    Switch* pointSwitches[switchCount];
    Switch* wildSwitch;
    NumEdit* entryEdit;
    NumEdit* totalEdit;
    Label* pointsLabel;
    // Valid while closeHandler runs.
    int total = 0;

  private:
    int mainRoll(Window* sender);
    int spendPoints(Window* sender);
    int pickPoints(Window* sender);
    int entryCommitted(Window* sender);
    int totalChanged(Window* sender);
    int totalCommitted(Window* sender);
    int resetTotal(Window* sender);

    // rollButton becomes "Done" and closes the window; entryEdit goes.
    void offerDone();
    // One die of a row: entry k, counting from 1, of the row at height y.
    void showDie(int value, int k, float y, const float colour[3]);
    // One die from the window's generator, added to total and appended to the list.
    int rollInto(std::vector<int>& list);
};
