// The toolkit gallery: one dialogue that holds every widget, wired so that each can be tried with
// the mouse and the keyboard in one pass of a test.
#pragma once

#include <string>

#include "toolkit/button.h"
#include "toolkit/dialogue.h"
#include "toolkit/edit.h"
#include "toolkit/label.h"
#include "toolkit/menu_entry.h"
#include "toolkit/select_button.h"
#include "toolkit/text.h"

class Gallery : public Dialogue {
  public:
    explicit Gallery(Window* parent);
    ~Gallery() override;

    // What the Direct widgets write into; declared before the widgets that point at them.
    bool lights = false;
    std::string name;
    int wounds = 0;

    Button* messageButton;
    Switch* plainSwitch;
    DirectSwitch* lightsSwitch;
    Button* clearButton;
    DirectEdit* nameField;
    Edit* noteField;
    DirectNumEdit* woundsField;
    NumEdit* rollField;
    SelectButton* difficulty;
    static constexpr int entryCount = 5;
    MenuEntry* entries[entryCount];
    Text* about;
    Label* status; // says what the last action did

    int openMessage(Window* sender);
    int messageClosed(Window* box);
    int switched(Window* sender);
    int clear(Window* sender);
    int fieldChanged(Window* field);
    int fieldCommitted(Window* field);
    int difficultyChosen(Window* choice);
    int showBalloon(Window* entry);

  private:
    std::string describe(Window* field);
};

// Opens the gallery on the parent, which owns it.
Gallery* openGallery(Window* parent);
