// The map on the screen: the ground, the terrain layers, walls, occupants, the path line, the
// OpenGL state given back to the toolkit, the ground picture, and the sample map's screenshots.
#include <GL/gl.h>
#include <IL/il.h>
#include <unistd.h>

#include <filesystem>

#include "map_screen.h"
#include "rules/character.h"
#include "rules/faction.h"
#include "support/probe.h"

using ui::near;
using ui::Rgb;

namespace {
const Rgb white{255, 255, 255}, black{0, 0, 0};

// Without a ground picture (texture 0) the base pass is plain white, so that colours can be told.
class MapView : public MapScreen {};
} // namespace

TEST_F(MapView, EachLayerPaintsItsColourOverTheGroundWhenSwitchedOn) {
    Cell *dark = cell(2, 2), *dim = cell(4, 2), *smoke = cell(6, 2), *crates = cell(8, 2);
    dark->light.dice = smoke->light.dice = 7;
    dim->light.dice = 2;
    smoke->cover.dice = 3;
    crates->protect.dice = 2;
    const std::pair<int, Rgb> difficulties[] = {{1, {128, 255, 128}},
                                                {16, {255, 255, 128}},
                                                {31, {255, 128, 128}},
                                                {0, {128, 255, 128}},
                                                {8, {166, 255, 128}}};
    for (int i = 0; i < 5; ++i)
        cell(2 * i, 5)->difficulty = difficulties[i].first;
    frame();
    for (Cell* c : {dark, dim, smoke, crates, cell(0, 5)})
        EXPECT_EQ(colourAt(c->centre), white) << "every layer off";
    EXPECT_GT(countAround({1.75f, 2.0f, 0}, 3, [](Rgb c) { return near(c, black, 40); }), 0)
        << "outlines are black";
    EXPECT_EQ(colourAt({-2, 3, 0}), black) << "beside the map, the clear colour";

    showLight = showSmoke = showProtection = true;
    frame();
    EXPECT_EQ(colourAt(dark->centre), black) << "7 dice of darkness: an alpha above 1 counts as 1";
    EXPECT_TRUE(near(colourAt(dim->centre), {178, 178, 178}, 3)) << "2 dice: 30 percent black";
    EXPECT_TRUE(near(colourAt(smoke->centre), {115, 115, 115}, 3)) << "smoke over darkness, 45 percent white";
    EXPECT_TRUE(near(colourAt(crates->centre), {178, 255, 178}, 3)) << "protection: 30 percent green";
    showLight = showSmoke = showProtection = false;
    showDifficulty = true;
    frame();
    // Difficulty at half over white: 1 green, 16 yellow, 31 red; 0 is a red below 0, clamped.
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(near(colourAt(cell(2 * i, 5)->centre), difficulties[i].second, 3))
            << "difficulty " << difficulties[i].first << ": " << colourAt(cell(2 * i, 5)->centre);
}

TEST_F(MapView, AWallShowsRedOnItsOwnSideWhicheverNeighbourIsDrawnFirst) {
    Cell* c = cell(4, 3);
    auto middleOf = [&](int side) { return 0.5f * (c->corners[side] + c->corners[(side + 1) % 6]); };
    for (int side = 0; side < 6; ++side) {
        for (int i = 0; i < 6; ++i)
            c->walls[i] = i == side;
        showWalls = false;
        frame();
        EXPECT_EQ(countAround(middleOf(side), 6, isRed), 0) << "layer off, side " << side;
        showWalls = true;
        frame();
        EXPECT_GT(countAround(middleOf(side), 6, isRed), 6) << "layer on, side " << side;
        EXPECT_EQ(countAround(middleOf((side + 3) % 6), 6, isRed), 0) << "opposite side " << side;
    }
}

TEST_F(MapView, OccupantsShowInTheirFactionsColourAndTheWayInTheColoursOfItsSpeeds) {
    map->camera.placeAt({4, 4, 20});
    Character *mover = new Character(true), *loner = new Character(true);
    Faction* crew = new Faction("Crew", 0.2f, 0.4f, 0.8f);
    crew->addMember(mover);
    std::tie(mover->move, mover->moveSpeed, mover->actions) = std::tuple(2, 4, 1);
    placeCharacter(mover, cell(4, 8));
    placeCharacter(loner, cell(7, 7));
    map->hovered = cell(4, 1);
    map->findPath(mover);
    frame();
    Vector3 c = cell(4, 8)->centre;
    EXPECT_TRUE(near(colourAt(c + Vector3{0.25f, -0.3f, 0}), {51, 102, 204}, 2)) << "0.6 wide, 0.7 high";
    EXPECT_EQ(colourAt(c + Vector3{0.38f, 0, 0}), white);
    EXPECT_EQ(colourAt(cell(7, 7)->centre), black) << "without a faction";
    // At three quarters over white: cautious, normal, high speed, full out. (The target's end of
    // the line is its last pixel, which a line leaves out.)
    const std::pair<int, Rgb> line[] = {{7, {64, 64, 255}},  {6, {64, 255, 64}}, {5, {255, 255, 64}},
                                        {4, {255, 255, 64}}, {3, {255, 64, 64}}, {2, {255, 64, 64}}};
    for (const auto& [row, colour] : line)
        EXPECT_TRUE(near(colourAt(cell(4, row)->centre), colour, 12))
            << "row " << row << ": " << colourAt(cell(4, row)->centre);
    map->showPath = false;
    frame();
    EXPECT_EQ(colourAt(cell(4, 4)->centre), white) << "hidden";
    map->showPath = true;
    map->commitPath();
    map->pendingLength = 0;
    frame();
    EXPECT_EQ(colourAt(cell(4, 4)->centre), white) << "only a proposed length draws the line";
    delete crew;
    delete mover;
    delete loner;
}

TEST_F(MapView, TheToolkitDrawsAfterTheMapWithItsOwnState) {
    // What the toolkit relies on, read by a painter drawn before the map and by one drawn after it,
    // which also paints over the map as a dialogue would.
    using State = std::tuple<std::vector<GLint>, std::vector<GLfloat>>;
    auto record = [](State& s) {
        GLint i[9];
        glGetIntegerv(GL_VIEWPORT, i);
        glGetIntegerv(GL_DEPTH_FUNC, i + 4);
        glGetIntegerv(GL_MATRIX_MODE, i + 5);
        glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, i + 6);
        glGetIntegerv(GL_PROJECTION_STACK_DEPTH, i + 7);
        i[8] = glIsEnabled(GL_TEXTURE_2D) | glIsEnabled(GL_DEPTH_TEST) << 1 |
               glIsEnabled(GL_POLYGON_OFFSET_FILL) << 2 | glIsEnabled(GL_CULL_FACE) << 3 |
               glIsEnabled(GL_BLEND) << 4;
        GLfloat f[17];
        glGetFloatv(GL_PROJECTION_MATRIX, f);
        glGetFloatv(GL_LINE_WIDTH, f + 16);
        s = {std::vector<GLint>(i, i + 9), std::vector<GLfloat>(f, f + 17)};
    };
    State before, after;
    new ui::Painter(root, 0, 0, 1, 1, [&](ui::Painter&) { record(before); });
    std::rotate(root->children.begin(), root->children.end() - 1, root->children.end());
    new ui::Painter(root, 50, 40, 10, 10, [&](ui::Painter& p) {
        record(after);
        glColor4f(0.2f, 0.6f, 0.2f, 1);
        glRectf(0, p.height, p.width, 0);
    });
    showWalls = showDifficulty = true;
    map->texture = loadTexture("back.dds");
    frame();
    EXPECT_EQ(after, before);
    EXPECT_EQ(std::get<0>(after)[8], 3 << 3) << "culling and blending on, texturing and the depth test off";
    EXPECT_TRUE(near(pixel(55, 45), {51, 153, 51}, 2)) << "a window over the map is not hidden by its depth";
}

namespace {
// A picture of four coloured quarters that the test writes with the image library, so that the
// ground's scale, shift and repeat are checked whatever back.dds holds.
class GroundPicture : public MapScreen {
  protected:
    void SetUp() override {
        MapScreen::SetUp();
        path =
            (std::filesystem::temp_directory_path() / ("hexfold-ground-" + std::to_string(getpid()) + ".png"))
                .string();
        paint(quarters);
    }
    void TearDown() override {
        std::filesystem::remove(path);
        MapScreen::TearDown();
    }
    // Quarters in the order of the image's rows in memory: first row left, right; last row left, right.
    void paint(const Rgb (&colours)[4]) {
        const int side = 256; // fine enough that the quarters meet within a tenth of a unit
        std::vector<unsigned char> pixels;
        for (int r = 0; r < side; ++r)
            for (int c = 0; c < side; ++c) {
                const Rgb& q = colours[(r >= side / 2) * 2 + (c >= side / 2)];
                pixels.insert(pixels.end(), {(unsigned char)q.r, (unsigned char)q.g, (unsigned char)q.b});
            }
        ILuint image = 0;
        ilGenImages(1, &image);
        ilBindImage(image);
        ilTexImage(side, side, 1, 3, IL_RGB, IL_UNSIGNED_BYTE, pixels.data());
        ilEnable(IL_FILE_OVERWRITE);
        ASSERT_EQ(ilSaveImage(path.c_str()), IL_TRUE);
        ilDeleteImages(1, &image);
    }
    static constexpr Rgb quarters[4] = {{220, 40, 40}, {40, 40, 220}, {40, 220, 40}, {220, 220, 40}};
    std::string path;
};
} // namespace

TEST_F(GroundPicture, IsReadOnceAndRunsUnderTheWholeMapSpanningTwentySixAndAHalfUnits) {
    delete map;
    map = place(new HexMap(root, 48, 40));
    map->texture = loadTexture(path.c_str());
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D)) << "loading leaves texturing off";
    paint({{1, 2, 3}, {1, 2, 3}, {1, 2, 3}, {1, 2, 3}});
    EXPECT_EQ(loadTexture(path.c_str()), map->texture) << "cached by name, and not read again";
    for (int r = 0; r < 40; r += 3)
        for (int c = 0; c < 48; c += 5)
            map->cells[r * 48 + c]->setHeight(float(r % 4)); // no shift by height
    map->camera.placeAt({18, 20.5f, 50});
    frame();
    auto at = [&](float x, float y) {
        Cell* under = map->cellAt(x, y);
        return colourAt({x, y, under ? under->centre.z : 0});
    };
    auto sample = [&](float s, float t) { return at(26.5f * s, 0.5f + 26.5f * t); };
    // The first row lies at either edge by the image library's origin; the columns run with x.
    const Rgb* q = quarters;
    bool upright = near(sample(0.25f, 0.25f), q[0], 6);
    Rgb expected[4] = {upright ? q[0] : q[2], upright ? q[1] : q[3], upright ? q[2] : q[0],
                       upright ? q[3] : q[1]};
    for (int i = 0; i < 4; ++i) {
        Rgb seen = sample(0.25f + 0.5f * (i % 2), 0.25f + 0.5f * (i / 2));
        EXPECT_TRUE(near(seen, expected[i], 6)) << "quarter " << i << ": " << seen;
    }
    for (auto [s, t] : {std::pair{1.25f, 0.25f}, {0.25f, 1.25f}, {1.25f, 1.25f}})
        EXPECT_TRUE(near(sample(s, t), expected[0], 6)) << "repeated at " << s << ", " << t;
    // The quarters meet at x = 13.25 and, the picture starting at the map's upper edge, y = 13.75.
    EXPECT_TRUE(near(at(13.1f, 7), expected[0], 6) && near(at(13.4f, 7), expected[1], 6));
    EXPECT_TRUE(near(at(6.6f, 13.6f), expected[0], 6) && near(at(6.6f, 13.9f), expected[2], 6));
}

TEST_F(MapScreen, TheSampleMapFromTheStartCameraAndTurnedAndTiltedWithWallsAndAWay) {
    delete map;
    map = place(loadMap(root)); // from the campaign directory, where UI tests run
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(std::pair(map->columns, map->rows), std::pair(40, 30));
    frame();
    screenshot("map_start");
    EXPECT_GT(inkIn(61, 55, 38, 45), 20000) << "the map's corner fills the lower right of the view";
    EXPECT_EQ(inkIn(22, 4, 38, 40), 0) << "its origin lies in the middle of the view";
    // The ground picture, "back.dds", shows: mostly grass, and not one colour.
    int grass = countPixels(62, 56, 37, 43, [](Rgb c) { return c.g > c.r && c.g > c.b + 20; });
    int light = countPixels(62, 56, 37, 43, [](Rgb c) { return c.g > 120; });
    EXPECT_GT(grass, 20000) << "of some 28000 pixels";
    EXPECT_TRUE(light > 1000 && light < grass - 1000) << light;

    showWalls = true;
    Character* mover = new Character(true);
    std::tie(mover->move, mover->moveSpeed, mover->actions) = std::tuple(10, 4, 1);
    placeCharacter(mover, map->cellAt(10.25f, 12.0f)); // south-east of the shed's door
    map->hovered = map->cellAt(18.5f, 17.5f);          // up the hill's south-western slope
    map->findPath(mover);
    // From the south-west, looking north-east over the shed and the crates to the hill.
    Vector3 pivot{11, 11, 0};
    map->camera.placeAt({11, 11, 29});
    map->camera.rotateAround(-50, 0, 0, 1, true, &pivot);
    map->camera.rotateAround(60, 1, 0, 0, false, &pivot);
    frame();
    screenshot("map_turned");
    EXPECT_GT(countPixels(21, 3, 79, 97, isRed), 100) << "the shed's walls";
    EXPECT_GT(countPixels(21, 3, 79, 97, [](Rgb c) { return c.g > 200 && c.r < 120 && c.b < 120; }), 10)
        << "the way's stretch at normal speed";
    mover->cell->occupant = nullptr;
    delete mover;
}
