// Drawing the window tree, read back as pixels: background and outline in place, drawing order,
// culling, invisibility, inherited opacity.
#include <gtest/gtest.h>

#include "support/probe.h"
#include "support/ui_driver.h"

using namespace ui;

namespace {

class WindowDraw : public UiTest {
  protected:
    EventLog log;

    Window* solid(float x, float y, float w, float h, Rgb colour) {
        Window* win = new Window(root, x, y, w, h, "");
        win->backColour[0] = colour.r / 255.0f;
        win->backColour[1] = colour.g / 255.0f;
        win->backColour[2] = colour.b / 255.0f;
        return win;
    }

    // True when a pixel within one pixel of the point has the colour.
    bool colourNear(int px, int py, Rgb colour) {
        for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx)
                if (near(pixelAt(px + dx, py + dy), colour, 10)) return true;
        return false;
    }
};

TEST_F(WindowDraw, BackgroundAndOutlineStandAtTheirLogicalPlacesAndLaterSiblingsLieOnTop) {
    Window* w = solid(20, 30, 30, 20, {255, 0, 0});
    w->borderColour[2] = 1;
    Window* back = solid(60, 10, 20, 20, {255, 0, 0});
    solid(60, 10, 20, 20, {0, 0, 255});
    frame();
    EXPECT_EQ(std::tuple(pixel(19, 40), pixel(35, 40), pixel(51, 40)),
              std::tuple(Rgb{0, 0, 0}, Rgb{255, 0, 0}, Rgb{0, 0, 0}));
    // The outline: x 20 and 50 are pixels 204.8 and 512, y 30 and 50 are 230.4 and 384.
    for (auto [px, py] : {std::pair{205, 307}, {511, 307}, {358, 230}, {358, 383}})
        EXPECT_TRUE(colourNear(px, py, {0, 0, 255})) << px << ", " << py;
    EXPECT_FALSE(colourNear(358, 307, {0, 0, 255}));
    EXPECT_EQ(pixel(70, 20), (Rgb{0, 0, 255}));
    back->raise();
    frame();
    EXPECT_EQ(pixel(70, 20), (Rgb{255, 0, 0}));
}

TEST_F(WindowDraw, OpacityIsInheritedAtConstructionAndMultipliedWhenDrawn) {
    Window* w = solid(10, 10, 20, 20, {255, 255, 255});
    w->backColour[3] = 0.5f;
    w->alpha = 0.5f;
    Probe* parent = new Probe(root, "parent", 40, 10, 40, 40, &log);
    parent->alpha = 0.5f;
    parent->backColour[3] = 0;
    Probe* child = new Probe(parent, "child", 5, 5, 10, 10, &log);
    child->backColour[0] = child->backColour[1] = child->backColour[2] = 1;
    frame();
    EXPECT_TRUE(near(pixel(20, 20), {64, 64, 64}, 2)) << pixel(20, 20);
    EXPECT_FLOAT_EQ(child->lastAlpha, 0.25f);
    EXPECT_TRUE(near(pixel(50, 20), {64, 64, 64}, 2)) << pixel(50, 20);
}

TEST_F(WindowDraw, AChildIsCulledWithItsSubtreeOnlyWhenItLiesWhollyOutsideItsParent) {
    Probe* parent = new Probe(root, "parent", 10, 10, 20, 20, &log);
    Probe* onEdge = new Probe(parent, "edge", 20, 0, 5, 5, &log); // x equals the parent's width
    Probe* above = new Probe(parent, "above", 0, -5, 5, 5, &log); // touches the top edge
    Probe* beyond = new Probe(parent, "beyond", 20.5f, 0, 5, 5, &log);
    Probe* under = new Probe(beyond, "under", -20, 0, 5, 5, &log); // inside the parent, under a culled one
    Probe* left = new Probe(parent, "left", -5.5f, 0, 5, 5, &log);
    Probe* empty = new Probe(root, "empty", 60, 60, 0, 0, &log);
    onEdge->backColour[0] = 1;
    onEdge->backColour[1] = onEdge->backColour[2] = 0;
    frame();
    for (Probe* drawn : {onEdge, above, empty})
        EXPECT_EQ(drawn->drawCount, 1) << drawn->name;
    for (Probe* culled : {beyond, under, left})
        EXPECT_EQ(culled->drawCount, 0) << culled->name;
    EXPECT_EQ(beyond->afterDrawCount, 0);
    EXPECT_EQ(pixel(32.5f, 12.5f), (Rgb{255, 0, 0})) << "partly outside is drawn whole";

    parent->visible = false;
    frame();
    EXPECT_EQ(onEdge->drawCount, 1) << "an invisible window hides its subtree";
    EXPECT_TRUE(onEdge->visible);
    EXPECT_EQ(pixel(15, 15), (Rgb{0, 0, 0}));
}

} // namespace
