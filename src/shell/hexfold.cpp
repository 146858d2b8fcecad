// Hexfold: start-up in its fixed order, the dock and its list windows, and the combat panel.
#include "shell/hexfold.h"

#include "combat/combat.h"
#include "editors/list_window.h"
#include "platform/glfw2.h"
#include "rules/character_files.h"
#include "rules/faction.h"
#include "rules/item.h"
#include "rules/skill.h"
#include "toolkit/balloon.h"
#include "toolkit/frame_step.h"
#include "toolkit/graphics.h"
#include "toolkit/input_state.h"
#include "toolkit/menu_entry.h"

using namespace platform;

Hexfold::Hexfold() : Window(nullptr, 0, 0, 1, 1, "") {
    fixedOrder = true;
    fontSize = 1.5f;
    // There is one window per process: a second application object (the tests make one per case)
    // finds it open.
    if (!graphicsOpened()) {
        setupGraphics();
        startImageLibrary();
    }
    glfwSetKeyCallback(keyCallback);
    glfwSetMousePosCallback(mousePosCallback);
    loadData();
    x = 0;
    y = 0;
    width = 100;
    height = 100;
    createDock();
    // Last, so that the list windows opened later lie over it.
    (new Combat(this, 0, 3, 100, 97))->loadDefaultMap();
}

Hexfold::~Hexfold() {
    // A balloon belongs to no tree: one still showing at the end is deleted here.
    if (balloonWindow) delete balloonWindow;
}

void Hexfold::draw(float) {}

void Hexfold::loadData() {
    loadItems();
    loadSkills();
    loadCharacters();
    loadFactions();
}

void Hexfold::createDock() {
    struct Entry {
        const char* caption;
        float x, width;
        int (Hexfold::*open)(Window*);
    };
    const Entry entries[] = {{"Characters", 0, 10.25f, &Hexfold::openCharacterList},
                             {"NPCs", 10.25f, 5.5f, &Hexfold::openNpcList},
                             {"Items", 15.75f, 6.25f, &Hexfold::openItemList},
                             {"Factions", 22, 8, &Hexfold::openFactionList},
                             {"Skills", 30, 6, &Hexfold::openSkillList}};
    for (const Entry& e : entries)
        (new MenuEntry(this, e.caption, e.x, 0, e.width, 3, ""))->leftClickHandler.bind(this, e.open);
}

template <class L, class... Caption> int Hexfold::openList(L*& field, Window* sender, Caption... caption) {
    if (field) {
        field->raise();
        return 0;
    }
    field = new L(this, caption...);
    // Directly under the dock entry.
    field->x = sender->x;
    field->y = sender->y + sender->height;
    field->closeHandler.bind(this, &Hexfold::listClosed);
    return 0;
}

int Hexfold::openCharacterList(Window* sender) {
    return openList(characterList, sender);
}
int Hexfold::openNpcList(Window* sender) {
    return openList(npcList, sender);
}
int Hexfold::openItemList(Window* sender) {
    return openList(itemList, sender, std::string("Item List"));
}
int Hexfold::openFactionList(Window* sender) {
    return openList(factionList, sender, std::string("Faction List"));
}
int Hexfold::openSkillList(Window* sender) {
    return openList(skillList, sender);
}

int Hexfold::listClosed(Window* list) {
    if (list == characterList) characterList = nullptr;
    if (list == npcList) npcList = nullptr;
    if (list == itemList) itemList = nullptr;
    if (list == factionList) factionList = nullptr;
    if (list == skillList) skillList = nullptr;
    return 0;
}
