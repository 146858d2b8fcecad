// The list windows over the catalogues: a column of entries, one for each element of a global
// list, in its order. A list shows what held when it was built; only a drop on it builds it anew.
#pragma once

#include <list>
#include <string>

#include "toolkit/dialogue.h"

class Item;
class Character;
class Skill;
class Faction;

template <class T> class List : public Dialogue {
  public:
    // Builds the entries and takes its size from them; the opener places it.
    List(Window* parent, std::string caption, std::list<T*>* source);

    // A right click on the body, beside the entries, closes the list.
    void onRightClick() override;
    // An entry of this list's kind that comes from another window is accepted; the origin then
    // hears of it (a sheet lets the item go). What comes from this list itself is refused.
    bool acceptsDrop(Window* dragged) override;
    // Throws every entry away and makes them anew from the source. Only the constructor and drops
    // call it.
    virtual void rebuild();

    std::list<T*>* source; // not owned
};

extern template class List<Item>;
extern template class List<Character>;
extern template class List<Skill>;
extern template class List<Faction>;

class ItemList : public List<Item> {
  public:
    ItemList(Window* parent, std::string caption);
};

class FactionList : public List<Faction> {
  public:
    FactionList(Window* parent, std::string caption);
};

// The player characters. An NPC dropped here is copied in as a player character, unless one of that
// name is listed already; the drop itself counts as refused, so that the NPC list keeps its entry.
class CharacterList : public List<Character> {
  public:
    explicit CharacterList(Window* parent);
    bool acceptsDrop(Window* dragged) override;
};

// The NPCs; the mirror of CharacterList.
class NPCList : public List<Character> {
  public:
    explicit NPCList(Window* parent);
    bool acceptsDrop(Window* dragged) override;
};

// The skill tree in three columns, the attributes as headings that cannot be dragged and their
// skills below them. The middle column does not count towards the height.
class SkillList : public List<Skill> {
  public:
    explicit SkillList(Window* parent);
    void rebuild() override;
};
