// Text measured and drawn with the real font and read back: ink where the text stands and nowhere
// else, tab stops, the colour escape, wrapping at spaces, the height cut-off, caption alignment;
// and a screenshot of a small tree with text.
#include <gtest/gtest.h>

#include <GL/gl.h>

#include "support/probe.h"
#include "support/ui_driver.h"
#include "toolkit/font.h"

using namespace ui;

namespace {

class FontDraw : public UiTest {
  protected:
    // Draws in white through a function of the font, on the root.
    void paint(std::function<void()> f) {
        new Painter(root, 0, 0, 100, 100, [f](Painter&) {
            glColor4f(1, 1, 1, 1);
            f();
        });
    }
    void text(const std::string& t, float x, float y, float s) {
        paint([=] { drawText(t, x, y, s); });
    }
    Span ink(float y, float h) {
        return columnsWhere(0, y, 100, h, [](Rgb c) { return !near(c, {0, 0, 0}, 40); });
    }
};

TEST_F(FontDraw, MeasuringTakesTheLongestLineTabStopsAndSkipsWhatTheFontLacks) {
    ASSERT_TRUE(fontLoaded);
    for (char c = 33; c < 127; ++c)
        EXPECT_GT(measureText(std::string(1, c), 2), 0.1f) << c;
    EXPECT_FLOAT_EQ(measureText("ab\nabcdef\nabc", 2), measureText("abcdef", 2));
    EXPECT_FLOAT_EQ(measureText("abcdef", 3), 1.5f * measureText("abcdef", 2));
    EXPECT_FLOAT_EQ(measureText("\t\t", 2), 8) << "a tab exactly on a stop goes on to the next";
    EXPECT_FLOAT_EQ(measureText("i\tx", 2), 4 + measureText("x", 2));
    EXPECT_FLOAT_EQ(measureText("\x01W\x7f\xe9", 2), measureText("W", 2));
    EXPECT_GT(measureText("^ff0000W", 2.5f), measureText("W", 2.5f) + 2) << "the escape counts as glyphs";
    EXPECT_FLOAT_EQ(measureText("^ab", 2), measureText("^", 2) + measureText("ab", 2));
}

TEST_F(FontDraw, TextLeavesInkWithinItsBoxAndNowhereElse) {
    text("Hexfold", 10, 10, 2);
    frame();
    float w = measureText("Hexfold", 2);
    EXPECT_GT(inkIn(10, 10, w, 2), 40);
    EXPECT_EQ(inkIn(0, 0, 100, 9.9f), 0);
    EXPECT_EQ(inkIn(0, 12.1f, 100, 80), 0);
    EXPECT_NEAR(ink(9, 4).first, 10, 0.6);
    EXPECT_NEAR(ink(9, 4).last, 10 + w, 0.6);
}

TEST_F(FontDraw, TabsCountFromTheOriginAndEscapesColourWithoutTakingRoom) {
    text("\tW", 1, 20, 2);          // the stop at 4, not at 1 + 4
    text("^ff0000W", 10, 30, 2.5f); // red, at the same place as a plain W
    text("W", 10, 40, 2.5f);
    text("\x01\x02W", 10, 50, 2.5f); // characters the font lacks take no room either
    text("^ab", 10, 60, 2);          // too short for an escape: drawn
    frame();
    EXPECT_NEAR(ink(20, 2).first, 4, 0.4);
    // Within a pixel: the rows lie at other fractions of a pixel.
    EXPECT_NEAR(ink(30, 2.5f).first, ink(40, 2.5f).first, 0.15);
    EXPECT_NEAR(ink(30, 2.5f).last, ink(40, 2.5f).last, 0.15);
    EXPECT_NEAR(ink(50, 2.5f).first, ink(40, 2.5f).first, 0.15);
    EXPECT_GT(inkIn(10, 30, 5, 2.5f), 10);
    EXPECT_EQ(countPixels(10, 30, 5, 2.5f, [](Rgb c) { return c.g > 20 || c.b > 20; }), 0);
    EXPECT_GT(inkIn(10, 60, measureText("^", 2), 2), 3);
}

TEST_F(FontDraw, WrappedTextBreaksOnlyAtSpacesAndStopsAtTheHeight) {
    float word = measureText("wwww", 2);
    auto wrapped = [&](const std::string& t, float y, float height) {
        paint([=] { drawWrappedText(t, 10, y, word + 0.5f, height, 2); });
    };
    wrapped("wwww wwww wwww", 5, 100);   // three lines
    wrapped("wwwwwwwwwwww", 20, 100);    // no space: one line past the width
    wrapped(" wwwwwwwwwww", 25, 100);    // a leading space is no break point
    wrapped("wwww wwww wwww", 30, 4.5f); // cut after two lines
    wrapped("wwww", 45, 1.9f);           // height below the size: nothing
    frame();
    for (float y : {5, 7, 9, 32})
        EXPECT_GT(inkIn(10, y, word, 2), 0) << y;
    EXPECT_EQ(inkIn(10 + word + 0.6f, 5, 20, 6), 0);
    EXPECT_GT(inkIn(10 + word + 0.6f, 20, 20, 2), 0);
    EXPECT_EQ(inkIn(10, 22.2f, 30, 2.6f), 0);
    EXPECT_EQ(inkIn(10, 27.2f, 30, 2.6f), 0);
    EXPECT_EQ(inkIn(10, 34.2f, word, 2), 0);
    EXPECT_EQ(inkIn(5, 44, 30, 4), 0);
}

TEST_F(FontDraw, CaptionsAreCentredVerticallyAndAlignedByTheWindowsAlignment) {
    struct Caption : Window {
        Caption(Window* parent, float y, int align) : Window(parent, 20, y, 40, 6, "") { alignment = align; }
        void draw(float) override {
            glColor4f(1, 1, 1, 1);
            drawCaption("Mid");
        }
    };
    for (int align : {0, 1, 2})
        new Caption(root, 10 + 10 * align, align);
    frame();
    float margin = (6 - 1.5f - 0.1f) * 0.5f;
    EXPECT_NEAR(ink(10, 6).first, 20 + margin + 0.25f, 0.4);
    EXPECT_NEAR(ink(20, 6).last, 60 - margin - 0.25f, 0.4);
    EXPECT_NEAR(ink(30, 6).middle(), 40, 0.4);
    EXPECT_EQ(inkIn(20, 10, 40, margin - 0.1f), 0);
}

TEST_F(FontDraw, ASmallTreeWithTextLooksRight) {
    Window* panel = new Window(root, 8, 8, 60, 40, "");
    panel->backColour[0] = 0.85f, panel->backColour[1] = 0.82f, panel->backColour[2] = 0.74f;
    new Painter(panel, 2, 2, 56, 36, [](Painter&) {
        glColor4f(0, 0, 0, 1);
        drawText("Sizes 1.5 to 2.75 units, every printable character:", 0, 0, 1.5f);
        // One call a line: behind the caret of the second, a newline would be taken into an escape.
        drawText(" !\"#$%&'()*+,-./0123456789:;<=>?@", 0, 2.5f, 1.5f);
        drawText("ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`", 0, 4, 1.5f);
        drawText("abcdefghijklmnopqrstuvwxyz{|}~", 0, 5.5f, 1.5f);
        drawText("Name\tSkill\tDice\nAyla\t^a00000Blaster\t^0000a04D+2", 0, 8, 1.5f);
        glColor4f(0, 0, 0, 1);
        drawText("Size 2: Initiative 3D+1", 0, 12, 2);
        drawText("Size 2.75: Mortally Wounded", 0, 14.5f, 2.75f);
        drawWrappedText("A wrapped paragraph breaks its lines at spaces only, and stops at its height.", 0,
                        18, 30, 6, 1.5f);
    });
    frame();
    screenshot("spine_text_tree");
    EXPECT_GT(inkIn(10, 12, 50, 8, {217, 209, 189}), 500);
}

} // namespace
