// The gallery used in one pass of the real pointer and keys, shot as build/screenshots/toolkit_gallery.png.
#include <gtest/gtest.h>

#include "platform/glfw2.h"
#include "support/gallery.h"
#include "support/ui_driver.h"
#include "toolkit/balloon.h"
#include "toolkit/font.h"
#include "toolkit/input_state.h"

using namespace ui;

namespace {

class GalleryTest : public UiTest {
  protected:
    // The ink in a window, inset from its edges: a field's text and cursor, a button's caption.
    Span ink(Window* w) {
        Rect r = screenRect(w);
        return columnsWhere(r.x + 0.3f, r.y + 0.3f, r.w - 0.6f, r.h - 0.6f, [](Rgb c) { return c.r < 120; });
    }
    // The pixels of this grey along a button's top edge.
    int topEdge(Window* w, int g) {
        Rect r = screenRect(w);
        return countPixels(r.x + 1, r.y - 0.3f, r.w - 2, 0.6f, [=](Rgb c) { return near(c, {g, g, g}, 3); });
    }
};

TEST_F(GalleryTest, EveryWidgetAnswersTheMouseAndTheKeyboardAndShowsInTheScreenshot) {
    Gallery* gallery = openGallery(root);
    std::string& status = gallery->status->caption;
    // A switch turns over before its handler runs; a direct one turns its variable over, set elsewhere.
    gallery->lights = true;
    clickOn(gallery->lightsSwitch);
    EXPECT_EQ(status, "Lights off");
    clickOn(gallery->difficulty->button);
    click(screenRect(gallery->difficulty).centreX(), screenRect(gallery->difficulty->list).y + 2.5f * 3.5f);
    EXPECT_EQ(status, "Difficulty: Heroic (31)"); // the third of Difficult, Easy, Heroic
    clickOn(gallery->nameField);
    type("Aria");
    float withCursor = ink(gallery->nameField).last;
    tap(platform::KEY_KP_ENTER);
    EXPECT_EQ(status, "Name: Aria (committed)");
    EXPECT_GT(withCursor - ink(gallery->nameField).last, 0.2f) << "the cursor goes with the focus";
    // The screenshot: a message box beside the gallery, the open drop-down, a pressed switch, the
    // wounds field focused, and the last entry under the pointer, clear of the list, with its balloon.
    clickOn(gallery->messageButton);
    clickOn(gallery->difficulty->button);
    clickOn(gallery->plainSwitch);
    EXPECT_EQ(status, "Switch on");
    clickOn(gallery->woundsField);
    type("12");
    tap(platform::KEY_KP_SUBTRACT);
    EXPECT_EQ(status, "Wounds: -12");
    Rect entry = screenRect(gallery->entries[4]);
    moveTo(entry.x + 4, entry.centreY());
    screenshot("toolkit_gallery");
    ASSERT_NE(balloonWindow, nullptr);
    EXPECT_EQ(static_cast<Label*>(balloonWindow->children[0])->caption, "Factions: who fights on which side");
    // Bevels: light above a raised button, dark above the pressed switch.
    EXPECT_GT(topEdge(gallery->clearButton, 217), 100);
    EXPECT_GT(topEdge(gallery->plainSwitch, 140), 100);
    Window* ok = root->children.back()->children.back();
    EXPECT_NEAR(ink(ok).middle(), screenRect(ok).centreX(), 0.3) << "the caption OK is centred";
    clickOn(ok);
    EXPECT_EQ(status, "Message box closed");
    clickOn(gallery->clearButton);
    EXPECT_EQ(gallery->name + gallery->woundsField->getText(), "0");
}

} // namespace
