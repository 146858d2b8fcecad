// The map on the screen: the ground, the terrain layers and their colours, walls, occupants, the
// path line, the OpenGL state given back to the toolkit, the ground picture, and the sample map.
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

// Without a ground picture (texture 0) the base pass is plain white, so colours can be told.
class MapView : public MapScreen {
  protected:
    void SetUp() override {
        MapScreen::SetUp();
        map->texture = 0;
    }
};
} // namespace

TEST_F(MapView, CellsAreWhiteWithBlackOutlinesAndNothingOutsideTheMap) {
    frame();
    EXPECT_EQ(colourAt(cell(2, 2)->centre), white);
    EXPECT_GT(countAround({1.75f, 2.0f, 0}, 4, 4, [](Rgb c) { return near(c, black, 40); }), 0)
        << "the outline through a corner";
    EXPECT_EQ(colourAt({-2, 3, 0}), black) << "left of the map, the clear colour";
    EXPECT_EQ(colourAt({3, -1, 0}), black) << "above it";
}

TEST_F(MapView, EachLayerPaintsItsColourOverTheGroundWhenSwitchedOn) {
    Cell *dark = cell(2, 2), *dim = cell(4, 2), *smoke = cell(6, 2), *crates = cell(2, 4);
    dark->light.dice = 7;
    dim->light.dice = 2;
    smoke->light.dice = 7;
    smoke->cover.dice = 3;
    crates->protect.dice = 2;
    frame();
    for (Cell* c : {dark, dim, smoke, crates})
        EXPECT_EQ(colourAt(c->centre), white) << "every layer off";

    showLight = true;
    frame();
    EXPECT_EQ(colourAt(dark->centre), black) << "7 dice of darkness: an alpha above 1 counts as 1";
    EXPECT_TRUE(near(colourAt(dim->centre), {178, 178, 178}, 3)) << "2 dice: 30 percent black";
    EXPECT_EQ(colourAt(crates->centre), white) << "no darkness, no layer";

    showSmoke = true;
    frame();
    EXPECT_TRUE(near(colourAt(smoke->centre), {115, 115, 115}, 3))
        << "smoke after darkness, 45 percent white";

    showLight = showSmoke = false;
    showProtection = true;
    frame();
    EXPECT_TRUE(near(colourAt(crates->centre), {178, 255, 178}, 3)) << "protection: 30 percent green";
    EXPECT_EQ(colourAt(dark->centre), white);
}

TEST_F(MapView, DifficultyRunsFromGreenThroughYellowToRed) {
    const std::pair<int, Rgb> known[] = {{1, {128, 255, 128}},
                                         {16, {255, 255, 128}},
                                         {31, {255, 128, 128}},
                                         {0, {128, 255, 128}}, // a red just below 0, clamped
                                         {8, {166, 255, 128}}};
    int column = 0;
    for (const auto& [difficulty, colour] : known)
        cell(2 * column++, 2)->difficulty = difficulty;
    frame();
    EXPECT_EQ(colourAt(cell(0, 2)->centre), white) << "switched off";
    showDifficulty = true;
    frame();
    column = 0;
    for (const auto& [difficulty, colour] : known)
        EXPECT_TRUE(near(colourAt(cell(2 * column++, 2)->centre), colour, 3))
            << "difficulty " << difficulty << ": " << colourAt(cell(2 * column - 2, 2)->centre);
}

TEST_F(MapView, WallsShowRedOnTheirSideWithTheLayerOn) {
    Cell* c = cell(4, 3);
    auto middleOf = [&](int side) { return 0.5f * (c->corners[side] + c->corners[(side + 1) % 6]); };
    for (int side = 0; side < 6; ++side) {
        for (int i = 0; i < 6; ++i)
            c->walls[i] = i == side;
        showWalls = false;
        frame();
        EXPECT_EQ(countAround(middleOf(side), 6, 6, isRed), 0) << "layer off, side " << side;
        showWalls = true;
        frame();
        EXPECT_GT(countAround(middleOf(side), 6, 6, isRed), 6) << "layer on, side " << side;
        EXPECT_EQ(countAround(middleOf((side + 3) % 6), 6, 6, isRed), 0) << "the opposite side, " << side;
    }
}

TEST_F(MapView, AnOccupantIsMarkedInItsFactionsColour) {
    Character* walker = new Character(true);
    Character* loner = new Character(true);
    Faction* crew = new Faction("Crew", 0.2f, 0.4f, 0.8f);
    crew->addMember(walker);
    placeCharacter(walker, cell(2, 2));
    placeCharacter(loner, cell(6, 2));
    frame();
    Vector3 c = cell(2, 2)->centre;
    EXPECT_TRUE(near(colourAt(c), {51, 102, 204}, 2));
    EXPECT_TRUE(near(colourAt(c + Vector3{0.25f, 0.3f, 0}), {51, 102, 204}, 2)) << "0.6 wide, 0.7 high";
    EXPECT_EQ(colourAt(c + Vector3{0.38f, 0, 0}), white);
    EXPECT_EQ(colourAt(cell(6, 2)->centre), black) << "without a faction";
    delete crew;
    delete walker;
    delete loner;
}

TEST_F(MapView, ThePathLineShowsTheSpeedOfEachStretch) {
    map->camera.placeAt({4, 4, 20});
    Character* mover = new Character(true);
    mover->move = 2;
    mover->moveSpeed = 4;
    mover->actions = 1;
    placeCharacter(mover, cell(4, 8));
    map->hovered = cell(4, 1);
    map->findPath(mover);
    ASSERT_EQ(map->pendingPath.size(), 8u);
    frame();
    // At three quarters over the white ground: cautious, normal, high speed, full out. (The line's
    // last point, at the target, is its end pixel, which a line leaves out.)
    const std::pair<int, Rgb> known[] = {
        {7, {64, 64, 255}},  {6, {64, 255, 64}}, {5, {255, 255, 64}},
        {4, {255, 255, 64}}, {3, {255, 64, 64}}, {2, {255, 64, 64}},
    };
    for (const auto& [row, colour] : known)
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
    delete mover;
}

TEST_F(MapView, TheToolkitDrawsAfterTheMapWithItsOwnState) {
    struct State {
        GLboolean texture, depth, cull, blend, offset;
        GLint depthFunc, matrixMode, viewport[4], modelviewDepth, projectionDepth;
        GLfloat lineWidth, projection[16];
    };
    State before{}, after{};
    auto record = [](State& s) {
        s.texture = glIsEnabled(GL_TEXTURE_2D);
        s.depth = glIsEnabled(GL_DEPTH_TEST);
        s.cull = glIsEnabled(GL_CULL_FACE);
        s.blend = glIsEnabled(GL_BLEND);
        s.offset = glIsEnabled(GL_POLYGON_OFFSET_FILL);
        glGetIntegerv(GL_DEPTH_FUNC, &s.depthFunc);
        glGetIntegerv(GL_MATRIX_MODE, &s.matrixMode);
        glGetIntegerv(GL_VIEWPORT, s.viewport);
        glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &s.modelviewDepth);
        glGetIntegerv(GL_PROJECTION_STACK_DEPTH, &s.projectionDepth);
        glGetFloatv(GL_LINE_WIDTH, &s.lineWidth);
        glGetFloatv(GL_PROJECTION_MATRIX, s.projection);
    };
    // One painter before the map, one after it, at the same depth of the tree; the one after also
    // paints over the map, as a dialogue would.
    auto* first = new ui::Painter(root, 0, 0, 1, 1, [&](ui::Painter&) { record(before); });
    root->children.insert(root->children.begin(), root->children.back());
    root->children.pop_back();
    new ui::Painter(root, 50, 40, 10, 10, [&](ui::Painter& p) {
        record(after);
        glColor4f(0.2f, 0.6f, 0.2f, 1);
        glBegin(GL_QUADS);
        glVertex2f(0, 0);
        glVertex2f(0, p.height);
        glVertex2f(p.width, p.height);
        glVertex2f(p.width, 0);
        glEnd();
    });
    ASSERT_EQ(root->children.front(), first);
    showWalls = showDifficulty = true;
    map->hovered = cell(5, 5);
    frame();
    EXPECT_FALSE(after.texture);
    EXPECT_FALSE(after.depth);
    EXPECT_TRUE(after.cull);
    EXPECT_TRUE(after.blend);
    EXPECT_FALSE(after.offset);
    EXPECT_EQ(after.depthFunc, before.depthFunc);
    EXPECT_EQ(after.matrixMode, GL_MODELVIEW);
    EXPECT_EQ(std::vector<GLint>(after.viewport, after.viewport + 4), (std::vector<GLint>{0, 0, 1024, 768}));
    EXPECT_EQ(after.modelviewDepth, before.modelviewDepth);
    EXPECT_EQ(after.projectionDepth, before.projectionDepth);
    EXPECT_EQ(after.lineWidth, 1);
    EXPECT_EQ(std::vector<GLfloat>(after.projection, after.projection + 16),
              std::vector<GLfloat>(before.projection, before.projection + 16));
    EXPECT_TRUE(near(pixel(55, 45), {51, 153, 51}, 2)) << "a window over the map is not hidden by its depth";
}

namespace {
// A picture of four coloured quarters, written by the image library to a file of the test's own.
class GroundPicture : public MapScreen {
  protected:
    void SetUp() override {
        MapScreen::SetUp();
        path =
            (std::filesystem::temp_directory_path() / ("hexfold-ground-" + std::to_string(getpid()) + ".png"))
                .string();
        paint(path, quarters);
    }
    void TearDown() override {
        std::filesystem::remove(path);
        MapScreen::TearDown();
    }
    // Quarters in the order of the image's rows in memory: first row left, right; last row left, right.
    static void paint(const std::string& file, const Rgb (&colours)[4]) {
        std::vector<unsigned char> pixels(side * side * 3);
        for (int r = 0; r < side; ++r)
            for (int c = 0; c < side; ++c) {
                const Rgb& q = colours[(r >= side / 2) * 2 + (c >= side / 2)];
                unsigned char* p = &pixels[(r * side + c) * 3];
                p[0] = static_cast<unsigned char>(q.r);
                p[1] = static_cast<unsigned char>(q.g);
                p[2] = static_cast<unsigned char>(q.b);
            }
        ILuint image = 0;
        ilGenImages(1, &image);
        ilBindImage(image);
        ilTexImage(side, side, 1, 3, IL_RGB, IL_UNSIGNED_BYTE, pixels.data());
        ilEnable(IL_FILE_OVERWRITE);
        ASSERT_EQ(ilSaveImage(file.c_str()), IL_TRUE);
        ilDeleteImages(1, &image);
    }
    static Rgb firstTexel(unsigned int texture) {
        GLint bound = 0;
        glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
        glBindTexture(GL_TEXTURE_2D, texture);
        GLint w = 0, h = 0;
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &w);
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &h);
        std::vector<unsigned char> texels(std::size_t(w) * std::size_t(h) * 4 + 4);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
        glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(bound));
        return {texels[0], texels[1], texels[2]};
    }

    static constexpr int side = 256; // fine enough that the quarters meet within a tenth of a unit
    static constexpr Rgb quarters[4] = {{220, 40, 40}, {40, 40, 220}, {40, 220, 40}, {220, 220, 40}};
    std::string path;
};
} // namespace

TEST_F(GroundPicture, IsLoadedOnceAndCachedByName) {
    unsigned int texture = loadTexture(path.c_str());
    EXPECT_NE(texture, 0u);
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D)) << "loading leaves texturing off";
    const Rgb ordered[4] = {quarters[0], quarters[1], quarters[2], quarters[3]};
    Rgb firstLoaded = firstTexel(texture);
    paint(path, {{1, 2, 3}, {1, 2, 3}, {1, 2, 3}, {1, 2, 3}});
    EXPECT_EQ(loadTexture(path.c_str()), texture);
    EXPECT_EQ(firstTexel(texture), firstLoaded) << "the file is not read again";
    EXPECT_TRUE(firstLoaded == ordered[0] || firstLoaded == ordered[2]) << firstLoaded;
    EXPECT_EQ(textureCache.count(path), 1u);
}

TEST_F(GroundPicture, RunsUnderTheWholeMapAtOneTwentySixAndAHalfthOfAUnit) {
    delete map;
    map = new HexMap(root, 48, 40);
    map->setArea(20.99609375f, 3, 78.90625f, 97.00521f);
    map->texture = loadTexture(path.c_str());
    map->camera.placeAt({18, 20.5f, 50});
    for (int r = 0; r < 40; r += 3)
        for (int c = 0; c < 48; c += 5)
            map->cells[r * 48 + c]->setHeight(float(r % 4)); // height does not shift it
    frame();
    // Where the picture's quarters lie: a picture spans 26.5 units from (0, 0.5), and repeats.
    auto at = [&](float x, float y) {
        Cell* under = map->cellAt(x, y);
        return colourAt({x, y, under ? under->centre.z : 0});
    };
    auto sample = [&](float s, float t) { return at(26.5f * s, 0.5f + 26.5f * t); };
    Rgb topLeft = sample(0.25f, 0.25f), topRight = sample(0.75f, 0.25f);
    Rgb bottomLeft = sample(0.25f, 0.75f), bottomRight = sample(0.75f, 0.75f);
    // The picture's first row may lie at either edge, by the image library's origin; its columns
    // run with x.
    bool upright = near(topLeft, quarters[0], 6);
    const Rgb* q = quarters;
    Rgb expected[4] = {upright ? q[0] : q[2], upright ? q[1] : q[3], upright ? q[2] : q[0],
                       upright ? q[3] : q[1]};
    EXPECT_TRUE(near(topLeft, expected[0], 6)) << topLeft;
    EXPECT_TRUE(near(topRight, expected[1], 6)) << topRight;
    EXPECT_TRUE(near(bottomLeft, expected[2], 6)) << bottomLeft;
    EXPECT_TRUE(near(bottomRight, expected[3], 6)) << bottomRight;
    EXPECT_TRUE(near(sample(1.25f, 0.25f), topLeft, 6)) << "repeats to the right";
    EXPECT_TRUE(near(sample(0.25f, 1.25f), topLeft, 6)) << "repeats downwards";
    EXPECT_TRUE(near(sample(1.25f, 1.25f), topLeft, 6));
    // The quarters meet at x = 13.25 and, the picture starting at the map's upper edge, y = 13.75.
    EXPECT_TRUE(near(at(13.1f, 7), topLeft, 6)) << at(13.1f, 7);
    EXPECT_TRUE(near(at(13.4f, 7), topRight, 6)) << at(13.4f, 7);
    EXPECT_TRUE(near(at(6.6f, 13.6f), topLeft, 6)) << at(6.6f, 13.6f);
    EXPECT_TRUE(near(at(6.6f, 13.9f), bottomLeft, 6)) << at(6.6f, 13.9f);
}

namespace {
// The sample campaign's map, read from the campaign directory where the UI tests run.
class SampleMap : public MapScreen {
  protected:
    void SetUp() override {
        MapScreen::SetUp();
        delete map;
        map = static_cast<HexMap*>(loadMap(root));
        ASSERT_NE(map, nullptr) << "qm2207.map6 in " << ui::campaignDir();
        map->setArea(20.99609375f, 3, 78.90625f, 97.00521f);
    }
};
} // namespace

TEST_F(SampleMap, FromTheStartCamera) {
    EXPECT_EQ(std::pair(map->columns, map->rows), std::pair(40, 30));
    frame();
    screenshot("map_start");
    EXPECT_GT(inkIn(61, 55, 38, 45), 20000) << "the map's corner fills the lower right of the view";
    EXPECT_EQ(inkIn(22, 4, 38, 40), 0) << "the map's origin is in the middle of the view";
}

TEST_F(SampleMap, TurnedAndTiltedWithWallsAndAWay) {
    showWalls = true;
    Character* mover = new Character(true);
    mover->move = 10;
    mover->moveSpeed = 4;
    mover->actions = 1;
    placeCharacter(mover, map->cellAt(10.25f, 12.0f)); // south-east of the shed's door
    map->hovered = map->cellAt(18.5f, 17.5f);          // up the hill's south-western slope
    map->findPath(mover);
    ASSERT_FALSE(map->pendingPath.empty());

    // From the south-west, looking north-east over the shed and the crates to the hill.
    Vector3 pivot{11, 11, 0};
    map->camera.placeAt({11, 11, 29});
    map->camera.rotateAround(-50, 0, 0, 1, true, &pivot);
    map->camera.rotateAround(60, 1, 0, 0, false, &pivot);
    frame();
    screenshot("map_turned");
    EXPECT_GT(countPixels(21, 3, 79, 97, isRed), 100) << "the shed's walls";
    auto lineColour = [](Rgb c) { return c.g > 200 && c.r < 120 && c.b < 120; }; // the normal stretch
    EXPECT_GT(countPixels(21, 3, 79, 97, lineColour), 10) << "the path line";
    placeCharacter(mover, map->cells[0]);
    mover->cell = nullptr;
    map->cells[0]->occupant = nullptr;
    delete mover;
}
