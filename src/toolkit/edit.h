// The text and number fields. A field appends and deletes at the end only, and writes through to
// its variable on every key; the Direct fields write into a variable of the caller's, the others
// into one of their own.
#pragma once

#include <limits>

#include "toolkit/window.h"

// The number that marks a blank number field, which shows nothing.
constexpr int blankNumber = std::numeric_limits<int>::min();

class DirectEdit : public Window {
  public:
    std::string* variable;  // not owned; must outlive the field
    Delegate commitHandler; // Enter
    Delegate changeHandler; // a key that may have changed the value

    DirectEdit(Window* parent, std::string* variable, float x, float y, float width, float height,
               std::string value);
    ~DirectEdit() override;
    void onKey(int key) override;
    // The box, then the text, with a "|" behind it while the field has the focus.
    void draw(float alpha) override;

    // Hands the focus to the parent, without onFocusLost, and fires commitHandler.
    virtual void commit();
    virtual void onChange();
    // A white, sunken box; leaves the colour black for the text.
    virtual void drawField(float alpha);
    virtual std::string getText();
    // The character that a key code stands for (letters in lower case), or 0 for a key that the
    // field does not take.
    virtual int filterKey(int key);
};

class Edit : public DirectEdit {
  public:
    std::string ownText;

    Edit(Window* parent, std::string initial, float x, float y, float width, float height, std::string value);
    ~Edit() override;
};

// A number field. The arithmetic is that of 32-bit words, wrapping and blind to the sign: a digit
// is always added, so a negative number is typed digits first and the sign last.
class DirectNumEdit : public Edit {
  public:
    int* number; // not owned; must outlive the field

    DirectNumEdit(Window* parent, int* number, float x, float y, float width, float height,
                  std::string value);
    void onKey(int key) override;
    std::string getText() override;
    int filterKey(int key) override;
};

class NumEdit : public DirectNumEdit {
  public:
    int ownNumber;

    NumEdit(Window* parent, int initial, float x, float y, float width, float height, std::string value);
};
