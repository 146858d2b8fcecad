// List entries: the name that stands for an item, character, skill or faction in a list window, on
// a character sheet or in a faction's window. Dragged onto another window it hands that window the
// object; a right click opens the object's edit window; the pointer over it shows a balloon.
#pragma once

#include <string>

#include "toolkit/menu_entry.h"

class Item;
class Character;
class Skill;
class Faction;

template <class T> class _ListEntry : public MenuEntry {
  public:
    // As wide as its caption and as high as the size plus a half, so that the entries of a list
    // touch each other; the width given is overwritten.
    _ListEntry(Window* parent, T* item, float x, float y, float width, float size);

    T* item; // not owned
};

template <class T> class ListEntry : public _ListEntry<T> {
  public:
    ListEntry(Window* parent, T* item, float x, float y, float width, float size)
        : _ListEntry<T>(parent, item, x, y, width, size) {}
    // Lights up, then shows the object's balloon.
    void onMouseEnter() override;
    // Fires rightClickHandler, then raises the object's open edit window, or opens one at the root.
    void onRightClick() override;
};

extern template class _ListEntry<Item>;
extern template class _ListEntry<Character>;
extern template class _ListEntry<Skill>;
extern template class _ListEntry<Faction>;
extern template class ListEntry<Item>;
extern template class ListEntry<Character>;
extern template class ListEntry<Skill>;
extern template class ListEntry<Faction>;

// What an item's balloon says: name and price, then the part of its class.
std::string itemDescription(const Item& item);
void showItemBalloon(Item* item);
// The faction's name and initiative, an empty line, and a member a line.
std::string factionDescription(const Faction& faction);

// The names of a weapon's damage type and of a melee weapon's difficulty class; a number outside
// the tables, which only a hand-edited file could bring, names the nearest entry.
const char* damageTypeName(int type);
const char* difficultyName(int difficultyClass);
