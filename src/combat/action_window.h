// The action menu: whose turn it is, and what can be done without the map (another weapon, a
// reload, some other action, the end of the turn); and the dialogue in which a combatant declares
// its number of actions for the round.
#pragma once

#include <string>

#include "toolkit/dialogue.h"
#include "toolkit/edit.h"

class Character;
class Item;
class SelectButton;

class ActionWindow : public Window {
  public:
    // 19 x 31 whatever is given; empty until refresh.
    ActionWindow(Window* parent, float x, float y, float width, float height);

    // Rebuilds the menu for character, which the caller has set; nothing for null.
    void refresh();

    // Each costs an action and passes the turn.
    int weaponChosen(Window* entry);
    int reload(Window* sender);
    int other(Window* sender);
    // Passes the turn and spends nothing.
    int endTurn(Window* sender);

    Delegate doneHandler;           // the turn passes
    Character* character = nullptr; // not owned
    // The owner's flag: while it is set, an action is being resolved or a roll or a declaration is
    // awaited, and the menu does nothing.
    const bool* busy = nullptr;
    SelectButton* weaponChoice = nullptr;

  private:
    bool held() const { return !character || (busy && *busy); }
    // Spends the action and passes the turn; with none left, says so and spends nothing.
    int spend();
    bool noActionLeft();
};

// The key under which the menu lists an item: its address in decimal.
std::string itemKey(const Item* item);

// "How many actions?": a number of 0 or more and Enter close it; there is no other way out.
class NumActionRequest : public Dialogue {
  public:
    // Centred in the parent, with the keys in the field.
    explicit NumActionRequest(Window* parent);

    NumEdit* edit;

  private:
    int committed(Window* sender);
};
