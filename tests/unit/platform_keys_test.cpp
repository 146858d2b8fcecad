// The translation of the window library's key numbers into the program's key codes. The library's
// numbers are written out here, so that nothing outside the platform layer includes its header.
#include <gtest/gtest.h>

#include "platform/glfw2.h"

using platform::translateKey;

TEST(KeyTranslation, PrintableAndSpecialKeysTakeTheProgramsCodesAndOthersNone) {
    struct Case {
        const char* name;
        int library, program;
    } cases[] = {
        {"A", 65, 'A'},
        {"Z", 90, 'Z'},
        {"0", 48, '0'},
        {"9", 57, '9'},
        {"space", 32, ' '},
        {"minus", 45, 45},
        {"comma", 44, ','},
        {"grave", 96, '`'},
        {"right", 262, 286},
        {"left", 263, 285},
        {"down", 264, 284},
        {"up", 265, 283},
        {"left shift", 340, 287},
        {"right shift", 344, 288},
        {"enter", 257, 294},
        {"backspace", 259, 295},
        {"page up", 266, 298},
        {"page down", 267, 299},
        {"keypad 0", 320, 302},
        {"keypad 9", 329, 311},
        {"keypad minus", 333, 314},
        {"keypad enter", 335, 318},
        // No code of ours: escape, tab, F1, left control, delete, home, keypad plus, non-US key, unknown.
        {"escape", 256, -1},
        {"tab", 258, -1},
        {"F1", 290, -1},
        {"left control", 341, -1},
        {"delete", 261, -1},
        {"home", 268, -1},
        {"keypad plus", 334, -1},
        {"world 1", 161, -1},
        {"unknown", -1, -1},
    };
    for (const Case& c : cases)
        EXPECT_EQ(translateKey(c.library), c.program) << c.name;
}
