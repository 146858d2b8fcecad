// The text and number fields fed with real keys through the frame loop: which keys they take,
// shift, Backspace and Enter, and the wrap-around arithmetic of the number fields.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/glfw2.h"
#include "support/ui_driver.h"
#include "toolkit/edit.h"
#include "toolkit/input_state.h"

using namespace ui;
using namespace platform;
using ::testing::ElementsAre;

namespace {

class EditTest : public UiTest {
  protected:
    std::vector<std::string> log; // "changed TEXT" and "committed TEXT", as the field shows it
    std::string name;
    int wounds = 0;
    Window* panel = nullptr;
    DirectEdit* nameField = nullptr;
    DirectNumEdit* woundsField = nullptr;
    NumEdit* rollField = nullptr;

    void SetUp() override {
        UiTest::SetUp();
        panel = new Window(root, 10, 10, 60, 40, "");
        nameField = new DirectEdit(panel, &name, 10, 5, 30, 3, "");
        woundsField = new DirectNumEdit(panel, &wounds, 10, 15, 30, 3, "");
        rollField = new NumEdit(panel, blankNumber, 10, 20, 30, 3, "");
        for (DirectEdit* field :
             {nameField, static_cast<DirectEdit*>(woundsField), static_cast<DirectEdit*>(rollField)}) {
            field->changeHandler.bind(this, &EditTest::changed);
            field->commitHandler.bind(this, &EditTest::committed);
        }
    }
    int changed(Window* w) { return note("changed ", w); }
    int committed(Window* w) { return note("committed ", w); }
    int note(const std::string& what, Window* w) {
        log.push_back(what + static_cast<DirectEdit*>(w)->getText());
        return 0;
    }
    void tapAll(std::initializer_list<int> keys) {
        for (int key : keys)
            tap(key);
    }
};

TEST_F(EditTest, ATextFieldTakesLettersDigitsAndSpacesWithShiftForCapitalsOnly) {
    clickOn(nameField);
    type("Hex 1");
    tapAll({KEY_KP_0 + 7, ',', '.', '-', '\'', KEY_UP, KEY_KP_SUBTRACT});
    holdKey(KEY_LSHIFT);
    tapAll({'2', ' ', 'Q'}); // a shifted digit or space is taken as it is
    releaseKey(KEY_LSHIFT);
    // Shift is asked when the key is handed over: in one swap the key goes down and up, then the
    // shift down; and then the shift goes up before the next key is handed over.
    script::setKey('A', true);
    script::setKey('A', false);
    script::setKey(KEY_RSHIFT, true);
    settle();
    script::setKey('B', true);
    script::setKey('B', false);
    script::setKey(KEY_RSHIFT, false);
    settle();
    EXPECT_EQ(name, "Hex 172 QAb");
    EXPECT_EQ(log.size(), 11u) << "one change per key taken, none for a key refused";
}

TEST_F(EditTest, BackspaceReportsAChangeEvenWhenEmptyAndEnterOnlyCommitsAndHandsOnTheFocus) {
    clickOn(nameField);
    type("a");
    tapAll({KEY_BACKSPACE, KEY_BACKSPACE, KEY_ENTER});
    EXPECT_EQ(focusWindow, panel);
    tap('Y');
    EXPECT_EQ(name, "") << "further keys go to the parent";
    clickOn(woundsField);
    tap(KEY_KP_ENTER);
    EXPECT_THAT(log, ElementsAre("changed a", "changed ", "changed ", "committed ", "committed 0"));
}

TEST_F(EditTest, ANumberIsTypedDigitsFirstAndSignLastInWrappingArithmetic) {
    clickOn(woundsField);
    type("12-");
    EXPECT_EQ(wounds, -12);
    type("3");
    EXPECT_EQ(wounds, -117) << "-12 x 10 + 3: a digit is always added";
    tapAll({KEY_KP_SUBTRACT, KEY_BACKSPACE, '-', KEY_BACKSPACE, 'A', ' ', '.'});
    EXPECT_EQ(wounds, -1) << "117, 11, -11, then rounded towards 0; letters, space and dot refused";
    tap(KEY_BACKSPACE);
    EXPECT_EQ(woundsField->getText(), "0") << "not blank";
    tap(KEY_KP_0 + 7);
    EXPECT_EQ(wounds, 7) << "a digit replaces the 0";
    tap(KEY_BACKSPACE);
    type("4294967297");
    EXPECT_EQ(wounds, 1) << "2^32 + 1 wraps";
    tap(KEY_BACKSPACE);
    type("2147483648");
    EXPECT_EQ(wounds, blankNumber) << "2^31 lands on the blank";
    EXPECT_EQ(woundsField->getText(), "");
}

TEST_F(EditTest, ABlankNumberFieldStaysBlankUnderTheSignAndEnterAndTakesItsFirstDigitAlone) {
    clickOn(rollField);
    tapAll({'-', KEY_ENTER});
    EXPECT_EQ(rollField->ownNumber, blankNumber);
    clickOn(rollField);
    type("4");
    rollField->ownNumber = blankNumber;
    tap(KEY_BACKSPACE);
    EXPECT_THAT(log, ElementsAre("changed ", "committed ", "changed 4", "changed -214748364"))
        << "blank times ten wraps to 0; blank over ten is -214748364";
}

} // namespace
