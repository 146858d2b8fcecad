// Combat: the left-hand panel of the main screen and the owner of the tactical map. It keeps the
// combatants, rolls and sorts initiative, hands out turns and turns clicks on the map into actions.
#pragma once

#include <list>

#include "editors/delete_button.h"
#include "rules/random_source.h"
#include "toolkit/button.h"
#include "toolkit/dialogue.h"
#include "toolkit/window.h"

class ActionWindow;
class Character;
class Combat;
class Grenade;
class Map;

// The combatants, each with an "X" that takes it out of the fight.
class ListWindow : public Window {
  public:
    ListWindow(Combat* owner, float x, float y);
    // Builds the entries anew from the list; at least 10 high, 19 wide.
    virtual void refresh();

    std::list<Character*>* list; // not owned
    Combat* owner;
};

// Nothing here waits: every step that needs an answer opens a window whose closeHandler is the
// next step. Ready means conscious, not out of the round, and with actions left or not declared yet.
// busy is false only while acting: the map's clicks and hovers and the menu are ignored otherwise.
// A character dropped on the map joins at the end of the list in any state, its round values
// cleared; in the middle of a round it has no initiative, and declares when reached.
//
//   state        event                          action                                    next
//   preparing    "Begin Combat", nobody there   nothing                                   preparing
//   preparing    "Begin Combat"                 the button goes for good; round values    rolling, or
//                                               cleared; the first ready one rolls        nobody can act
//   rolling      its faction rolled already     on to the next ready one                  rolling
//   rolling      the roll's "Done"              initiative set; on to the next ready one  rolling
//   rolling      nobody left to roll            sorted, highest first; the turn passes    (turn)
//   (turn)       someone ready in this pass,    the menu shows it; not declared yet:      declaring,
//                else from the top again        "Number of Actions"                       or acting
//   (turn)       nobody ready                   everyone ages a round; the round begins   rolling, or
//                                                                                         nobody can act
//   declaring    0 or more, Enter               actions set; the "Actions" penalty        acting
//   declaring    below 0 or nothing, Enter      the field emptied                         declaring
//   acting       weapon, "Reload", "Other"      an action spent; the turn passes          (turn)
//   acting       "End Turn"                     the turn passes, nothing spent            (turn)
//   acting       a click on itself              "Yes, that's you. What now?"              acting
//   acting       a click on another combatant   a gun or a blade in hand: the attack      resolving
//   acting       a click on a free cell         a grenade in hand: the throw; else the    resolving
//                                               move along the way laid down, if any
//   acting       the action refused             its message box; nothing spent            acting
//   acting       a move that needs no roll      the mover stands at the end of the way;   acting, or
//                                               the turn passes if no action is left      (turn)
//   resolving    the action's OK                the turn passes                           (turn)
//   any          a grenade goes off             "Kaboom", and the grenade is gone         same
//   nobody can   "Next Round"                   everyone ages a round; the round begins,  rolling, nobody
//   act                                         or with nobody there "Begin Combat" is    can act, or
//                                               back                                      preparing
class Combat : public Window {
  public:
    Combat(Window* parent, float x, float y, float width, float height);
    // The characters that stood on the map stand nowhere now.
    ~Combat() override;

    // The map file, or the built-in flat map, in the panel's right part, its handlers bound.
    void loadDefaultMap();

    // "Begin Combat", and the start of each round.
    int beginRound(Window* sender);
    // "Next Round": every character ages by a round, then the round begins.
    int nextRound(Window* sender);
    // From the first entry when restarting or at the end, else from the one after the cursor: the
    // first ready combatant, or null at the end.
    Character* nextCombatant(bool restart);
    // The current combatant's faction rolls once, by its first member; others roll for themselves.
    void rollInitiative();
    int initiativeRolled(Window* sender);
    // Highest initiative first; a tie goes to the better "Perception", then to the coin.
    void sortCombatants();
    // The turn passes: to the next ready one in this pass, or in a new one, or to a new round.
    int advanceTurn(Window* sender);
    // The closeHandler of the "Number of Actions" dialogue.
    int actionsDeclared(Window* sender);

    // The map's handlers. Those that act for the current combatant do nothing unless it is acting.
    int onDrop(Window* sender);
    int onOccupiedClick(Window* sender);
    int onEmptyClick(Window* sender);
    int onEmptyHover(Window* sender);
    int onOccupiedHover(Window* sender);
    int onPathReset(Window* sender);

    int saveMap(Window* sender);

    // The actions of the current combatant. Each makes its window as a child of this panel; a
    // refused one is deleted at no cost, else the panel is busy until the action's OK passes the turn.
    void startAttack(Character* target);
    void startThrow();
    // Along the way laid down, if there is one. A move that needs no roll is over at once: the turn
    // passes only if it took the last action.
    void startMove();
    // The message box, and the grenade is gone.
    int grenadeExploded(Grenade* g);

    // In order of joining, then of initiative; not owned.
    std::list<Character*> combatants;
    Character* current = nullptr;
    ListWindow* listWindow;
    Button* beginButton;
    Button* nextButton;
    ActionWindow* actionWindow;
    Map* map = nullptr;
    bool busy = true;
    // Rounds begun since the panel was made; nothing shows it, a long test reads how far a fight went.
    int roundsBegun = 0;
    // Stands on current or at the end.
    std::list<Character*>::iterator cursor;
    // Tosses the coin between combatants equal in initiative and "Perception".
    RandomSource coin;

  private:
    // Whether the referee may act for the current combatant.
    bool acting() const { return current && !busy; }
    // The menu shows this combatant, or nothing.
    void showTurn(Character* c);
    // The map goes, and nobody stands on its cells any more.
    void dropMap();
    // A started action: a refused one goes, a running one makes the panel busy until it closes.
    bool started(Dialogue* action);
};

// The current combatant cannot be removed; another leaves the list and the map.
template <> int DeleteButton<Combat, Character>::remove(Window*);
