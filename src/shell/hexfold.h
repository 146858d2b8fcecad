// Hexfold: the application object and root of the window tree. It reads the catalogues at start
// and offers them through the dock, a row of five entries along the top edge, each of which opens
// its list window once and raises it after; the combat panel with its map fills the rest.
#pragma once

#include "toolkit/window.h"

class CharacterList;
class NPCList;
class ItemList;
class FactionList;
class SkillList;

class Hexfold : public Window {
  public:
    // Opens the window unless it is open already, starts the image library, registers the input
    // callbacks, reads the data and builds the screen.
    Hexfold();
    ~Hexfold() override;
    // The root paints nothing: the clear colour shows through.
    void draw(float alpha) override;

    // Items, skills, characters and NPCs, factions: later files name what earlier ones brought.
    void loadData();
    void createDock();

    // Dock handlers: open the list under the sender, or raise it if it is open.
    int openCharacterList(Window* sender);
    int openNpcList(Window* sender);
    int openItemList(Window* sender);
    int openFactionList(Window* sender);
    int openSkillList(Window* sender);
    // The closed handler of every list: the list is forgotten.
    int listClosed(Window* list);

    // The open list windows, null while closed; the tree owns them.
    CharacterList* characterList = nullptr;
    NPCList* npcList = nullptr;
    ItemList* itemList = nullptr;
    FactionList* factionList = nullptr;
    SkillList* skillList = nullptr;

  private:
    template <class L, class... Caption> int openList(L*& field, Window* sender, Caption... caption);
};
