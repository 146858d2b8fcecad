// The toolkit gallery that the program shows, used as a person would: every widget clicked or
// typed into with the real pointer and keys, and a screenshot of all of them at work at once.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/glfw2.h"
#include "shell/gallery.h"
#include "support/ui_driver.h"
#include "toolkit/balloon.h"
#include "toolkit/font.h"
#include "toolkit/input_state.h"
#include "toolkit/message_box.h"

using namespace ui;
using ::testing::ElementsAre;

namespace {

bool isInk(Rgb c) {
    return c.r < 200;
}

class GalleryTest : public UiTest {
  protected:
    Gallery* gallery = nullptr;

    void SetUp() override {
        UiTest::SetUp();
        gallery = openGallery(root);
        frame();
    }

    std::string status() const { return gallery->status->caption; }

    // The entry of the open drop-down that shows this caption.
    Window* entryShowing(const std::string& caption) {
        for (Window* w : gallery->difficulty->list->children)
            if (static_cast<Button*>(w)->caption == caption) return w;
        ADD_FAILURE() << "no entry " << caption;
        return gallery->difficulty->list;
    }

    MessageBox* messageBox() const { return dynamic_cast<MessageBox*>(root->children.back()); }

    // The right end of the ink in a field: where the text, or the cursor behind it, ends.
    float inkEnd(Window* field) {
        Rect r = screenRect(field);
        return columnsWhere(r.x + 0.3f, r.y + 0.3f, r.w - 0.6f, r.h - 0.6f, isInk).last;
    }
};

TEST_F(GalleryTest, SwitchesTurnOverAndTheButtonOpensAMessageBoxThatOkCloses) {
    clickOn(gallery->plainSwitch);
    EXPECT_TRUE(gallery->plainSwitch->pressed);
    EXPECT_EQ(status(), "Switch on");
    clickOn(gallery->lightsSwitch);
    EXPECT_TRUE(gallery->lights);
    EXPECT_EQ(status(), "Lights on");
    clickOn(gallery->lightsSwitch);
    EXPECT_FALSE(gallery->lights);
    EXPECT_EQ(status(), "Lights off");

    clickOn(gallery->messageButton);
    MessageBox* box = messageBox();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->x, 60);
    EXPECT_EQ(box->y, 38) << "at the default height";
    EXPECT_EQ(status(), "Message box opened");
    click(60 + 16.5f, 38 + 12.5f);
    EXPECT_EQ(root->children.back(), gallery);
    EXPECT_EQ(status(), "Message box closed");
}

TEST_F(GalleryTest, TheDropDownOpensAndChooses) {
    EXPECT_EQ(gallery->difficulty->button->caption, "Medium");
    clickOn(gallery->difficulty->button);
    ASSERT_TRUE(gallery->difficulty->list->visible);
    clickOn(entryShowing("Heroic"));
    EXPECT_FALSE(gallery->difficulty->list->visible);
    EXPECT_EQ(status(), "Difficulty: Heroic (31)");
}

TEST_F(GalleryTest, TheFieldsTakeKeysAndClearEmptiesThem) {
    clickOn(gallery->nameField);
    type("Aria 2");
    EXPECT_EQ(status(), "Name: Aria 2");
    platform::script::setKey(platform::KEY_ENTER, true);
    platform::script::setKey(platform::KEY_ENTER, false);
    settle();
    EXPECT_EQ(gallery->name, "Aria 2");
    EXPECT_EQ(status(), "Name: Aria 2 (committed)");
    EXPECT_EQ(focusWindow, gallery);

    clickOn(gallery->noteField);
    type("Limps");
    clickOn(gallery->woundsField);
    type("3-");
    EXPECT_EQ(gallery->wounds, -3);
    EXPECT_EQ(status(), "Wounds: -3");
    clickOn(gallery->rollField);
    EXPECT_EQ(gallery->rollField->getText(), "") << "starts blank";
    type("5");
    EXPECT_EQ(status(), "Roll: 5");

    clickOn(gallery->clearButton);
    EXPECT_EQ(gallery->name, "");
    EXPECT_EQ(gallery->noteField->ownText, "");
    EXPECT_EQ(gallery->wounds, 0);
    EXPECT_EQ(gallery->rollField->ownNumber, blankNumber);
    EXPECT_EQ(status(), "Fields cleared");
}

TEST_F(GalleryTest, AnEntryShowsItsBalloonWhileThePointerRestsOnIt) {
    moveOnto(gallery->entries[2]);
    ASSERT_NE(balloonWindow, nullptr);
    auto* text = static_cast<Label*>(balloonWindow->children[0]);
    EXPECT_EQ(text->caption, "Characters: the player characters\nand their sheets");
    moveOnto(gallery->entries[3]);
    ASSERT_NE(balloonWindow, nullptr);
    EXPECT_EQ(static_cast<Label*>(balloonWindow->children[0])->caption, "NPCs: the referee's own characters");
    click(80, 80);
    EXPECT_EQ(balloonWindow, nullptr);
}

TEST_F(GalleryTest, TheGalleryIsDraggedByItsTitleBar) {
    drag(30, 5.5f, 40, 25.5f);
    EXPECT_NEAR(gallery->x, 12 - 4 / pixelsPerUnitX, 0.15);
    EXPECT_NEAR(gallery->y, 24, 0.15);
    clickOn(gallery->plainSwitch);
    EXPECT_TRUE(gallery->plainSwitch->pressed) << "its widgets came along";
}

// Every widget at work at once, as build/screenshots/toolkit_gallery.png: a pressed switch, the
// open drop-down, a typed name, the number field with the focus and its cursor, the entry under
// the pointer with its balloon, and a message box beside the gallery.
TEST_F(GalleryTest, ScreenshotOfEveryWidgetAtWork) {
    clickOn(gallery->plainSwitch);
    clickOn(gallery->messageButton);
    clickOn(gallery->difficulty->button);

    clickOn(gallery->nameField);
    type("Aria");
    float withCursor = inkEnd(gallery->nameField);
    clickOn(gallery->woundsField);
    float withoutCursor = inkEnd(gallery->nameField);
    EXPECT_GT(withCursor - withoutCursor, 0.2f) << "the text field showed its cursor while it had the focus";
    type("12");

    // An entry below the open list, so that its balloon, above the pointer, leaves the list clear.
    Rect entry = screenRect(gallery->entries[4]);
    moveTo(entry.x + 4, entry.centreY());
    frame();
    screenshot("toolkit_gallery");

    EXPECT_EQ(focusWindow, gallery->woundsField);
    Rect wounds = screenRect(gallery->woundsField);
    float cursor = inkEnd(gallery->woundsField);
    EXPECT_NEAR(cursor, wounds.x + 0.95f + measureText("12|", 1.5f), 0.5) << "the cursor behind the number";

    Rect toggle = screenRect(gallery->plainSwitch);
    EXPECT_GT(countPixels(toggle.x + 1, toggle.y - 0.3f, toggle.w - 2, 0.6f,
                          [](Rgb c) {
                              return near(c, {140, 140, 140}, 3);
                          }),
              50)
        << "the switch is sunken";

    Rect open = screenRect(gallery->difficulty->list);
    EXPECT_EQ(open.h, 3 * 3.5f);
    EXPECT_GT(inkIn(open.x + 1, open.y + 0.5f, open.w - 2, open.h - 1, {179, 179, 179}, 60), 200)
        << "the entries' captions show";

    EXPECT_TRUE(near(pixel(entry.x + 1, entry.y + 0.4f), {217, 217, 217}, 2))
        << "the entry under the pointer is lit";
    ASSERT_NE(balloonWindow, nullptr);
    EXPECT_TRUE(near(pixel(balloonWindow->x + 0.15f, balloonWindow->y + balloonWindow->height - 0.2f),
                     {179, 179, 179}, 2));

    MessageBox* box = dynamic_cast<MessageBox*>(root->children[0] == gallery ? root->children[1] : nullptr);
    ASSERT_NE(box, nullptr);
    EXPECT_GT(inkIn(box->x + 1.5f, box->y + 4.5f, 32, 3, {179, 179, 179}, 60), 100) << "its message shows";
}

} // namespace
