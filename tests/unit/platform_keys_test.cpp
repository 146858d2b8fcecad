// The translation of the window library's key numbers into the program's key codes.
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include "platform/glfw2.h"

using platform::translateKey;

TEST(KeyTranslation, PrintableKeysKeepTheirAsciiCodeWithLettersUpperCase) {
    EXPECT_EQ(translateKey(GLFW_KEY_A), 'A');
    EXPECT_EQ(translateKey(GLFW_KEY_Z), 'Z');
    EXPECT_EQ(translateKey(GLFW_KEY_0), '0');
    EXPECT_EQ(translateKey(GLFW_KEY_9), '9');
    EXPECT_EQ(translateKey(GLFW_KEY_SPACE), ' ');
    EXPECT_EQ(translateKey(GLFW_KEY_MINUS), 45);
    EXPECT_EQ(translateKey(GLFW_KEY_COMMA), ',');
}

TEST(KeyTranslation, SpecialKeysTakeTheProgramsCodes) {
    EXPECT_EQ(translateKey(GLFW_KEY_UP), 283);
    EXPECT_EQ(translateKey(GLFW_KEY_DOWN), 284);
    EXPECT_EQ(translateKey(GLFW_KEY_LEFT), 285);
    EXPECT_EQ(translateKey(GLFW_KEY_RIGHT), 286);
    EXPECT_EQ(translateKey(GLFW_KEY_LEFT_SHIFT), 287);
    EXPECT_EQ(translateKey(GLFW_KEY_RIGHT_SHIFT), 288);
    EXPECT_EQ(translateKey(GLFW_KEY_ENTER), 294);
    EXPECT_EQ(translateKey(GLFW_KEY_BACKSPACE), 295);
    EXPECT_EQ(translateKey(GLFW_KEY_PAGE_UP), 298);
    EXPECT_EQ(translateKey(GLFW_KEY_PAGE_DOWN), 299);
    for (int i = 0; i <= 9; ++i) EXPECT_EQ(translateKey(GLFW_KEY_KP_0 + i), 302 + i);
    EXPECT_EQ(translateKey(GLFW_KEY_KP_SUBTRACT), 314);
    EXPECT_EQ(translateKey(GLFW_KEY_KP_ENTER), 318);
}

TEST(KeyTranslation, KeysWithoutACodeAreNotDelivered) {
    for (int key : {GLFW_KEY_ESCAPE, GLFW_KEY_TAB, GLFW_KEY_F1, GLFW_KEY_LEFT_CONTROL, GLFW_KEY_DELETE,
                    GLFW_KEY_HOME, GLFW_KEY_KP_ADD, GLFW_KEY_WORLD_1, GLFW_KEY_UNKNOWN})
        EXPECT_EQ(translateKey(key), -1) << key;
}
