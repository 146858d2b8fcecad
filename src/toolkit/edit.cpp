// The fields: key filtering, the 32-bit number arithmetic, committing and drawing.
#include "toolkit/edit.h"

#include <GL/gl.h>

#include <cstdint>

#include "platform/glfw2.h"
#include "toolkit/input_state.h"
#include "toolkit/shapes.h"

namespace {
bool isEnter(int key) {
    return key == platform::KEY_ENTER || key == platform::KEY_KP_ENTER;
}

// Shift is asked when the frame step hands the key over, not when the key went down.
bool shiftHeld() {
    return platform::glfwGetKey(platform::KEY_RSHIFT) || platform::glfwGetKey(platform::KEY_LSHIFT);
}

int digitOf(int key) {
    if (key >= '0' && key <= '9') return key;
    if (key >= platform::KEY_KP_0 && key <= platform::KEY_KP_9) return key - platform::KEY_KP_0 + '0';
    return 0;
}

// Wrapping arithmetic in unsigned words, where it is defined; the conversion back to int is
// modular.
int wrap(std::uint32_t word) {
    return static_cast<int>(word);
}
std::uint32_t word(int number) {
    return static_cast<std::uint32_t>(number);
}
} // namespace

DirectEdit::DirectEdit(Window* parent, std::string* variable, float x, float y, float width, float height,
                       std::string value)
    : Window(parent, x, y, width, height, std::move(value)), variable(variable) {}

DirectEdit::~DirectEdit() = default;

void DirectEdit::onKey(int key) {
    if (isEnter(key)) {
        commit();
        return;
    }
    if (key == platform::KEY_BACKSPACE) {
        if (!variable->empty()) variable->pop_back();
        onChange(); // also on an empty field
        return;
    }
    int c = filterKey(key);
    if (c == 0) return;
    // Only letters have a shifted form here: a shifted digit or space is taken as it is, so that
    // the field never holds a character that the font cannot show.
    if (shiftHeld() && c >= 'a' && c <= 'z') c -= 32;
    variable->push_back(static_cast<char>(c));
    onChange();
}

void DirectEdit::draw(float a) {
    drawField(a);
    std::string shown = getText();
    if (focusWindow == this) shown += "|";
    drawCaption(shown);
}

void DirectEdit::commit() {
    if (parent) focusWindow = parent;
    commitHandler(this);
}

void DirectEdit::onChange() {
    changeHandler(this);
}

void DirectEdit::drawField(float a) {
    glColor4f(1, 1, 1, a);
    fillRect(width, height);
    // Sunken: dark on the top and left edges, light on the others.
    glBegin(GL_LINES);
    glColor4f(0.55f, 0.55f, 0.55f, a);
    glVertex2f(0, 0);
    glVertex2f(0, height);
    glVertex2f(0, 0);
    glVertex2f(width, 0);
    glColor4f(0.85f, 0.85f, 0.85f, 1);
    glVertex2f(width, height);
    glVertex2f(width, 0);
    glVertex2f(width, height);
    glVertex2f(0, height);
    glEnd();
    glColor4f(0, 0, 0, a);
}

std::string DirectEdit::getText() {
    return *variable;
}

int DirectEdit::filterKey(int key) {
    if (key == ' ') return ' ';
    if (int digit = digitOf(key)) return digit;
    if (key >= 'A' && key <= 'Z') return key + 32;
    return 0;
}

Edit::Edit(Window* parent, std::string initial, float x, float y, float width, float height,
           std::string value)
    : DirectEdit(parent, nullptr, x, y, width, height, std::move(value)), ownText(std::move(initial)) {
    variable = &ownText;
}

Edit::~Edit() = default;

DirectNumEdit::DirectNumEdit(Window* parent, int* number, float x, float y, float width, float height,
                             std::string value)
    : Edit(parent, "", x, y, width, height, std::move(value)), number(number) {}

void DirectNumEdit::onKey(int key) {
    if (isEnter(key)) {
        commit();
        return;
    }
    if (key == '-' || key == platform::KEY_KP_SUBTRACT) {
        // The blank number is its own negative and stays blank.
        *number = wrap(0u - word(*number));
        onChange();
        return;
    }
    if (key == platform::KEY_BACKSPACE) {
        // Rounds towards 0: a single digit leaves 0, and a blank field a large negative number.
        *number /= 10;
        onChange();
        return;
    }
    int c = filterKey(key);
    if (c == 0) return;
    // A blank field times ten wraps to 0, so the first digit stands alone; at a negative number
    // the digit is still added: -12 and 3 give -117.
    *number = wrap(word(*number) * 10u + word(c - '0'));
    onChange();
}

std::string DirectNumEdit::getText() {
    return *number == blankNumber ? std::string() : std::to_string(*number);
}

int DirectNumEdit::filterKey(int key) {
    return digitOf(key);
}

NumEdit::NumEdit(Window* parent, int initial, float x, float y, float width, float height, std::string value)
    : DirectNumEdit(parent, nullptr, x, y, width, height, std::move(value)), ownNumber(initial) {
    number = &ownNumber;
}
