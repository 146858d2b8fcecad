// DeleteButton: the small red "X" beside an entry, which takes the entry's object away from its
// owner. What that means depends on the pair; each pair gives its own `remove`.
#pragma once

#include <string>

#include "toolkit/button.h"

struct Penalty;
class Character;
class Skill;
class Item;
class Faction;

template <class I> std::string deleteButtonName(const I& item) {
    return item.name;
}
std::string deleteButtonName(const Penalty& penalty);

template <class C, class I> class DeleteButton : public Button {
  public:
    DeleteButton(Window* parent, C* owner, I* item, float x, float y, float width, float height)
        : Button(parent, "X", x, y, width, height, deleteButtonName(*item)), owner(owner), item(item) {
        textColour[0] = 1;
        textColour[1] = textColour[2] = 0;
        leftClickHandler.bind(this, &DeleteButton::remove);
    }

    // Takes the item away and returns 1. The owner's window follows the change, which may delete
    // this button, inside this very call or at the next draw: nothing here touches the button after
    // the change. Each pair defines it; a new pair declares its own beside its owner's window.
    int remove(Window* sender);

    C* owner; // not owned
    I* item;  // not owned
};

// Each takes the object off the character and announces the change; the skill, the item and the
// penalty are deleted.
template <> int DeleteButton<Character, Skill>::remove(Window*);
template <> int DeleteButton<Character, Item>::remove(Window*);
template <> int DeleteButton<Character, Penalty>::remove(Window*);
// The character leaves the faction and lives on.
template <> int DeleteButton<Faction, Character>::remove(Window*);
