// Text and number fields fed real keys: which keys they take, shift, Backspace, Enter, 32-bit wrap-around.
#include <gmock/gmock.h>

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
    // A field on the root at this height, its handlers logged.
    template <class Field, class Value> Field* field(Value value, float y) {
        auto* f = new Field(root, value, 10, y, 30, 3, "");
        f->changeHandler.bind(this, &EditTest::changed);
        f->commitHandler.bind(this, &EditTest::committed);
        return f;
    }
    int changed(Window* w) { return note("changed ", w); }
    int committed(Window* w) { return note("committed ", w); }
    int note(const std::string& what, Window* w) {
        log.push_back(what + static_cast<DirectEdit*>(w)->getText());
        return 0;
    }
    // Taps the key of each character; "<" stands for Backspace, "\n" for Enter.
    void keys(const std::string& text) {
        for (char c : text)
            tap(c == '<' ? KEY_BACKSPACE : c == '\n' ? KEY_ENTER : c);
    }
};

TEST_F(EditTest, ATextFieldTakesLettersDigitsAndSpacesShiftsOnlyLettersAndEnterOnlyCommits) {
    std::string name;
    clickOn(field<DirectEdit>(&name, 10));
    type("Hex 1,.-'");
    for (int key : {KEY_KP_0 + 7, KEY_UP, KEY_KP_SUBTRACT})
        tap(key);
    holdKey(KEY_LSHIFT);
    keys("2 Q"); // a shifted digit or space is taken as it is
    releaseKey(KEY_LSHIFT);
    // Shift is asked when the key is handed over: in one swap the key goes down and up, then the
    // shift down; and then the shift goes up before the next key is handed over.
    for (int key : {'A', 'B'}) {
        script::setKey(key, true);
        script::setKey(key, false);
        script::setKey(KEY_RSHIFT, key == 'A');
        settle();
    }
    EXPECT_EQ(name, "Hex 172 QAb");
    EXPECT_EQ(log.size(), 11u) << "one change per key taken";
    log.clear();
    name = "a";
    keys("<<\n");
    EXPECT_EQ(focusWindow, root);
    EXPECT_THAT(log, ElementsAre("changed ", "changed ", "committed "));
}

TEST_F(EditTest, NumbersWrapIn32BitsTakeTheSignAnyTimeAndABlankStaysBlankUnderTheSignAndEnter) {
    std::tuple<int, const char*, const char*> cases[] = {
        {0, "12-3", "-117"},     // -12 x 10 + 3: a digit is always added
        {-117, "-<-<A .", "-1"}, // 117, 11, -11, rounded towards 0; letters, space and dot refused
        {7, "<", "0"},           // not blank
        {0, "4294967297", "1"},  // 2^32 + 1 wraps
        {0, "2147483648", ""},   // 2^31 lands on the blank
        {blankNumber, "<", "-214748364"},
        {blankNumber, "4", "4"}, // blank times ten wraps to 0
        {blankNumber, "-", ""},
    };
    auto* roll = field<NumEdit>(blankNumber, 10);
    clickOn(roll);
    for (auto [start, typed, shown] : cases) {
        roll->ownNumber = start;
        keys(typed);
        EXPECT_EQ(roll->getText(), shown) << start << " then " << typed;
    }
    log.clear();
    keys("\n"); // on the blank
    EXPECT_EQ(focusWindow, root);
    EXPECT_THAT(log, ElementsAre("committed "));
}

} // namespace
