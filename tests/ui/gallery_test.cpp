// The toolkit gallery that the program shows, used as a person would: every widget clicked or
// typed into with the real pointer and keys, and a screenshot of all of them at work at once.
#include <gtest/gtest.h>

#include "platform/glfw2.h"
#include "shell/gallery.h"
#include "support/ui_driver.h"
#include "toolkit/balloon.h"
#include "toolkit/font.h"
#include "toolkit/input_state.h"

using namespace ui;

namespace {

class GalleryTest : public UiTest {
  protected:
    Gallery* gallery = nullptr;
    void SetUp() override {
        UiTest::SetUp();
        gallery = openGallery(root);
    }
    std::string status() const { return gallery->status->caption; }
    // The ink in a window, inset from its edges: a field's text and cursor, a button's caption.
    Span ink(Window* w) {
        Rect r = screenRect(w);
        return columnsWhere(r.x + 0.3f, r.y + 0.3f, r.w - 0.6f, r.h - 0.6f, [](Rgb c) { return c.r < 120; });
    }
};

TEST_F(GalleryTest, EveryWidgetAnswersTheMouseAndTheKeyboard) {
    clickOn(gallery->lightsSwitch);
    EXPECT_EQ(status(), "Lights on");
    clickOn(gallery->difficulty->button);
    click(screenRect(gallery->difficulty).centreX(), screenRect(gallery->difficulty->list).y + 2.5f * 3.5f);
    EXPECT_EQ(status(), "Difficulty: Heroic (31)") << "the third of Difficult, Easy, Heroic";
    clickOn(gallery->nameField);
    type("Aria 2");
    tap(platform::KEY_ENTER);
    EXPECT_EQ(status(), "Name: Aria 2 (committed)");
    clickOn(gallery->rollField);
    type("5-");
    EXPECT_EQ(status(), "Roll: -5");
    clickOn(gallery->clearButton);
    EXPECT_EQ(gallery->name + gallery->rollField->getText(), "");
    clickOn(gallery->messageButton);
    click(60 + 16.5f, 38 + 12.5f); // the OK of the box beside the gallery
    EXPECT_EQ(status(), "Message box closed");
    moveOnto(gallery->entries[3]);
    ASSERT_NE(balloonWindow, nullptr);
    EXPECT_EQ(static_cast<Label*>(balloonWindow->children[0])->caption, "NPCs: the referee's own characters");
    drag(30, 5.5f, 40, 25.5f); // by the title bar
    EXPECT_NEAR(gallery->y, 24, 0.15);
}

// Written as build/screenshots/toolkit_gallery.png: a pressed switch, the open drop-down, a typed
// name, the number field with the focus and its cursor, the entry under the pointer with its
// balloon, and a message box beside the gallery.
TEST_F(GalleryTest, ScreenshotOfEveryWidgetAtWork) {
    clickOn(gallery->plainSwitch);
    clickOn(gallery->messageButton);
    clickOn(gallery->difficulty->button);
    clickOn(gallery->nameField);
    type("Aria");
    float withCursor = ink(gallery->nameField).last;
    clickOn(gallery->woundsField);
    EXPECT_GT(withCursor - ink(gallery->nameField).last, 0.2f) << "the name showed a cursor while focused";
    type("12");
    // The last entry lies below the open list, so that the balloon above the pointer leaves it clear.
    Rect entry = screenRect(gallery->entries[4]);
    moveTo(entry.x + 4, entry.centreY());
    screenshot("toolkit_gallery");

    Rect wounds = screenRect(gallery->woundsField);
    EXPECT_NEAR(ink(gallery->woundsField).last, wounds.x + 0.95f + measureText("12|", 1.5f), 0.5);
    // Bevels: light above a raised button, dark above the pressed switch; no black outline.
    auto topEdge = [&](Window* w, int grey) {
        Rect r = screenRect(w);
        return countPixels(r.x + 1, r.y - 0.3f, r.w - 2, 0.6f, [grey](Rgb c) {
            return near(c, {grey, grey, grey}, 3);
        });
    };
    EXPECT_GT(topEdge(gallery->clearButton, 217), 100);
    EXPECT_GT(topEdge(gallery->plainSwitch, 140), 100);
    EXPECT_EQ(topEdge(gallery->plainSwitch, 217) + topEdge(gallery->clearButton, 0), 0);
    Rect list = screenRect(gallery->difficulty->list);
    EXPECT_GT(inkIn(list.x + 1, list.y + 0.5f, list.w - 2, list.h - 1, {179, 179, 179}, 60), 200) << "open";
    EXPECT_TRUE(near(pixel(entry.x + 1, entry.y + 2.5f), {217, 217, 217}, 2)) << "the entry is lit";
    ASSERT_NE(balloonWindow, nullptr);
    Window* ok = root->children.back()->children.back();
    EXPECT_NEAR(ink(ok).middle(), screenRect(ok).centreX(), 0.3) << "the caption OK is centred";
    EXPECT_NEAR(ink(ok).last - ink(ok).first, measureText("OK", 1.5f), 0.5);
}

} // namespace
