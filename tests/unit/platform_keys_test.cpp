// The translation of the window library's keys into the program's key codes, given what the active
// keyboard layout names each key. The library's numbers are written out here, so that nothing
// outside the platform layer includes its header.
#include <gtest/gtest.h>

#include "platform/glfw2.h"

using platform::translateKey;

TEST(KeyTranslation, PrintableKeysFollowTheLayoutAndNamedKeysKeepTheirCodes) {
    struct Case {
        const char* name;
        int library;
        const char* layout; // what the layout names the key; null when it names none
        int program;
    } cases[] = {
        {"US A", 65, "a", 'A'},
        {"US 0", 48, "0", '0'},
        {"US minus", 45, "-", '-'},
        {"US grave", 96, "`", '`'},
        {"German: the key at US Y types z", 89, "z", 'Z'},
        {"German: the key at US Z types y", 90, "y", 'Y'},
        {"German: the key at US slash is the minus", 47, "-", '-'},
        {"German: the key at US minus types sharp s, no code of ours", 45, "\xc3\x9f", -1},
        {"German: the key beside left shift", 161, "<", '<'},
        {"French: the key at US Q types a", 81, "a", 'A'},
        {"a key the library has no number for", -1, "q", 'Q'},
        {"unnamed by the layout: its US place", 81, nullptr, 'Q'},
        {"unnamed comma", 44, nullptr, ','},
        {"unnamed beside left shift", 161, nullptr, -1},
        {"space", 32, nullptr, ' '},
        // The layout's name plays no part for these.
        {"keypad 0", 320, "0", 302},
        {"keypad 9", 329, "9", 311},
        {"keypad minus", 333, "-", 314},
        {"keypad enter", 335, nullptr, 318},
        {"keypad plus", 334, "+", -1},
        {"up", 265, nullptr, 283},
        {"down", 264, nullptr, 284},
        {"left", 263, nullptr, 285},
        {"right", 262, nullptr, 286},
        {"left shift", 340, nullptr, 287},
        {"right shift", 344, nullptr, 288},
        {"enter", 257, nullptr, 294},
        {"backspace", 259, nullptr, 295},
        {"page up", 266, nullptr, 298},
        {"page down", 267, nullptr, 299},
        {"escape", 256, nullptr, -1},
        {"tab", 258, nullptr, -1},
        {"F1", 290, "x", -1},
        {"left control", 341, nullptr, -1},
        {"delete", 261, nullptr, -1},
        {"home", 268, nullptr, -1},
        {"unknown and unnamed", -1, nullptr, -1},
    };
    for (const Case& c : cases)
        EXPECT_EQ(translateKey(c.library, c.layout), c.program) << c.name;
}
