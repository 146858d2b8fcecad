// The toolkit gallery: layout and the handlers that make each widget do something visible.
#include "support/gallery.h"

#include "toolkit/balloon.h"
#include "toolkit/message_box.h"

namespace {
struct Catalogue {
    const char* caption;
    const char* description;
};

const Catalogue catalogues[Gallery::entryCount] = {
    {"Skills", "Skills: the tree of what a character can do,\neach with its dice code"},
    {"Items", "Items: weapons, armour and grenades"},
    {"Characters", "Characters: the player characters\nand their sheets"},
    {"NPCs", "NPCs: the referee's own characters"},
    {"Factions", "Factions: who fights on which side"},
};

struct Difficulty {
    const char* caption;
    const char* value;
};

// Added out of order on purpose: the list sorts itself.
const Difficulty difficulties[] = {{"Medium", "15"}, {"Heroic", "31"}, {"Easy", "10"}, {"Difficult", "20"}};
} // namespace

Gallery::Gallery(Window* parent) : Dialogue(parent, "Toolkit Gallery", 2, 4, 56, 41, "") {
    // Left column: press controls, then the fields with their labels.
    messageButton = new Button(this, "Message", 1, 4, 12.5f, 3.5f, "");
    messageButton->leftClickHandler.bind(this, &Gallery::openMessage);
    plainSwitch = new Switch(this, "Switch", 14.5f, 4, 12.5f, 3.5f, "");
    plainSwitch->leftClickHandler.bind(this, &Gallery::switched);
    lightsSwitch = new DirectSwitch(this, &lights, "Lights", 1, 8.5f, 12.5f, 3.5f, "");
    lightsSwitch->leftClickHandler.bind(this, &Gallery::switched);
    clearButton = new Button(this, "Clear", 14.5f, 8.5f, 12.5f, 3.5f, "");
    clearButton->leftClickHandler.bind(this, &Gallery::clear);

    new Label(this, "Name", 1, 13, 8, 3, "");
    nameField = new DirectEdit(this, &name, 9, 13, 18, 3, "");
    new Label(this, "Note", 1, 17, 8, 3, "");
    noteField = new Edit(this, "", 9, 17, 18, 3, "");
    new Label(this, "Wounds", 1, 21, 8, 3, "");
    woundsField = new DirectNumEdit(this, &wounds, 9, 21, 18, 3, "");
    new Label(this, "Roll", 1, 25, 8, 3, "");
    rollField = new NumEdit(this, blankNumber, 9, 25, 18, 3, "");
    for (DirectEdit* field : {static_cast<DirectEdit*>(nameField), static_cast<DirectEdit*>(noteField),
                              static_cast<DirectEdit*>(woundsField), static_cast<DirectEdit*>(rollField)}) {
        field->changeHandler.bind(this, &Gallery::fieldChanged);
        field->commitHandler.bind(this, &Gallery::fieldCommitted);
    }

    // Right column: the catalogue entries with their balloons, and the drop-down above them,
    // made last so that its open list lies in front of them.
    for (int i = 0; i < entryCount; ++i) {
        entries[i] =
            new MenuEntry(this, catalogues[i].caption, 29, 8.5f + 3.5f * i, 26, 3, catalogues[i].description);
        entries[i]->mouseEnterHandler.bind(this, &Gallery::showBalloon);
    }
    // As high as the entries below, so that the captions share their left margin.
    new Label(this, "Difficulty", 29, 4.25f, 10, 3, "");
    difficulty = new SelectButton(this, 39, 4, 16, 3.5f, "");
    for (const Difficulty& d : difficulties)
        difficulty->addEntry(d.caption, d.value);
    difficulty->selectHandler.bind(this, &Gallery::difficultyChosen);

    about = new Text(this, 1, 29.5f, 54, 7, "");
    about->caption = "Drag the gallery by its title bar. A switch keeps its state; the drop-down opens "
                     "below its button. A click on a field gives it the keys: letters, digits and "
                     "spaces, Backspace, and Enter to commit. Rest the pointer on an entry.";
    status = new Label(this, "Ready", 1, 37, 54, 3, "");
}

Gallery::~Gallery() {
    // The Direct widgets point into this object: they go before its members do.
    deleteChildren();
}

int Gallery::openMessage(Window*) {
    // Beside the gallery, at the default height.
    auto* box = new MessageBox(parent, "Message",
                               "Nothing here waits for this box: the gallery stays usable. OK closes it.", 60,
                               -1, 0, 0);
    box->closeHandler.bind(this, &Gallery::messageClosed);
    status->caption = "Message box opened";
    return 0;
}

int Gallery::messageClosed(Window*) {
    status->caption = "Message box closed";
    return 0;
}

int Gallery::switched(Window* sender) {
    auto* which = static_cast<Switch*>(sender);
    status->caption = which->caption + (which->pressed ? " on" : " off");
    return 0;
}

int Gallery::clear(Window*) {
    name.clear();
    noteField->ownText.clear();
    wounds = 0;
    rollField->ownNumber = blankNumber;
    status->caption = "Fields cleared";
    return 0;
}

std::string Gallery::describe(Window* field) {
    if (field == nameField) return "Name: " + name;
    if (field == noteField) return "Note: " + noteField->ownText;
    if (field == woundsField) return "Wounds: " + woundsField->getText();
    std::string roll = rollField->getText();
    return "Roll: " + (roll.empty() ? std::string("blank") : roll);
}

int Gallery::fieldChanged(Window* field) {
    status->caption = describe(field);
    return 0;
}

int Gallery::fieldCommitted(Window* field) {
    status->caption = describe(field) + " (committed)";
    return 0;
}

int Gallery::difficultyChosen(Window* choice) {
    auto* button = static_cast<Button*>(choice);
    status->caption = "Difficulty: " + button->caption + " (" + button->value + ")";
    return 0;
}

int Gallery::showBalloon(Window* entry) {
    // The frame loop places it next to the pointer in this same step and deletes it when the
    // pointer leaves or a button goes down.
    new Balloon(entry->value, 1.25f);
    return 0;
}

Gallery* openGallery(Window* parent) {
    return new Gallery(parent);
}
