// The main screen as the program builds it: the data of the sample campaign, the dock along the top
// edge and the list windows that it opens, shot as build/screenshots/main_screen.png.
#include <gmock/gmock.h>

#include "catalogue_screen.h"
#include "combat/combat.h"
#include "editors/list_window.h"
#include "map/map.h"
#include "shell/hexfold.h"
#include "toolkit/menu_entry.h"

namespace {

class MainScreen : public CatalogueScreen {
  protected:
    // The application object stands in for the driver's root; it reads the working directory.
    void start() {
        delete root;
        root = app = new Hexfold();
        // Drawn in software under the sanitizers, the map would take most of the test's time.
        (map = static_cast<Combat*>(app->children.at(5))->map)->visible = false;
    }
    MenuEntry* dock(int i) { return static_cast<MenuEntry*>(app->children.at(i)); }
    Hexfold* app = nullptr;
    Map* map = nullptr;
};

TEST_F(MainScreen, TheDockOpensEachListUnderItsEntryOnceRaisesItAndForgetsItWhenClosed) {
    start();
    // Factions name characters, and characters hold skills of the catalogue: the order of loading.
    ASSERT_TRUE(!allFactions.empty() && !allItems.empty() && findCharacter("Mara Vell"));
    EXPECT_TRUE(allFactions.front()->members.size() == 2 && !findCharacter("Mara Vell")->skills.empty());
    const std::tuple<std::string, float, float> places[] = {{"Characters", 0, 10.25f},
                                                            {"NPCs", 10.25f, 5.5f},
                                                            {"Items", 15.75f, 6.25f},
                                                            {"Factions", 22, 8},
                                                            {"Skills", 30, 6}};
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(std::tuple(dock(i)->caption, dock(i)->x, dock(i)->width, dock(i)->y, dock(i)->height),
                  std::tuple_cat(places[i], std::tuple(0.0f, 3.0f)));

    clickOn(dock(2));
    ItemList* items = app->itemList;
    ASSERT_TRUE(items);
    EXPECT_EQ(std::tuple(items->caption, items->x, items->y),
              std::tuple(std::string("Item List"), 15.75f, 3.0f));
    drag(25, 4, 70, 30); // by the title bar
    float movedX = items->x;
    clickOn(dock(0));
    clickOn(dock(2));
    EXPECT_EQ(std::tuple(app->itemList, root->children.back(), items->x),
              std::tuple(items, (Window*)items, movedX))
        << "a second click raises the list where the user left it";
    EXPECT_EQ(std::pair(app->characterList->x, app->characterList->y), std::pair(0.0f, 3.0f));
    rightClickBody(items);
    EXPECT_EQ(app->itemList, nullptr);
    clickOn(dock(2));
    ASSERT_TRUE(app->itemList);
    EXPECT_EQ(std::pair(app->itemList->x, app->itemList->y), std::pair(15.75f, 3.0f))
        << "a new list, under its entry";

    // All five open, spread out by hand as a referee would.
    clickOn(dock(1));
    drag(11.5f, 4, 1.5f, 53);
    clickOn(dock(3));
    drag(23, 4, 23, 66);
    clickOn(dock(4));
    drag(31, 4, 37, 4);
    map->visible = true;
    moveOnto(entry(app->itemList, allItems.front()));
    ASSERT_TRUE(app->characterList && app->npcList && app->itemList && app->factionList && app->skillList);
    guidePicture("main_screen");
}

} // namespace
