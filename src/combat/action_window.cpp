// The action menu's buttons and weapon choice with what each costs, and the declaration dialogue.
#include "combat/action_window.h"

#include <cstdint>

#include "rules/character.h"
#include "toolkit/button.h"
#include "toolkit/input_state.h"
#include "toolkit/label.h"
#include "toolkit/message_box.h"
#include "toolkit/select_button.h"

std::string itemKey(const Item* item) {
    return std::to_string(reinterpret_cast<std::uintptr_t>(item));
}

ActionWindow::ActionWindow(Window* parent, float x, float y, float, float)
    : Window(parent, x, y, 19, 31, "") {}

void ActionWindow::refresh() {
    deleteChildren();
    weaponChoice = nullptr;
    if (!character) return;
    new Label(this, character->name, 10, 1, 10, 2, "");
    weaponChoice = new SelectButton(this, 1, 15, 17, 3, "");
    weaponChoice->addEntry(unarmedWeapon->name, itemKey(unarmedWeapon));
    // A grenade is a weapon too: it is taken in hand to be thrown.
    for (Item* item : character->inventory)
        if (dynamic_cast<Weapon*>(item)) weaponChoice->addEntry(item->name, itemKey(item));
    weaponChoice->select(itemKey(character->weapon));
    weaponChoice->selectHandler.bind(this, &ActionWindow::weaponChosen);
    auto* gun = dynamic_cast<RangedWeapon*>(character->weapon);
    if (gun && gun->ammo < gun->maxAmmo)
        (new Button(this, "Reload", 1, 20, 6, 3, ""))->leftClickHandler.bind(this, &ActionWindow::reload);
    (new Button(this, "Other", 12, 20, 6, 3, ""))->leftClickHandler.bind(this, &ActionWindow::other);
    (new Button(this, "End Turn", 1, 27, 17, 3, ""))->leftClickHandler.bind(this, &ActionWindow::endTurn);
}

int ActionWindow::weaponChosen(Window* entry) {
    // Items leave characters while the menu shows them: the key counts only for a weapon that the
    // character still carries now.
    Item* chosen = nullptr;
    if (!held()) {
        if (entry->value == itemKey(unarmedWeapon)) chosen = unarmedWeapon;
        for (Item* item : character->inventory)
            if (dynamic_cast<Weapon*>(item) && itemKey(item) == entry->value) chosen = item;
    }
    if (!chosen || noActionLeft()) {
        // The choice shown goes back to the weapon in hand. This deletes the drop-down inside its own
        // call, which touches nothing after this handler.
        refresh();
        return 0;
    }
    character->equip(chosen);
    return spend();
}

int ActionWindow::reload(Window*) {
    auto* gun = held() ? nullptr : dynamic_cast<RangedWeapon*>(character->weapon);
    // The sheet may have taken the gun out of the hand meanwhile: nothing to reload, nothing spent.
    if (!gun || noActionLeft()) return 0;
    gun->ammo = gun->maxAmmo;
    return spend();
}

int ActionWindow::other(Window*) {
    // What the action was is played out at the table.
    if (held() || noActionLeft()) return 0;
    return spend();
}

int ActionWindow::endTurn(Window*) {
    if (held()) return 0;
    return doneHandler(this);
}

bool ActionWindow::noActionLeft() {
    if (character->actions > 0) return false;
    new MessageBox(parent, "Nope", "No more actions this round", -1, -1, 0, 0);
    return true;
}

int ActionWindow::spend() {
    --character->actions;
    // The turn passes, and the menu is rebuilt for the next one: nothing here is touched after.
    return doneHandler(this);
}

NumActionRequest::NumActionRequest(Window* parent)
    : Dialogue(parent, "Number of Actions", (parent->width - 20) / 2, (parent->height - 10) / 2, 20, 10, "") {
    fontSize = 1.5f;
    new Label(this, "How many actions?", 1, 4, 10, 1.5f, "");
    edit = new NumEdit(this, blankNumber, 1.5f, 6.5f, 4, 2, "");
    edit->commitHandler.bind(this, &NumActionRequest::committed);
    focusWindow = edit;
}

int NumActionRequest::committed(Window*) {
    if (edit->ownNumber >= 0) return close(this);
    // Nothing to say: the field is emptied and keeps the keys for another try.
    edit->ownNumber = blankNumber;
    focusWindow = edit;
    return 0;
}
