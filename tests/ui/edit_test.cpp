// The text and number fields, fed with real keys through the frame loop: which keys they take,
// shift, Backspace and Enter, the cursor, and the wrap-around arithmetic of the number fields.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "platform/glfw2.h"
#include "support/ui_driver.h"
#include "toolkit/edit.h"
#include "toolkit/font.h"
#include "toolkit/input_state.h"

using namespace ui;
using namespace platform;
using ::testing::ElementsAre;

namespace {

// Logs "NAME changed TEXT" and "NAME committed TEXT", with the text that the field shows.
struct FieldWatcher {
    std::vector<std::string> log;
    std::map<Window*, std::string> names;
    void watch(DirectEdit* field, std::string name) {
        names[field] = std::move(name);
        field->changeHandler.bind(this, &FieldWatcher::changed);
        field->commitHandler.bind(this, &FieldWatcher::committed);
    }
    int changed(Window* w) { return note(w, "changed"); }
    int committed(Window* w) { return note(w, "committed"); }
    int note(Window* w, const std::string& what) {
        log.push_back(names[w] + " " + what + " " + static_cast<DirectEdit*>(w)->getText());
        return 0;
    }
};

bool isInk(Rgb c) {
    return c.r < 200;
} // black text, smoothed at its edges, on the white field

class EditTest : public UiTest {
  protected:
    FieldWatcher watcher;
    std::string name;
    int wounds = 0;
    Window* panel = nullptr;
    DirectEdit* nameField = nullptr;
    Edit* noteField = nullptr;
    DirectNumEdit* woundsField = nullptr;
    NumEdit* rollField = nullptr;

    void SetUp() override {
        UiTest::SetUp();
        panel = new Window(root, 10, 10, 60, 40, "");
        nameField = new DirectEdit(panel, &name, 10, 5, 30, 3, "");
        noteField = new Edit(panel, "Start", 10, 10, 30, 3, "");
        woundsField = new DirectNumEdit(panel, &wounds, 10, 15, 30, 3, "");
        rollField = new NumEdit(panel, blankNumber, 10, 20, 30, 3, "");
        watcher.watch(nameField, "name");
        watcher.watch(noteField, "note");
        watcher.watch(woundsField, "wounds");
        watcher.watch(rollField, "roll");
    }

    // Ink inside a field, inset from its bevel.
    int inkInside(Window* field) {
        Rect r = screenRect(field);
        return countPixels(r.x + 0.3f, r.y + 0.3f, r.w - 0.6f, r.h - 0.6f, isInk);
    }
    std::string roll() { return rollField->getText(); }
};

TEST_F(EditTest, ATextFieldTakesLettersDigitsAndSpacesAndNoPunctuation) {
    clickOn(nameField);
    type("ab 12");
    tap(KEY_KP_0 + 7);
    for (int key :
         std::initializer_list<int>{',', '.', '-', ';', '\'', KEY_UP, KEY_PAGEDOWN, KEY_KP_SUBTRACT})
        tap(key);
    EXPECT_EQ(name, "ab 127") << "written straight into the bound string";
    EXPECT_THAT(watcher.log, ElementsAre("name changed a", "name changed ab", "name changed ab ",
                                         "name changed ab 1", "name changed ab 12", "name changed ab 127"))
        << "a rejected key fires nothing";
}

TEST_F(EditTest, ShiftMakesCapitalsButLeavesDigitsAndSpaceAsTheyAre) {
    clickOn(nameField);
    type("Hex");
    holdKey(KEY_LSHIFT);
    tap('1');
    tap(' ');
    tap('Q');
    tap(KEY_KP_0 + 2);
    releaseKey(KEY_LSHIFT);
    tap('Q');
    EXPECT_EQ(name, "Hex1 Q2q") << "the shift is let go before the last Q";
}

TEST_F(EditTest, ShiftIsAskedWhenTheKeyIsHandedOverNotWhenItWentDown) {
    clickOn(nameField);
    // Both arrive in one swap: the key goes down first, the shift after it, and the key is
    // handed over in the next frame, while the shift is held.
    script::setKey('A', true);
    script::setKey('A', false);
    script::setKey(KEY_RSHIFT, true);
    settle();
    // Held at the press, let go before the hand-over.
    script::setKey('B', true);
    script::setKey('B', false);
    script::setKey(KEY_RSHIFT, false);
    settle();
    EXPECT_EQ(name, "Ab");
}

TEST_F(EditTest, BackspaceTakesTheLastCharacterAndReportsAChangeEvenWhenEmpty) {
    clickOn(noteField);
    tap(KEY_BACKSPACE);
    EXPECT_EQ(noteField->ownText, "Star") << "an Edit keeps its own string";
    clickOn(nameField);
    type("ab");
    for (int i = 0; i < 3; ++i)
        tap(KEY_BACKSPACE);
    EXPECT_EQ(name, "");
    EXPECT_THAT(watcher.log, ElementsAre("note changed Star", "name changed a", "name changed ab",
                                         "name changed a", "name changed ", "name changed "));
}

TEST_F(EditTest, EnterCommitsOnlyAndHandsTheKeysToTheParent) {
    clickOn(nameField);
    type("x");
    tap(KEY_ENTER);
    EXPECT_EQ(focusWindow, panel);
    tap('Y');
    EXPECT_EQ(name, "x") << "further keys go to the parent";
    clickOn(noteField);
    tap(KEY_KP_ENTER);
    EXPECT_EQ(focusWindow, panel);
    EXPECT_THAT(watcher.log, ElementsAre("name changed x", "name committed x", "note committed Start"));
}

TEST_F(EditTest, CommitWithoutAParentLeavesTheFocusAlone) {
    std::string loose;
    DirectEdit field(nullptr, &loose, 0, 0, 10, 3, "");
    watcher.watch(&field, "loose");
    focusWindow = &field;
    field.onKey(KEY_ENTER);
    EXPECT_EQ(focusWindow, &field);
    EXPECT_THAT(watcher.log, ElementsAre("loose committed "));
}

TEST_F(EditTest, TheCursorShowsOnlyWhileTheFieldHasTheFocus) {
    frame();
    EXPECT_EQ(inkInside(nameField), 0);
    EXPECT_EQ(inkInside(rollField), 0) << "a blank number shows nothing";
    clickOn(nameField);
    EXPECT_GT(inkInside(nameField), 5) << "the cursor alone";
    clickOn(rollField);
    EXPECT_EQ(inkInside(nameField), 0);
    EXPECT_GT(inkInside(rollField), 5);
    Rect r = screenRect(rollField);
    Span bar = columnsWhere(r.x, r.y, r.w, r.h, isInk);
    // The left margin is (3 - 1.5 - 0.1) / 2 + 0.25 = 0.95; the bar stands inside its glyph's box.
    EXPECT_GE(bar.first, r.x + 0.95f - 0.1f);
    EXPECT_LE(bar.last, r.x + 0.95f + measureText("|", 1.5f));
    screenshot("edit_fields");
}

TEST_F(EditTest, TheCursorCountsInTheWidthOfARightAlignedField) {
    name = "abc";
    nameField->alignment = 1;
    frame();
    Rect r = screenRect(nameField);
    Span before = columnsWhere(r.x, r.y, r.w - 0.3f, r.h, isInk);
    clickOn(nameField);
    Span after = columnsWhere(r.x, r.y, r.w - 0.3f, r.h, isInk);
    EXPECT_NEAR(after.first, before.first - measureText("|", 1.5f), 0.2) << "the text moves left by the bar";
}

TEST_F(EditTest, AFieldShowsWhatItsVariableHoldsAtEachDraw) {
    frame();
    EXPECT_EQ(inkInside(nameField), 0);
    name = "Changed elsewhere";
    wounds = 42;
    frame();
    EXPECT_GT(inkInside(nameField), 50);
    EXPECT_EQ(woundsField->getText(), "42");
}

class NumEditTest : public EditTest {};

TEST_F(NumEditTest, DigitsBuildTheNumberAndOtherKeysAreIgnored) {
    clickOn(rollField);
    type("30");
    tap(KEY_KP_0 + 5);
    for (int key : std::initializer_list<int>{'A', ' ', '.', '+', KEY_LEFT})
        tap(key);
    EXPECT_EQ(rollField->ownNumber, 305);
    EXPECT_THAT(watcher.log, ElementsAre("roll changed 3", "roll changed 30", "roll changed 305"));
}

TEST_F(NumEditTest, TheSignIsTypedLastAndDigitsAfterItAreStillAdded) {
    clickOn(woundsField);
    type("12-");
    EXPECT_EQ(wounds, -12);
    type("3");
    EXPECT_EQ(wounds, -117) << "-12 x 10 + 3";
    tap(KEY_KP_SUBTRACT);
    EXPECT_EQ(wounds, 117);
    tap(KEY_BACKSPACE);
    EXPECT_EQ(wounds, 11);
    type("-");
    tap(KEY_BACKSPACE);
    EXPECT_EQ(wounds, -1) << "rounded towards 0";
    tap(KEY_BACKSPACE);
    EXPECT_EQ(wounds, 0) << "not blank";
    EXPECT_EQ(woundsField->getText(), "0");
    type("7");
    EXPECT_EQ(woundsField->getText(), "7") << "a digit typed at 0 replaces it";
}

TEST_F(NumEditTest, ABlankFieldTakesItsFirstDigitAloneAndStaysBlankUnderTheSign) {
    clickOn(rollField);
    tap('-');
    EXPECT_EQ(rollField->ownNumber, blankNumber) << "its own negative";
    tap(KEY_ENTER);
    EXPECT_EQ(rollField->ownNumber, blankNumber);
    clickOn(rollField);
    type("4");
    EXPECT_EQ(rollField->ownNumber, 4) << "blank times ten wraps to 0";
    EXPECT_THAT(watcher.log, ElementsAre("roll changed ", "roll committed ", "roll changed 4"));
}

TEST_F(NumEditTest, BackspaceOnABlankFieldGivesMinus214748364) {
    clickOn(rollField);
    tap(KEY_BACKSPACE);
    EXPECT_EQ(rollField->ownNumber, -214748364);
    EXPECT_EQ(roll(), "-214748364");
}

TEST_F(NumEditTest, PastThirtyTwoBitsTheNumberWraps) {
    clickOn(woundsField);
    type("2147483647");
    EXPECT_EQ(wounds, 2147483647);
    type("0");
    EXPECT_EQ(wounds, -10) << "21474836470 less 5 x 2^32";
    tap(KEY_BACKSPACE);
    tap(KEY_BACKSPACE);
    type("4294967297");
    EXPECT_EQ(wounds, 1) << "2^32 + 1, typed after a 0";
    type("-");
    tap(KEY_BACKSPACE);
    type("2147483648");
    EXPECT_EQ(wounds, blankNumber) << "2^31 lands on the blank";
    EXPECT_EQ(woundsField->getText(), "");
}

} // namespace
