// The map on the screen: the terrain layers, walls, occupants, the path line, changes of cells, the
// OpenGL state given back to the toolkit and the ground picture. The golden pictures hold the rest.
#include <GL/gl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <vector>

#include "map_screen.h"
#include "rules/faction.h"
#include "support/probe.h"

using ui::near;
using ui::Rgb;
const Rgb white{255, 255, 255}, black{0, 0, 0};

// Without a ground picture (texture 0) the base pass is plain white, so that colours can be told.
TEST_F(MapScreen, EachLayerPaintsItsColourOverTheGroundWhenSwitchedOn) {
    std::tie(cell(2, 2)->light.dice, cell(4, 2)->light.dice, cell(6, 2)->light.dice, cell(6, 2)->cover.dice,
             cell(8, 2)->protect.dice) = std::tuple(7, 2, 7, 3, 2);
    const int difficulties[5] = {1, 16, 31, 0, 8};
    for (int i = 0; i < 5; ++i)
        cell(2 * i, 5)->difficulty = difficulties[i];
    frame();
    for (Cell* c : {cell(2, 2), cell(4, 2), cell(6, 2), cell(8, 2), cell(0, 5)})
        EXPECT_TRUE(shows(c->centre, white)) << "every layer off";
    EXPECT_GT(countAround({1.75f, 2.0f, 0}, 3, [](Rgb c) { return near(c, black, 40); }), 0) << "outlines";
    // 0.15 a die: 7 of darkness are black (an alpha above 1 counts as 1), 2 a grey; smoke over
    // darkness; green protection. Difficulty at half: 1 green, 16 yellow, 31 red, 0 clamped to 1.
    const Rgb layers[4] = {black, {178, 178, 178}, {115, 115, 115}, {178, 255, 178}},
              difficulty[5] = {
                  {128, 255, 128}, {255, 255, 128}, {255, 128, 128}, {128, 255, 128}, {166, 255, 128}};
    showLight = showSmoke = showProtection = true;
    frame();
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(shows(cell(2 + 2 * i, 2)->centre, layers[i], 3)) << i;
    std::tie(showLight, showSmoke, showProtection, showDifficulty) = std::tuple(false, false, false, true);
    frame();
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(shows(cell(2 * i, 5)->centre, difficulty[i], 3)) << difficulties[i];
}

TEST_F(MapScreen, AWallShowsRedOnItsOwnSideWhicheverNeighbourIsDrawnFirst) {
    Cell* c = cell(4, 3);
    auto middleOf = [&](int side) { return 0.5f * (c->corners[side] + c->corners[(side + 1) % 6]); };
    for (int side = 0; side < 6; ++side)
        for (bool on : {false, true}) {
            for (int i = 0; i < 6; ++i)
                c->walls[i] = i == side;
            map->cellChanged(c);
            showWalls = on;
            frame();
            EXPECT_EQ(countAround(middleOf(side), 6, isRed) > 6, on) << side;
            EXPECT_EQ(countAround(middleOf((side + 3) % 6), 6, isRed), 0) << side;
        }
}

// The map keeps its cells' geometry from frame to frame: a change shows at the next frame when it is
// announced, and when a followed cell's editor wrote it just before it closed (the map's last look).
TEST_F(MapScreen, AChangedCellShowsAtTheNextFrame) {
    struct Editor : Observer {
        void changed() override {}
    };
    showLight = true;
    Cell *announced = cell(2, 3), *closed = cell(8, 3);
    auto* editor = new Editor;
    closed->addObserver(*editor);
    map->followCell(closed);
    frame();
    ASSERT_TRUE(shows(announced->centre, white) && shows(closed->centre, white));
    announced->light.dice = 7;
    map->cellChanged(announced);
    frame();
    EXPECT_TRUE(shows(announced->centre, black));
    closed->light.dice = 7;
    delete editor;
    frame();
    EXPECT_TRUE(shows(closed->centre, black));
}

// Lowering a cell uncovers the flanks of its higher neighbours, which the map does not draw while a
// neighbour as high hides them: the neighbours' geometry follows, wherever in a large map they lie.
TEST_F(MapScreen, LoweringACellUncoversItsNeighboursFlanksAllOverALargeMap) {
    replaceMap(new HexMap(root, 40, 40));
    for (Cell* c : map->cells) {
        c->setHeight(1);
        c->difficulty = 1; // green
    }
    showDifficulty = true;
    // From the south, steep enough to look over the cells beyond a lowered one: the south flank of
    // its northern neighbour and the south-east flank of its north-western one.
    map->camera.rotate(30, 1, 0, 0, false);
    for (int k = 1; k < 40; ++k) {
        Cell* lowered = cell(k, k);
        auto set = [&](float height, int difficulty) {
            lowered->setHeight(height);
            lowered->difficulty = difficulty;
            map->cellChanged(lowered);
        };
        set(0, 31); // red
        map->camera.placeAt(lowered->centre - 6 * map->camera.forward());
        frame();
        for (int side : {0, 5}) {
            const Vector3* corner = lowered->corners;
            Vector3 flank = 0.5f * (corner[side] + corner[(side + 1) % 6]);
            flank.z = 0.5f;
            EXPECT_TRUE(shows(flank, {128, 255, 128}, 2)) << "cell " << k << ", side " << side;
        }
        set(1, 1); // so that the next cell's neighbours all stand high
    }
}

TEST_F(MapScreen, OccupantsShowInTheirFactionsColourAndTheWayInTheColoursOfItsSpeeds) {
    map->camera.placeAt({4, 4, 20});
    Character mover(true), loner(true);
    Faction crew("Crew", 0.2f, 0.4f, 0.8f);
    crew.addMember(&mover);
    std::tie(mover.move, mover.moveSpeed, mover.actions) = std::tuple(2, 4, 1);
    placeCharacter(&mover, cell(4, 8));
    placeCharacter(&loner, cell(7, 7));
    map->hovered = cell(4, 1);
    map->findPath(&mover);
    frame();
    Vector3 c = cell(4, 8)->centre; // a mark 0.6 wide and 0.7 high, black without a faction
    EXPECT_TRUE(shows(c + Vector3{0.25f, -0.3f, 0}, {51, 102, 204}, 2) &&
                shows(c + Vector3{0.38f, 0, 0}, white));
    EXPECT_TRUE(shows(cell(7, 7)->centre, black));
    // At three quarters over white: cautious, normal, high speed, full out. (The target's end of
    // the line is its last pixel, which a line leaves out.)
    const Rgb line[6] = {{64, 64, 255},  {64, 255, 64}, {255, 255, 64},
                         {255, 255, 64}, {255, 64, 64}, {255, 64, 64}};
    for (int row = 7; row >= 2; --row)
        EXPECT_TRUE(shows(cell(4, row)->centre, line[7 - row], 12)) << row;
    map->showPath = false;
    frame();
    EXPECT_TRUE(shows(cell(4, 4)->centre, white)) << "hidden";
    map->showPath = true;
    map->commitPath();
    map->pendingLength = 0;
    frame();
    EXPECT_TRUE(shows(cell(4, 4)->centre, white)) << "only a proposed length draws the line";
}

TEST_F(MapScreen, TheToolkitDrawsAfterTheMapWithItsOwnState) {
    // What the toolkit relies on, read by a painter drawn before the map and by one drawn after it,
    // which also paints over the map as a dialogue would.
    auto record = [](std::vector<float>& s) {
        for (GLenum e : {GL_VIEWPORT, GL_DEPTH_FUNC, GL_MATRIX_MODE, GL_MODELVIEW_STACK_DEPTH,
                         GL_PROJECTION_STACK_DEPTH, GL_TEXTURE_STACK_DEPTH, GL_PROJECTION_MATRIX,
                         GL_LINE_WIDTH, GL_ARRAY_BUFFER_BINDING, GL_ELEMENT_ARRAY_BUFFER_BINDING}) {
            GLfloat v[16] = {};
            glGetFloatv(e, v);
            s.insert(s.end(), v, v + 16);
        }
        for (GLenum e : {GL_TEXTURE_2D, GL_DEPTH_TEST, GL_POLYGON_OFFSET_FILL, GL_CULL_FACE, GL_BLEND,
                         GL_VERTEX_ARRAY, GL_TEXTURE_COORD_ARRAY, GL_COLOR_ARRAY})
            s.push_back(glIsEnabled(e));
    };
    std::vector<float> before, after;
    new ui::Painter(root, 0, 0, 1, 1, [&](ui::Painter&) { record(before); });
    std::rotate(root->children.begin(), root->children.end() - 1, root->children.end());
    new ui::Painter(root, 50, 40, 10, 10, [&](ui::Painter& p) {
        record(after);
        glColor4f(0.2f, 0.6f, 0.2f, 1);
        glRectf(0, p.height, p.width, 0);
    });
    showWalls = showDifficulty = showLight = true;
    cell(3, 3)->light.dice = 2;
    map->texture = loadTexture("back.dds");
    frame();
    EXPECT_EQ(after, before);
    EXPECT_TRUE(near(pixel(55, 45), {51, 153, 51}, 2)) << "a window over the map is not hidden by its depth";
}

// A picture of four coloured quarters, made here, so that the ground's scale, shift and repeat are
// checked whatever back.dds holds; and back.dds itself, read once by its name.
TEST_F(MapScreen, TheGroundPictureRunsUnderTheWholeMapSpanningTwentySixAndAHalfUnits) {
    const Rgb q[4] = {{220, 40, 40}, {40, 40, 220}, {40, 220, 40}, {220, 220, 40}}; // rows from the top
    const unsigned char texels[16] = {220, 40,  40, 255, 40,  40,  220, 255,
                                      40,  220, 40, 255, 220, 220, 40,  255};
    replaceMap(new HexMap(root, 48, 40));
    glGenTextures(1, &map->texture);
    glBindTexture(GL_TEXTURE_2D, map->texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 2, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glBindTexture(GL_TEXTURE_2D, 0);
    for (int r = 0; r < 40; r += 3)
        for (int c = 0; c < 48; c += 5)
            cell(c, r)->setHeight(float(r % 4)); // no shift by height
    map->camera.placeAt({18, 20.5f, 50});
    frame();
    // The quarters meet at x = 13.25 and, the picture starting at the map's upper edge, y = 13.75.
    const std::tuple<float, float, Rgb> samples[] = {
        {6.625f, 7.125f, q[0]},  {19.875f, 7.125f, q[1]}, {6.625f, 20.375f, q[2]},  {19.875f, 20.375f, q[3]},
        {33.125f, 7.125f, q[0]}, {6.625f, 33.625f, q[0]}, {33.125f, 33.625f, q[0]}, {13.1f, 7, q[0]},
        {13.4f, 7, q[1]},        {6.6f, 13.6f, q[0]},     {6.6f, 13.9f, q[2]}};
    for (auto [x, y, colour] : samples)
        EXPECT_TRUE(shows({x, y, map->cellAt(x, y)->centre.z}, colour, 6)) << x << ", " << y;
    glDeleteTextures(1, &map->texture);
    EXPECT_EQ(loadTexture("back.dds"), loadTexture("back.dds")) << "cached by name";
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D)) << "loading leaves texturing off";
    // A header written on another system ends the name with a carriage return, which is no part of it.
    std::istringstream crlf("6|1|1|0|0|back.dds\r\n3|0|0|0|12|0|1|1|1|1|1|1.25\r\n");
    std::unique_ptr<Map> fromCrlf(loadMap(crlf, "qm2207.map6", nullptr));
    EXPECT_EQ(std::pair(fromCrlf->texture, textureCache.count("back.dds\r")),
              std::pair(loadTexture("back.dds"), std::size_t(0)));
}

// Pictures read from files: an opaque one is kept without alpha, so that the ground needs no
// blending; one with alpha keeps it; each mipmap level is the two-by-two mean of the one above.
TEST_F(MapScreen, AGroundPictureFromAFileKeepsAlphaOnlyWhenItHasSomeAndHalvesTwoByTwo) {
    struct Case {
        const char* name;
        unsigned char lastAlpha;
        bool keepsAlpha;
        unsigned char halved[4]; // level 1, rounded half up
    };
    const Case cases[] = {{"opaque", 255, false, {26, 35, 45, 255}},
                          {"seen_through", 128, true, {26, 35, 45, 223}}};
    for (const Case& c : cases) {
        const unsigned char texels[16] = {10, 20, 30, 255, 20, 30, 40, 255,
                                          30, 40, 50, 255, 42, 50, 60, c.lastAlpha};
        // An uncompressed DDS of 2 x 2 pixels at 32 bits, as the map reads its ground.
        std::string bytes = "DDS ";
        auto word = [&bytes](std::uint32_t w) {
            for (int i = 0; i < 4; ++i)
                bytes += char((w >> (8 * i)) & 0xff);
        };
        word(124), word(0x100f), word(2), word(2), word(8), word(0), word(0);
        for (int i = 0; i < 11; ++i)
            word(0);
        word(32), word(0x41), word(0), word(32);
        word(0x00ff0000), word(0x0000ff00), word(0x000000ff), word(0xff000000);
        word(0x1000), word(0), word(0), word(0), word(0);
        for (int i = 0; i < 4; ++i) {
            const unsigned char* t = texels + 4 * i;
            bytes += {char(t[2]), char(t[1]), char(t[0]), char(t[3])};
        }
        std::string file = "/tmp/hexfold-ground-" + std::to_string(getpid()) + "-" + c.name + ".dds";
        std::ofstream(file, std::ios::binary) << bytes;
        GLuint texture = loadTexture(file.c_str());
        std::remove(file.c_str());
        glBindTexture(GL_TEXTURE_2D, texture);
        GLint alphaBits = 0;
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_ALPHA_SIZE, &alphaBits);
        unsigned char level1[4] = {};
        glGetTexImage(GL_TEXTURE_2D, 1, GL_RGBA, GL_UNSIGNED_BYTE, level1);
        glBindTexture(GL_TEXTURE_2D, 0);
        EXPECT_EQ(alphaBits > 0, c.keepsAlpha) << c.name;
        EXPECT_EQ(std::vector(level1, level1 + 4), std::vector(c.halved, c.halved + 4)) << c.name;
    }
}
