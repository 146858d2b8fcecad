// The map's pictures against golden ones: scenes of the sample map and of a generated one, each
// compared with the picture that the map's first, immediate drawing made of it (tests/data/golden).
// Run with HEXFOLD_WRITE_GOLDEN=1 to draw the scenes anew with that drawing into the golden pictures,
// as a change of the sample map or the ground picture asks.
#include <cmath>
#include <cstdlib>
#include <functional>

#include "map_screen.h"
#include "rules/faction.h"
#include "support/golden.h"
#include "support/reference/immediate_map_drawing.h"

namespace {
// Up in the sky above the pivot, then turned about the vertical through it and tilted about the
// camera's own x axis, as the third button's gesture does.
void look(Camera& camera, Vector3 pivot, float height, float turn, float tilt) {
    camera = Camera();
    camera.placeAt({pivot.x, pivot.y, height});
    camera.rotateAround(turn, 0, 0, 1, true, &pivot);
    camera.rotateAround(tilt, 1, 0, 0, false, &pivot);
}

// Rolling ground in steps of a quarter metre with a plateau, walls round a yard, patches of
// darkness, smoke and protection, and every difficulty from 0 to 32.
void generate(HexMap& m) {
    auto inYard = [](int c, int r) { return c >= 10 && c <= 20 && r >= 30 && r <= 40; };
    for (int r = 0; r < m.rows; ++r)
        for (int c = 0; c < m.columns; ++c) {
            Cell* cell = at(m, c, r);
            float w = std::sin(c * 0.37f) + std::cos(r * 0.29f) + std::sin((c + r) * 0.11f);
            float h = w > 0 ? std::floor(w * 4) * 0.25f : 0;
            if (c >= 40 && c < 52 && r >= 8 && r < 20) h = 2.5f;
            cell->setHeight(h);
            cell->difficulty = (c * 7 + r * 3) % 33;
            cell->light.dice = (c / 8 + r / 8) % 4 == 0 ? (c + r) % 8 : 0;
            cell->cover.dice = (c - 20) * (c - 20) + (r - 44) * (r - 44) < 60 ? 1 + (c + r) % 3 : 0;
            cell->protect.dice = r % 11 == 3 && c % 5 != 0 ? 2 : 0;
        }
    for (int r = 0; r < m.rows; ++r)
        for (int c = 0; c < m.columns; ++c)
            for (int i = 0; i < 6; ++i) {
                Cell* n = at(m, c, r)->neighbours[i];
                int k = n ? static_cast<int>(n - at(m, 0, 0)) : -1;
                if (inYard(c, r) && (!n || !inYard(k % m.columns, k / m.columns)))
                    at(m, c, r)->walls[i] = true;
            }
}

bool writing() {
    const char* w = std::getenv("HEXFOLD_WRITE_GOLDEN");
    return w && *w && *w != '0';
}
} // namespace

class MapGolden : public MapScreen {
  protected:
    // A map in the fixture's place, on the ground picture.
    void show(HexMap* shown) {
        replaceMap(shown);
        map->texture = loadTexture("back.dds");
    }
    // Draws the frame and holds the map's part of it against the golden picture of that name.
    void check(const std::string& name) {
        std::string golden = std::string(HEXFOLD_GOLDEN_DIR) + "/" + name + ".png";
        if (writing()) {
            auto* immediate = new ImmediateMapView(root, *map);
            frame();
            delete immediate;
            map->visible = true;
            EXPECT_TRUE(ui::writePicture(ui::readFrame(215, 23, 808, 745), golden)) << golden;
            return;
        }
        frame();
        ui::Picture seen = ui::readFrame(215, 23, 808, 745);
        ui::Picture where;
        ui::Departure d = ui::compare(ui::readPicture(golden), seen, &where);
        // Off the seams, at most a faint shade; all told, at most 0.5% of the map's pixels.
        bool alike = d.differing <= 808 * 745 / 200 && d.worstOffSeam <= 2;
        EXPECT_TRUE(alike) << name << ": " << d.differing << " pixels differ, " << d.offSeam
                           << " off the seams by up to " << d.worstOffSeam << "; see "
                           << screenshotPath("golden-" + name);
        if (!alike) {
            ui::writePicture(seen, screenshotPath("golden-" + name));
            ui::writePicture(where, screenshotPath("golden-" + name + "-departures"));
        }
    }
    static std::string screenshotPath(const std::string& name) {
        return std::string(HEXFOLD_SCREENSHOT_DIR) + "/" + name + ".png";
    }
};

TEST_F(MapGolden, TheSampleMapFromTheCamerasThatTheGesturesReach) {
    show(static_cast<HexMap*>(loadMap(root)));
    ASSERT_EQ(std::pair(map->columns, map->rows), std::pair(40, 30));
    int walls = 0, oneSided = 0; // the shed is walled in on both sides of each wall; the hill rises to 4
    for (Cell* c : map->cells)
        for (int i = 0; i < 6; ++i)
            if (c->walls[i]) ++walls, oneSided += !c->neighbours[i] || !c->neighbours[i]->walls[(i + 3) % 6];
    EXPECT_TRUE(walls > 20 && oneSided == 0 && at(*map, 28, 15)->centre.z == 4) << walls << ", " << oneSided;
    check("sample_start");
    look(map->camera, {15, 15, 0}, 24, 0, 50);
    check("sample_tilted");
    look(map->camera, {11, 11, 0}, 29, -50, 60);
    showWalls = true;
    check("sample_turned_walls");
    look(map->camera, {15.1f, 15.25f, 0}, 42, 0, 0);
    check("sample_whole_walls");
    showWalls = false;
    look(map->camera, {15, 15, 0}, 36, 30, 35);
    bool* layers[4] = {&showLight, &showSmoke, &showProtection, &showDifficulty};
    const char* names[4] = {"sample_light", "sample_smoke", "sample_protection", "sample_difficulty"};
    for (int i = 0; i < 4; ++i) {
        *layers[i] = true;
        check(names[i]);
        *layers[i] = false;
    }
}

TEST_F(MapGolden, TheSampleMapWithOccupantsAndAWayLaidDownAndProposed) {
    show(static_cast<HexMap*>(loadMap(root)));
    Faction crew("Crew", 0.2f, 0.4f, 0.8f), wardens("Wardens", 0.9f, 0.5f, 0.1f);
    Character mover(true), mate(true), warden(true), loner(true);
    crew.addMember(&mover);
    crew.addMember(&mate);
    wardens.addMember(&warden);
    std::tie(mover.move, mover.moveSpeed, mover.actions) = std::tuple(10, 4, 1);
    placeCharacter(&mover, cell(6, 26));
    placeCharacter(&mate, cell(8, 25));
    placeCharacter(&warden, cell(20, 12));
    placeCharacter(&loner, cell(27, 16)); // on the hill
    map->hovered = cell(12, 20);
    map->findPath(&mover);
    map->commitPath();
    map->hovered = cell(17, 13);
    map->findPath(&mover);
    ASSERT_GT(map->pendingLength, map->committedLength);
    look(map->camera, {12, 20, 0}, 24, -20, 30);
    check("sample_path_occupants");
}

TEST_F(MapGolden, AGeneratedMapWithHillsAPlateauAndAYard) {
    show(new HexMap(root, 64, 64));
    generate(*map);
    look(map->camera, {24, 32, 0}, 70, -20, 40);
    check("generated_plain");
    showLight = showSmoke = showProtection = showDifficulty = showWalls = true;
    look(map->camera, {44, 24, 0}, 9, 120, 65);
    check("generated_layers_low");
    showLight = showSmoke = showProtection = showDifficulty = showWalls = false;
    // From inside the plateau, and from under the ground: the inner flanks that no camera above
    // the ground sees.
    Vector3 inside{35, 14.5f, 1.5f}; // the plateau stands 2.5 high
    look(map->camera, inside, 1.5f, 30, 90);
    check("generated_inside_plateau");
    look(map->camera, {30, 40, -8}, -8, 0, 150);
    check("generated_from_below");
}
