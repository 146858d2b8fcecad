// The character sheet: its layout, the handlers of its controls, and items and skills dropped on it.
#include "editors/character_sheet.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "combat/roll.h"
#include "editors/delete_button.h"
#include "editors/list_entry.h"
#include "editors/list_window.h"
#include "rules/character.h"
#include "rules/character_files.h"
#include "rules/item.h"
#include "rules/skill.h"
#include "toolkit/button.h"
#include "toolkit/edit.h"
#include "toolkit/font.h"
#include "toolkit/input_state.h"
#include "toolkit/label.h"
#include "toolkit/message_box.h"
#include "toolkit/select_button.h"

namespace {
float textWidth(const std::string& text) {
    return measureText(text, 1.5f);
}

// A choice's value names its item by address; it is only ever compared, never turned back into a
// pointer.
std::string key(const Item* item) {
    return std::to_string(reinterpret_cast<std::uintptr_t>(item));
}

// Whether some character, player or not, carries the item.
bool carried(const Item* item) {
    for (const auto* list : {&allCharacters, &allNpcs})
        for (const Character* c : *list)
            if (std::find(c->inventory.begin(), c->inventory.end(), item) != c->inventory.end()) return true;
    return false;
}
} // namespace

EditWindow<Character>::EditWindow(Window* parent, Character* character)
    : _EditWindow<Character>(parent, character, "Character Sheet") {}

void EditWindow<Character>::rebuild() {
    deleteChildren();
    new Label(this, "Name:", 0.5f, 3.5f, 4.5f, 1.5f, "");
    new DirectEdit(this, &object->name, 6.125f, 3.5f, 14.8125f, 1.5f, "");
    // A character has no age and no height: these two hold what is typed until the next rebuild.
    new Label(this, "Age:", 25.5f, 3.5f, 4.5f, 1.5f, "");
    new NumEdit(this, 0, 29.25f, 3.5f, 3.375f, 1.5f, "");
    new Label(this, "Height:", 33.75f, 3.5f, 4.5f, 1.5f, "");
    new NumEdit(this, 0, 39.5625f, 3.5f, 3.375f, 1.5f, "");
    float leftEnd = skillColumn();
    rightColumn();
    float rightEnd = inventory();
    float y = penaltyTable(combatRow(std::max(leftEnd, rightEnd) + 4));
    y += 3;
    auto* save = new Button(this, "Save", 20.25f, y, 6, 2.5f, "");
    save->leftClickHandler.bind(this, &EditWindow<Character>::save);
    resize(43.5f, y + 3.5f);
}

float EditWindow<Character>::skillColumn() {
    float y = 3.5f;
    for (Skill* attribute : object->skills) {
        if (!parentOf(attribute->name).empty()) continue;
        y += 3;
        auto* name = new Label(this, attribute->name, 0.5f, y, textWidth(attribute->name), 1.5f, "");
        name->leftClickHandler.bind(this, &EditWindow<Character>::rollSkill);
        auto* dice = new DirectNumEdit(this, &attribute->level.dice, 10.75f, y, 2.25f, 1.5f, "");
        dice->alignment = 1;
        new Label(this, "D+", 13.1125f, y, textWidth("D+"), 1.5f, "");
        new DirectNumEdit(this, &attribute->level.pips, 15.55f, y, 1.5f, 1.5f, "");
        // A skill whose parent is no attribute of this character does not show.
        for (Skill* skill : object->skills) {
            if (parentOf(skill->name) != attribute->name) continue;
            y += 2;
            float t = 3 + textWidth(skill->name);
            new DeleteButton<Character, Skill>(this, object, skill, 0.5f, y, 1.125f, 1.5f);
            auto* skillName = new Label(this, skill->name, 2, y, textWidth(skill->name), 1.5f, "");
            skillName->leftClickHandler.bind(this, &EditWindow<Character>::rollSkill);
            auto* skillDice = new DirectNumEdit(this, &skill->level.dice, t, y, 2.25f, 1.5f, "");
            skillDice->alignment = 1;
            new Label(this, "D+", t + 2.3625f, y, textWidth("D+"), 1.5f, "");
            new DirectNumEdit(this, &skill->level.pips, t + 4.8f, y, 1.5f, 1.5f, "");
        }
    }
    return y;
}

void EditWindow<Character>::rightColumn() {
    struct Row {
        const char* caption;
        int* field;
        float y;
    };
    for (Row row : {Row{"Move:", &object->move, 7.5f}, Row{"Character Pts:", &object->characterPoints, 9.5f},
                    Row{"Force Points:", &object->forcePoints, 11.5f},
                    Row{"Dark Side Pts:", &object->darkSidePoints, 13.5f}}) {
        new Label(this, row.caption, 25.5f, row.y, textWidth(row.caption), 1.5f, "");
        new DirectNumEdit(this, row.field, 37.5f, row.y, 3, 1.5f, "");
    }

    new Label(this, "State:", 25.5f, 17.5f, 3.75f, 1.5f, "");
    auto* state = new SelectButton(this, 30.5f, 17.25f, 12.5625f, 2, "");
    // Stunned is not offered: a stunned character shows as healthy here.
    for (int i = Healthy; i <= Killed; ++i)
        state->addEntry(healthStateNames[i], std::to_string(i));
    state->select(std::to_string(object->health));
    state->selectHandler.bind(this, &EditWindow<Character>::setState);

    // Typed stuns and rounds of unconsciousness count at once, without what a hit would bring.
    for (Row row : {Row{"Stuns:", &object->stuns, 19.5f}, Row{"Unconscious:", &object->unconscious, 21.5f}}) {
        float w = textWidth(row.caption);
        new Label(this, row.caption, 25.5f, row.y, w, 1.5f, "");
        new DirectNumEdit(this, row.field, 25.5f + w + 0.75f, row.y,
                          row.field == &object->stuns ? 2.625f : 4.5f, 1.5f, "");
    }

    auto* weapons = new SelectButton(this, 25.5f, 25.5f, 17.5f, 2, "");
    weapons->addEntry(unarmedWeapon->name, key(unarmedWeapon));
    auto* armors = new SelectButton(this, 25.5f, 28.5f, 17.5f, 2, "");
    armors->addEntry(noArmor->name, key(noArmor));
    for (Item* item : object->inventory) {
        if (dynamic_cast<Weapon*>(item)) weapons->addEntry(item->name, key(item));
        if (dynamic_cast<Armor*>(item)) armors->addEntry(item->name, key(item));
    }
    weapons->select(key(object->weapon));
    armors->select(key(object->armor));
    weapons->selectHandler.bind(this, &EditWindow<Character>::setEquipment);
    armors->selectHandler.bind(this, &EditWindow<Character>::setEquipment);
}

float EditWindow<Character>::inventory() {
    float x = 25.5f, y = 32.5f;
    for (Item* item : object->inventory) {
        // What is in hand or worn shows in its choice only.
        if (item == object->weapon || item == object->armor) continue;
        float w = textWidth(item->name);
        if (x + w + 2.25f > 43) {
            x = 25.5f;
            y += 2;
        }
        new ListEntry<Item>(this, item, x + 1, y, 1, 1.5f);
        new DeleteButton<Character, Item>(this, object, item, x, y + 0.25f, 1.125f, 1.5f);
        x += w + 2.25f;
    }
    return y;
}

float EditWindow<Character>::combatRow(float y) {
    std::pair<const char*, int*> pairs[] = {{"Dodge:", &object->dodge},
                                            {"Parry:", &object->parry},
                                            {"Actions:", &object->actions},
                                            {"Taken:", &object->actionsTaken}};
    float x = 0.5f;
    for (auto [caption, field] : pairs) {
        float w = textWidth(caption);
        new Label(this, caption, x, y, w, 1.5f, "");
        x += w + 0.5f;
        new DirectNumEdit(this, field, x, y, 2.625f, 1.5f, "");
        x += 4;
    }
    y += 2;
    new Label(this, "Pos:", 0.5f, y, textWidth("Pos:"), 1.5f, "");
    return y;
}

float EditWindow<Character>::penaltyTable(float y) {
    y += 4;
    auto* add = new Button(this, "New", 0.5f, y, 4, 1.5f, "");
    add->leftClickHandler.bind(this, &EditWindow<Character>::newPenalty);
    new Label(this, "Penalty Reason", 5, y, 10, 1.5f, "");
    new Label(this, "Dice", 18.125f, y, 5, 1.5f, "");
    new Label(this, "Duration", 23, y, 7, 1.5f, "");
    new Label(this, "Apply To", 31.0625f, y, 7, 1.5f, "");
    // The pips of a penalty are not shown.
    for (Penalty* p : object->penalties) {
        y += 2;
        new DeleteButton<Character, Penalty>(this, object, p, 0.5f, y, 1.125f, 1.5f);
        new DirectEdit(this, &p->reason, 1.875f, y, 15, 1.5f, "");
        new DirectNumEdit(this, &p->dice.dice, 18.375f, y, 1.5f, 1.5f, "");
        new Label(this, "D", 20.0625f, y, textWidth("D"), 1.5f, "");
        new DirectNumEdit(this, &p->duration, 23.25f, y, 6, 1.5f, "");
        new DirectEdit(this, &p->applyTo, 31.3125f, y, 11.625f, 1.5f, "");
    }
    return y;
}

int EditWindow<Character>::rollSkill(Window* name) {
    // In the middle of the screen, with at most two character points to spend.
    new Roll(parent, object, static_cast<Label*>(name)->caption, 2, -1, -1);
    return 1;
}

int EditWindow<Character>::setState(Window* choice) {
    object->setHealth(std::stoi(choice->value));
    return 0;
}

int EditWindow<Character>::setEquipment(Window* choice) {
    Item* chosen = nullptr;
    if (choice->value == key(unarmedWeapon))
        chosen = unarmedWeapon;
    else if (choice->value == key(noArmor))
        chosen = noArmor;
    for (Item* item : object->inventory)
        if (choice->value == key(item)) chosen = item;
    // Equipping announces the change, which rebuilds the sheet at its next draw.
    if (chosen) object->equip(chosen);
    return 0;
}

int EditWindow<Character>::newPenalty(Window*) {
    object->addPenalty(new Penalty("New Penalty", DiceCode(0, 0), -1, "All"));
    return 0;
}

int EditWindow<Character>::save(Window*) {
    std::string failure;
    if (!saveCharacter(*object, &failure)) new MessageBox(parent, "Not saved", failure, -1, -1, 0, 0);
    return 0;
}

bool EditWindow<Character>::acceptsDrop(Window* dragged) {
    if (dragOrigin == this) return false;
    if (auto* entry = dynamic_cast<ListEntry<Item>*>(dragged)) {
        if (!entry->item) return false;
        if (dynamic_cast<ItemList*>(entry->parent)) {
            // The catalogue keeps its entry; the character gets its own copy, with its own ammunition.
            object->addItem(entry->item->clone());
            return true;
        }
        // From another sheet: the item itself moves. Another sheet of this same character keeps it.
        auto* from = dynamic_cast<EditWindow<Character>*>(entry->parent);
        if (from && from->object == object) return false;
        object->addItem(entry->item);
        acceptsDropHandler(dragged);
        return true;
    }
    if (auto* entry = dynamic_cast<ListEntry<Skill>*>(dragged)) {
        if (!entry->item) return false;
        // A skill the character has already is not added again; a new one starts at its parent's level.
        object->addSkill(new Skill(*entry->item));
        acceptsDropHandler(dragged);
        return true;
    }
    return false;
}

void EditWindow<Character>::onDropAccepted(Window* dragged) {
    auto* entry = dynamic_cast<ListEntry<Item>*>(dragged);
    if (!entry || !entry->item) return;
    Item* item = entry->item;
    object->unequip(item);
    object->inventory.remove(item);
    object->notifyChanged();
    dropAcceptedHandler(dragged);
    // Taken by a window that does not keep it (the item list): the item has no owner left.
    if (!carried(item)) delete item;
}
