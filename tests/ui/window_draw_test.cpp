// Drawing the window tree, read back as pixels: background and outline in place, culling,
// invisibility, inherited opacity.
#include <gtest/gtest.h>

#include "support/probe.h"
#include "support/ui_driver.h"

using namespace ui;

namespace {

class WindowDraw : public UiTest {
  protected:
    EventLog log;

    // True when a pixel within one pixel of the point has the colour.
    bool colourNear(int px, int py, Rgb colour) {
        for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx)
                if (near(pixelAt(px + dx, py + dy), colour, 10)) return true;
        return false;
    }
};

TEST_F(WindowDraw, BackgroundAndOutlineStandAtTheirLogicalPlaces) {
    Window* w = new Window(root, 20, 30, 30, 20, "");
    w->backColour[0] = 1;
    w->backColour[1] = w->backColour[2] = 0;
    w->borderColour[2] = 1;
    frame();
    EXPECT_EQ(pixel(35, 40), (Rgb{255, 0, 0}));
    EXPECT_EQ(pixel(19, 40), (Rgb{0, 0, 0}));
    EXPECT_EQ(pixel(51, 40), (Rgb{0, 0, 0}));
    Rgb blue{0, 0, 255};
    // Outline on all four sides: x 20 and 50 (204.8 and 512 px), y 30 and 50 (230.4 and 384 px).
    EXPECT_TRUE(colourNear(205, 307, blue));
    EXPECT_TRUE(colourNear(511, 307, blue));
    EXPECT_TRUE(colourNear(358, 230, blue));
    EXPECT_TRUE(colourNear(358, 383, blue));
    EXPECT_FALSE(colourNear(358, 307, blue)) << "no outline inside";
}

TEST_F(WindowDraw, TheBackgroundsAlphaAndTheWindowsOpacityMultiply) {
    Window* w = new Window(root, 10, 10, 20, 20, "");
    w->backColour[0] = w->backColour[1] = w->backColour[2] = 1;
    w->backColour[3] = 0.5f;
    w->alpha = 0.5f;
    frame();
    EXPECT_TRUE(near(pixel(20, 20), Rgb{64, 64, 64}, 2)) << pixel(20, 20);
}

TEST_F(WindowDraw, OpacityIsInheritedAtConstructionAndMultipliedAgainWhenDrawn) {
    Probe* parent = new Probe(root, "parent", 10, 10, 40, 40, &log);
    parent->alpha = 0.5f;
    Probe* child = new Probe(parent, "child", 5, 5, 10, 10, &log);
    child->backColour[0] = child->backColour[1] = child->backColour[2] = 1;
    parent->backColour[3] = 0; // only the child shows
    frame();
    EXPECT_EQ(child->alpha, 0.5f);
    EXPECT_FLOAT_EQ(child->lastAlpha, 0.25f);
    EXPECT_TRUE(near(pixel(20, 20), Rgb{64, 64, 64}, 2)) << pixel(20, 20);
}

TEST_F(WindowDraw, AChildIsCulledOnlyWhenItLiesWhollyOutsideItsParent) {
    Probe* parent = new Probe(root, "parent", 10, 10, 20, 20, &log);
    Probe* onEdge = new Probe(parent, "edge", 20, 0, 5, 5, &log);    // x equals the parent's width
    Probe* beyond = new Probe(parent, "beyond", 20.5f, 0, 5, 5, &log);
    Probe* under = new Probe(beyond, "under", -20, 0, 5, 5, &log);  // inside the parent, but under a culled one
    Probe* above = new Probe(parent, "above", 0, -5, 5, 5, &log);   // touches the top edge
    Probe* left = new Probe(parent, "left", -5.5f, 0, 5, 5, &log);
    frame();
    EXPECT_EQ(onEdge->drawCount, 1);
    EXPECT_EQ(above->drawCount, 1);
    EXPECT_EQ(beyond->drawCount, 0);
    EXPECT_EQ(beyond->afterDrawCount, 0) << "a culled window's afterDraw is not called";
    EXPECT_EQ(under->drawCount, 0) << "the subtree goes with it";
    EXPECT_EQ(left->drawCount, 0);
    EXPECT_EQ(parent->afterDrawCount, 1);
    // Partly outside is drawn whole: no clipping.
    onEdge->backColour[0] = 1;
    onEdge->backColour[1] = onEdge->backColour[2] = 0;
    frame();
    EXPECT_EQ(pixel(32.5f, 12.5f), (Rgb{255, 0, 0}));
}

TEST_F(WindowDraw, AnInvisibleWindowHidesItsSubtreeWithoutTouchingTheirFlags) {
    Probe* parent = new Probe(root, "parent", 10, 10, 20, 20, &log);
    Probe* child = new Probe(parent, "child", 1, 1, 5, 5, &log);
    Probe* empty = new Probe(root, "empty", 60, 60, 0, 0, &log);
    parent->visible = false;
    frame();
    EXPECT_EQ(parent->drawCount, 0);
    EXPECT_EQ(child->drawCount, 0);
    EXPECT_TRUE(child->visible);
    EXPECT_EQ(pixel(15, 15), (Rgb{0, 0, 0}));
    EXPECT_EQ(empty->drawCount, 1) << "a window of size 0 is still drawn";
}

TEST_F(WindowDraw, LaterSiblingsAreDrawnOnTop) {
    Window* back = new Window(root, 10, 10, 20, 20, "");
    Window* front = new Window(root, 10, 10, 20, 20, "");
    back->backColour[0] = 1, back->backColour[1] = back->backColour[2] = 0;
    front->backColour[2] = 1, front->backColour[0] = front->backColour[1] = 0;
    frame();
    EXPECT_EQ(pixel(20, 20), (Rgb{0, 0, 255}));
    back->raise();
    frame();
    EXPECT_EQ(pixel(20, 20), (Rgb{255, 0, 0}));
}

} // namespace
