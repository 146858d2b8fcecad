// The UI driver: a real GL context under Xvfb with the scripted input backend. Tests inject pointer
// moves, presses, wheel steps and keys, step frames through the real frame loop, read the input
// state and the window tree, read pixels at logical points and write PNG screenshots.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "toolkit/window.h"

namespace ui {

struct Rgb {
    int r, g, b;
    bool operator==(const Rgb&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Rgb& c);

// True when two colours differ by at most `tolerance` in every channel.
bool near(Rgb a, Rgb b, int tolerance = 8);

// A window's place on the screen in logical units.
struct Rect {
    float x, y, w, h;
    float centreX() const { return x + w / 2; }
    float centreY() const { return y + h / 2; }
};
Rect screenRect(Window* w);

// A root that paints nothing, like the application's: the black clear colour shows through.
class Root : public Window {
  public:
    Root();
    void draw(float) override {}
};

class UiTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    // The children of a window that are of the class W, in order; the last of them, in front, or null.
    template <class W> static std::vector<W*> all(Window* in) {
        std::vector<W*> found;
        for (Window* c : in->children)
            if (auto* w = dynamic_cast<W*>(c)) found.push_back(w);
        return found;
    }
    template <class W> static W* inFront(Window* in) {
        auto found = all<W>(in);
        return found.empty() ? nullptr : found.back();
    }

    // Runs whole turns of the frame loop; fails the test if the loop wants to end.
    void frame(int count = 1);
    // Delivers what is queued (at the next swap) and lets the following frame act on it.
    void settle();

    // Pointer, in logical units or pixels.
    void moveTo(float lx, float ly);
    void movePixels(int px, int py);
    void press(int button = 0);
    void release(int button = 0);
    void click(float lx, float ly, int button = 0);
    // Press at the first point, move 4 pixels to start the drag, go to the second point in
    // `steps` steps, release.
    void drag(float fromX, float fromY, float toX, float toY, int steps = 4);
    void wheel(int steps);

    // Keys by code: a tap is a press and a release; type() taps each character, holding the
    // right shift key for capitals.
    void holdKey(int code);
    void releaseKey(int code);
    void tap(int code);
    void type(const std::string& text);

    // Colour of the frame last drawn, at a logical point or a pixel.
    Rgb pixel(float lx, float ly);
    Rgb pixelAt(int px, int py);
    // Counts the pixels in a logical rectangle that differ from the given colour.
    int inkIn(float x, float y, float w, float h, Rgb background = {0, 0, 0}, int tolerance = 40);
    // Counts the pixels in a logical rectangle for which the predicate holds.
    int countPixels(float x, float y, float w, float h, const std::function<bool(Rgb)>& wanted);
    // The first and last pixel column in a logical rectangle that holds a pixel for which the
    // predicate holds, as logical x of the pixels' left edges; {-1, -1} when there is none.
    struct Span {
        float first, last;
        float middle() const { return (first + last) / 2; }
    };
    Span columnsWhere(float x, float y, float w, float h, const std::function<bool(Rgb)>& wanted);
    // Writes the frame last drawn to build/screenshots/NAME.png and returns the path.
    std::string screenshot(const std::string& name);
    // A screenshot that the referee's guide shows: with HEXFOLD_GUIDE_PICTURES set in the
    // environment, it is written to docs/pictures/NAME.png as well.
    std::string guidePicture(const std::string& name);

    // A window's rectangle on the screen, in logical units, found by adding up the positions
    // along its parent field.
    using Rect = ui::Rect;
    static Rect screenRect(Window* w) { return ui::screenRect(w); }
    // Moves the pointer to the middle of a window, or clicks there.
    void moveOnto(Window* w);
    void clickOn(Window* w, int button = 0);

    static int toPixelX(float lx);
    static int toPixelY(float ly);

    Window* root = nullptr; // a Root, or a test's own application object
};

// Writes the frame last drawn to a PNG file; false when it cannot be written.
bool savePng(const std::string& path);

// The campaign directory of the build, where the font lies; UI tests start in it.
std::string campaignDir();

} // namespace ui
