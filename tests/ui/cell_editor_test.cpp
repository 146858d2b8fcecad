// What the map does with right clicks and drops: the cell editor with its ring of wall switches,
// sheets for occupants, characters dragged onto cells. The editor over the sample map is shot as
// build/screenshots/cell_editor.png.
#include <gmock/gmock.h>

#include <cmath>

#include "editors/character_sheet.h"
#include "editors/list_window.h"
#include "map/cell_editor.h"
#include "map_screen.h"
#include "unit/model_test.h"

namespace {

class CellEditing : public MapScreen {
  protected:
    void SetUp() override {
        clearModel();
        MapScreen::SetUp();
        map->camera.placeAt({4.5f, 5, 20}); // the whole map in view
        map->pathResetHandler.bind(this, &CellEditing::note);
        map->dropHandler.bind(this, &CellEditing::note);
        movePixels(300, 100);
    }
    void TearDown() override { MapScreen::TearDown(), clearModel(); }
    int note(Window*) { return ++fired, 0; }
    // Coming onto the map from another window is an entry: the move after it finds the cell.
    void reach(Cell* c) { pointAt(c->centre + Vector3{0.1f, 0, 0}), pointAt(c->centre); }
    void rightClickAt(Cell* c) { reach(c), press(1), release(1); }
    template <class W> std::vector<W*> open() { return all<W>(root); }
    int fired = 0; // the map's reset and drop handlers
};

TEST_F(CellEditing, ARightClickOpensOneEditorForAFreeCellAndASheetForAnOccupantEachTime) {
    cell(6, 3)->walls[2] = true;
    rightClickAt(cell(6, 3));
    ASSERT_EQ(open<EditWindow<Cell>>().size(), 1u);
    EditWindow<Cell>* editor = open<EditWindow<Cell>>()[0];
    // Below the pointer, about centred on it.
    EXPECT_EQ(std::tuple(editor->object, editor->x, editor->y, editor->width, editor->height),
              std::tuple(cell(6, 3), logicalX - 11, logicalY + 6, 23.0f, 16.0f));
    // The switches stand where the sides are: 0 at the top, then clockwise.
    for (int i = 0; i < 6; ++i) {
        Switch* s = editor->wallSwitches[i];
        EXPECT_NEAR(s->x - 18.5f, 2.5f * std::sin(i * 1.0471976f), 1e-5f);
        EXPECT_NEAR(s->y - 10.5f, -3.33333f * std::cos(i * 1.0471976f), 1e-5f);
        EXPECT_EQ(std::pair(s->value, s->pressed), std::pair(std::to_string(i), i == 2));
    }
    clickOn(editor->children.at(1)); // the light
    type("3");
    EXPECT_EQ(cell(6, 3)->light.dice, 3);

    rightClickAt(cell(2, 2));
    map->committedPath.push_back({cell(1, 1), 0, 0, 1});
    rightClickAt(cell(6, 3));
    EXPECT_EQ(std::tuple(open<EditWindow<Cell>>().size(), root->children.back(), fired),
              std::tuple(std::size_t(2), static_cast<Window*>(editor), 1))
        << "the open editor is raised, and the laid-down way reset";
    Character& mara = person("Mara Vell", {});
    placeCharacter(&mara, cell(8, 2));
    rightClickAt(cell(8, 2));
    rightClickAt(cell(8, 2));
    auto sheets = open<EditWindow<Character>>();
    EXPECT_TRUE(sheets.size() == 2 && sheets[0]->object == &mara && sheets[1]->object == &mara);
    delete map;
    map = nullptr;
    EXPECT_TRUE(open<EditWindow<Cell>>().empty()) << "the editors die with the cells";
    frame();
}

TEST_F(CellEditing, AWallToggledInTheEditorTurnsTheNextWayAside) {
    Character mover{true};
    mover.actions = 1;
    placeCharacter(&mover, cell(2, 5));
    // The editor opens below the pointer, over the mover: the target lies above.
    Cell *middle = cell(2, 4), *target = cell(2, 3);
    auto straight = [&] {
        reach(target);
        map->findPath(&mover);
        for (std::size_t i = 1; i < map->pendingPath.size(); ++i)
            if (map->pendingPath[i - 1].cell == middle && map->pendingPath[i].cell == target) return true;
        return false;
    };
    ASSERT_TRUE(straight());
    int side = static_cast<int>(std::find(&middle->neighbours[0], &middle->neighbours[6], target) -
                                &middle->neighbours[0]);
    rightClickAt(middle);
    auto* editor = open<EditWindow<Cell>>().at(0);
    clickOn(editor->wallSwitches[side]);
    frame();
    EXPECT_TRUE(middle->walls[side] && editor->wallSwitches[side]->pressed);
    EXPECT_FALSE(straight());
    EXPECT_EQ(map->pendingPath.back().cell, target) << "round the wall";
}

// The editor writes the cell's fields without a word to anyone; the map, which follows the cell while
// its editor is open, shows each change at the next frame.
TEST_F(CellEditing, WhatTheEditorWritesShowsOnTheMapAtTheNextFrame) {
    showLight = showWalls = true;
    Cell* c = cell(6, 3);
    Vector3 north = 0.5f * (c->corners[0] + c->corners[1]);
    rightClickAt(c); // the editor opens below the cell
    auto* editor = open<EditWindow<Cell>>().at(0);
    ASSERT_TRUE(shows(c->centre, {255, 255, 255}));
    clickOn(editor->children.at(1)); // the light
    type("7");
    EXPECT_TRUE(shows(c->centre, {0, 0, 0}));
    ASSERT_EQ(countAround(north, 4, isRed), 0);
    clickOn(editor->wallSwitches[0]);
    EXPECT_GT(countAround(north, 4, isRed), 4);
}

TEST_F(CellEditing, ACharacterDroppedOnTheMapStandsOnTheHoveredCellAndBesideTheCellsOnNone) {
    Character& mara = person("Mara Vell", {});
    auto* list = new CharacterList(root);
    list->y = 20;
    frame();
    Rect from = screenRect(list->children.at(0));
    auto [px, py] = pixelOf(cell(6, 5)->centre);
    drag(from.centreX(), from.centreY(), px / pixelsPerUnitX, py / pixelsPerUnitY);
    EXPECT_EQ(std::tuple(mara.cell, cell(6, 5)->occupant, fired, list->children.size()),
              std::tuple(cell(6, 5), &mara, 1, std::size_t(1)));
    drag(from.centreX(), from.centreY(), 300 / pixelsPerUnitX, 100 / pixelsPerUnitY);
    EXPECT_EQ(std::pair(mara.cell, fired), std::pair(cell(6, 5), 1));
}

} // namespace

class CellEditorShot : public ui::UiTest {};

TEST_F(CellEditorShot, TheEditorOverTheSampleMap) {
    Map* sample = placed(openMap(root));
    sample->camera.placeAt({14, 12, 22});
    showWalls = true;
    movePixels(560, 300);
    movePixels(562, 300);
    ASSERT_TRUE(sample->hovered);
    press(1), release(1);
    auto* editor = dynamic_cast<EditWindow<Cell>*>(root->children.back());
    ASSERT_TRUE(editor);
    // A wall set elsewhere shows on its switch when the editor next brings them up to date.
    sample->hovered->walls[1] = true;
    clickOn(editor->wallSwitches[2]);
    EXPECT_TRUE(sample->hovered->walls[2] && editor->wallSwitches[1]->pressed);
    guidePicture("cell_editor");
    showWalls = false;
}
