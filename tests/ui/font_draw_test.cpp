// Text drawn with the real font and read back: ink where the text stands and nowhere else, tab
// stops, the colour escape, wrapping at spaces, the height cut-off, caption alignment; and a
// screenshot of a small tree with text.
#include <gtest/gtest.h>

#include <GL/gl.h>

#include "support/probe.h"
#include "support/ui_driver.h"
#include "toolkit/font.h"

using namespace ui;

namespace {

class FontDraw : public UiTest {
  protected:
    // Draws one text in white at (x, y) of the root, size s.
    Painter* text(const std::string& t, float x, float y, float s) {
        return new Painter(root, 0, 0, 100, 100, [=](Painter&) {
            glColor4f(1, 1, 1, 1);
            drawText(t, x, y, s);
        });
    }

    // The leftmost and rightmost ink columns in a band of logical rows, in logical units.
    std::pair<float, float> inkSpan(float y, float h) {
        float first = -1, last = -1;
        for (int px = 0; px < 1024; ++px) {
            float lx = px / 10.24f;
            if (inkIn(lx, y, 1 / 10.24f, h) > 0) {
                if (first < 0) first = lx;
                last = lx;
            }
        }
        return {first, last};
    }
};

TEST_F(FontDraw, TheFontIsLoadedAndCoversPrintableAscii) {
    ASSERT_TRUE(fontLoaded);
    EXPECT_LE(fontFirstChar, 32);
    EXPECT_GE(fontLastChar, 126);
    for (char c = 33; c < 127; ++c) EXPECT_GT(measureText(std::string(1, c), 2), 0.1f) << c;
}

TEST_F(FontDraw, TextLeavesInkWithinItsBoxAndNowhereElse) {
    text("Hexfold", 10, 10, 2);
    frame();
    float w = measureText("Hexfold", 2);
    EXPECT_GT(inkIn(10, 10, w, 2), 40);
    EXPECT_EQ(inkIn(0, 0, 100, 9.9f), 0) << "nothing above";
    EXPECT_EQ(inkIn(0, 12.1f, 100, 80), 0) << "nothing below";
    EXPECT_EQ(inkIn(10 + w + 0.2f, 9, 50, 4), 0) << "nothing to the right";
    auto [left, right] = inkSpan(10, 2);
    EXPECT_NEAR(left, 10, 0.6);
    EXPECT_NEAR(right, 10 + w, 0.6);
}

TEST_F(FontDraw, TheWidthOfATextIsThatOfItsLongestLine) {
    EXPECT_FLOAT_EQ(measureText("ab\nabcdef\nabc", 2), measureText("abcdef", 2));
    EXPECT_FLOAT_EQ(measureText("abcdef", 3), 1.5f * measureText("abcdef", 2)) << "widths scale with the size";
    EXPECT_EQ(measureText("", 2), 0);
}

TEST_F(FontDraw, TabsGoToTheNextStopBeyondAndCountFromTheOrigin) {
    EXPECT_FLOAT_EQ(measureText("\t", 2), 4);
    EXPECT_FLOAT_EQ(measureText("\t\t", 2), 8) << "a tab exactly on a stop goes on to the next";
    EXPECT_FLOAT_EQ(measureText("i\tx", 2), 4 + measureText("x", 2));
    // When drawing, the stops count from the origin of the coordinates, not from the text's start.
    text("\tW", 1, 20, 2);
    frame();
    auto [left, right] = inkSpan(20, 2);
    EXPECT_NEAR(left, 4, 0.4) << "the stop at 4, not at 1 + 4";
    (void)right;
}

TEST_F(FontDraw, TheColourEscapeIsDrawnAsAColourAndMeasuredAsGlyphs) {
    text("^ff0000W", 10, 10, 2.5f);
    text("W", 10, 20, 2.5f);
    frame();
    auto [escLeft, escRight] = inkSpan(10, 2.5f);
    auto [plainLeft, plainRight] = inkSpan(20, 2.5f);
    EXPECT_FLOAT_EQ(escLeft, plainLeft) << "the seven characters leave no mark and take no room";
    EXPECT_FLOAT_EQ(escRight, plainRight);
    EXPECT_GT(inkIn(10, 10, 5, 2.5f, {0, 0, 0}), 10);
    EXPECT_EQ(countPixels(10, 10, 5, 2.5f, [](Rgb c) { return c.g > 20 || c.b > 20; }), 0)
        << "every inked pixel is a shade of red";
    EXPECT_GT(measureText("^ff0000W", 2.5f), measureText("W", 2.5f) + 2);
}

TEST_F(FontDraw, ACaretWithoutSixCharactersBehindItIsAnOrdinaryGlyph) {
    text("^ab", 10, 10, 2);
    frame();
    EXPECT_GT(inkIn(10, 10, measureText("^", 2), 2), 3) << "the caret is drawn";
    EXPECT_FLOAT_EQ(measureText("^ab", 2), measureText("^", 2) + measureText("ab", 2));
}

TEST_F(FontDraw, CharactersOutsideTheFontAreSkipped) {
    EXPECT_FLOAT_EQ(measureText("\x01W\x7f\xe9", 2), measureText("W", 2));
    text("\x01\x02W", 10, 10, 2);
    text("W", 10, 20, 2);
    frame();
    EXPECT_FLOAT_EQ(inkSpan(10, 2).first, inkSpan(20, 2).first);
}

TEST_F(FontDraw, WrappedTextBreaksOnlyAtSpacesAndStopsAtTheHeight) {
    float word = measureText("wwww", 2);
    auto wrapped = [&](const std::string& t, float y, float height) {
        new Painter(root, 0, 0, 100, 100, [=](Painter&) {
            glColor4f(1, 1, 1, 1);
            drawWrappedText(t, 10, y, word + 0.5f, height, 2);
        });
    };
    wrapped("wwww wwww wwww", 5, 100);    // three lines
    wrapped("wwwwwwwwwwww", 20, 100);     // no space: one line, running past the width
    wrapped("wwww wwww wwww", 30, 4.5f);  // cut after two lines
    wrapped("wwww", 45, 1.9f);            // height below the size: nothing at all
    frame();
    EXPECT_GT(inkIn(10, 5, word, 2), 0);
    EXPECT_GT(inkIn(10, 7, word, 2), 0);
    EXPECT_GT(inkIn(10, 9, word, 2), 0);
    EXPECT_EQ(inkIn(10 + word + 0.6f, 5, 20, 6), 0) << "nothing beyond the width when there are spaces";
    EXPECT_GT(inkIn(10 + word + 0.6f, 20, 20, 2), 0) << "a word without a space runs on";
    EXPECT_EQ(inkIn(10, 22.2f, 30, 2), 0) << "and is not broken";
    EXPECT_GT(inkIn(10, 32, word, 2), 0);
    EXPECT_EQ(inkIn(10, 34.2f, word, 2), 0) << "the third line would end below the height";
    EXPECT_EQ(inkIn(5, 44, 30, 4), 0);
}

TEST_F(FontDraw, ALeadingSpaceIsNoBreakPoint) {
    float word = measureText("wwww", 2);
    new Painter(root, 0, 0, 100, 100, [=](Painter&) {
        glColor4f(1, 1, 1, 1);
        drawWrappedText(" wwwwwwww", 10, 10, word, 100, 2);
    });
    frame();
    EXPECT_EQ(inkIn(0, 12.2f, 100, 4), 0) << "one line only";
}

TEST_F(FontDraw, CaptionsAreCentredVerticallyAndAlignedByTheWindowsAlignment) {
    struct Caption : Window {
        Caption(Window* parent, float y, int align) : Window(parent, 20, y, 40, 6, "") { alignment = align; }
        void draw(float) override {
            glColor4f(1, 1, 1, 1);
            drawCaption("Mid");
        }
    };
    new Caption(root, 10, 0);
    new Caption(root, 20, 1);
    new Caption(root, 30, 2);
    frame();
    float w = measureText("Mid", 1.5f);
    float margin = (6 - 1.5f - 0.1f) * 0.5f; // 2.2 above, and 2.45 on the left
    auto [l0, r0] = inkSpan(10, 6);
    auto [l1, r1] = inkSpan(20, 6);
    auto [l2, r2] = inkSpan(30, 6);
    EXPECT_NEAR(l0, 20 + margin + 0.25f, 0.4);
    EXPECT_NEAR(r1, 60 - margin - 0.25f, 0.4);
    EXPECT_NEAR((l2 + r2) * 0.5f, 40, 0.4);
    EXPECT_NEAR(r0 - l0, w, 0.6);
    EXPECT_EQ(inkIn(20, 10, 40, margin - 0.1f), 0) << "nothing in the top margin";
    EXPECT_GT(inkIn(20, 10 + margin, 40, 1.5f), 0);
}

TEST_F(FontDraw, ASmallTreeWithTextLooksRight) {
    Window* panel = new Window(root, 8, 8, 60, 40, "");
    panel->backColour[0] = 0.85f, panel->backColour[1] = 0.82f, panel->backColour[2] = 0.74f;
    new Painter(panel, 0, 0, 60, 3, [](Painter& p) {
        glColor4f(0.1f, 0.1f, 0.1f, 1);
        glBegin(GL_QUADS);
        glVertex2f(0, 0), glVertex2f(0, p.height), glVertex2f(p.width, p.height), glVertex2f(p.width, 0);
        glEnd();
        glColor4f(1, 1, 1, 1);
        drawText("Hexfold: the referee's tool", 0.575f, 0.575f, 1.75f);
    });
    new Painter(panel, 2, 5, 56, 30, [](Painter&) {
        glColor4f(0, 0, 0, 1);
        drawText("Sizes 1.5 to 2.75 units, every printable character:", 0, 0, 1.5f);
        drawText(" !\"#$%&'()*+,-./0123456789:;<=>?@", 0, 2.5f, 1.5f);
        drawText("ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`", 0, 4.5f, 1.5f);
        drawText("abcdefghijklmnopqrstuvwxyz{|}~", 0, 6.5f, 1.5f);
        drawText("Name\tSkill\tDice", 0, 9, 1.5f);
        drawText("Ayla\t^a00000Blaster\t^0000a04D+2", 0, 10.5f, 1.5f);
        glColor4f(0, 0, 0, 1);
        drawText("Size 2: Initiative 3D+1", 0, 13, 2);
        drawText("Size 2.75: Mortally Wounded", 0, 15.5f, 2.75f);
        drawWrappedText("A wrapped paragraph breaks its lines at spaces only, and stops at its height.", 0,
                        19, 30, 6, 1.5f);
    });
    frame();
    screenshot("spine_text_tree");
    EXPECT_GT(inkIn(10, 13, 50, 8, {217, 209, 189}), 500);
}

} // namespace
