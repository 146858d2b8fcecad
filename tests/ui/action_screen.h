// The actions of combat made as the combat panel makes them: a map placed in a root, characters on
// its cells, a refused action deleted by its creator, dice typed into each roller that opens as a
// referee types them, and the report read byte for byte.
#pragma once

#include "catalogue_screen.h"
#include "combat/roll.h"
#include "platform/glfw2.h"
#include "rules/random_source.h"
#include "toolkit/button.h"
#include "toolkit/message_box.h"
#include "unit/map_test.h"
#include "unit/seed_for.h"

class ActionScreen : public CatalogueScreen {
  protected:
    void SetUp() override {
        CatalogueScreen::SetUp();
        // Long enough for a throw of 18 m along a column.
        map = placed(new HexMap(root, 16, 22));
        map->camera.placeAt({6, 11, 30});
        // The actions read the map, not its picture, which costs two thirds of a frame: it is drawn
        // only where a test takes a screenshot.
        map->visible = false;
    }
    void TearDown() override {
        // The actions point at the map: like the combat panel, the test closes them first.
        while (root && root->children.size() > 1)
            delete root->children.back();
        CatalogueScreen::TearDown();
    }

    Cell* cell(int column, int row) { return at(*map, column, row); }
    // A combatant on a cell, with one action declared.
    Character& fighter(const std::string& name, int column, int row,
                       std::initializer_list<std::pair<const char*, DiceCode>> skills) {
        Character& c = person(name, skills);
        placeCharacter(&c, cell(column, row));
        c.actions = 1;
        return c;
    }
    // What the combat panel's hover handler does when the pointer comes onto a free cell.
    void wayTo(Character& mover, int column, int row) {
        map->hovered = cell(column, row);
        map->findPath(&mover);
    }
    // A refused action comes back hidden and its creator deletes it; otherwise the test waits for
    // its close.
    template <class Action> Action* begin(Action* action) {
        frame();
        if (action->visible) {
            action->closeHandler.bind(this, &ActionScreen::closed);
            return action;
        }
        delete action;
        return nullptr;
    }
    int closed(Window*) { return ++closes, 0; }
    template <class W> W* front() { return inFront<W>(root); }
    // The caption and message of the box in front, which goes away.
    std::string refusal() {
        auto* box = front<MessageBox>();
        if (!box) return "no message box";
        std::string said = box->caption + ": " + box->text->caption;
        delete box;
        return said;
    }
    // Types what the dice showed into the roller in front, presses Enter and "Done"; gives who
    // rolled what.
    std::string rolled(int total) {
        Roll* roll = front<Roll>();
        if (!roll) return "no dice window";
        std::string what = roll->character->name + " " + roll->name;
        // The hand goes to the field first: a window that opens under a pointer standing still is
        // not hovered until the pointer moves.
        moveOnto(roll->entryEdit);
        type(std::to_string(total));
        tap(platform::KEY_ENTER);
        clickOn(roll->rollButton);
        return what;
    }
    // Presses the OK button that ends every action; says whether the action closed.
    bool pressOk(Dialogue* action) {
        auto* ok = captioned<Button>(action, "OK");
        if (!ok) return false;
        int before = closes;
        clickOn(ok);
        return closes == before + 1;
    }

    HexMap* map = nullptr;
    int closes = 0;
};
