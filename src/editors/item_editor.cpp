// The item editor's rows, picked by the class of the item. Every field writes straight into it.
#include "editors/item_editor.h"

#include <string>

#include "editors/list_entry.h"
#include "rules/item.h"
#include "toolkit/button.h"
#include "toolkit/edit.h"
#include "toolkit/label.h"

namespace {
// A row of a code: the dice, "D+" and the pips, starting at x.
void codeFields(Window* w, DiceCode& code, float x, float y) {
    new DirectNumEdit(w, &code.dice, x, y, 2.5f, 1.5f, "");
    new Label(w, "D+", x + 2.5f, y, 2.5f, 1.5f, "");
    new DirectNumEdit(w, &code.pips, x + 5, y, 1.5f, 1.5f, "");
}

void codeRow(Window* w, const char* caption, DiceCode& code, float y) {
    new Label(w, caption, 0.5f, y, 7, 1.5f, "");
    codeFields(w, code, 8, y);
}

// Four numbers in a row under one caption, at 7.5, 10.5, 13.5 and 16.5.
void fourFields(Window* w, const char* caption, int* numbers[4], float y) {
    new Label(w, caption, 0.5f, y, 6, 1.5f, "");
    for (int i = 0; i < 4; ++i)
        new DirectNumEdit(w, numbers[i], 7.5f + 3 * i, y, 2.5f, 1.5f, "");
}

void skillRow(Window* w, std::string& skill) {
    new Label(w, "Type: ", 0.5f, 7.5f, 5, 1.5f, "");
    new DirectEdit(w, &skill, 5.5f, 7.5f, 15, 1.5f, "");
}

// The damage type and the difficulty show as text only: nothing here changes them.
void nameRow(Window* w, const std::string& caption, float y, float width) {
    new Label(w, caption, 0.5f, y, width, 1.5f, "");
}

void grenadeRows(Window* w, Grenade& g) {
    skillRow(w, g.skill);
    nameRow(w, std::string("Damage type: ") + damageTypeName(g.damageType), 9.5f, 5);
    // The pips of the blast are in no file either.
    int* dice[4] = {&g.blastDamage[0].dice, &g.blastDamage[1].dice, &g.blastDamage[2].dice,
                    &g.blastDamage[3].dice};
    fourFields(w, "Damage:", dice, 11.5f);
    int* radius[4] = {&g.radius[0], &g.radius[1], &g.radius[2], &g.radius[3]};
    fourFields(w, "Radius:", radius, 13.5f);
    int* range[4] = {&g.range[0], &g.range[1], &g.range[2], &g.range[3]};
    fourFields(w, "Range:", range, 15.5f);
}

void meleeRows(Window* w, MeleeWeapon& m) {
    new DirectSwitch(w, &m.addStrength, "+STR", 15, 9.5f, 4.25f, 1.5f, "");
    new Label(w, "Max. damage:", 0.5f, 11.5f, 2, 1.5f, "");
    codeFields(w, m.maxDamage, 11.75f, 11.5f);
    nameRow(w, std::string("Damage type: ") + damageTypeName(m.damageType), 13.5f, 5);
    nameRow(w, std::string("Difficulty: ") + difficultyName(m.difficulty), 15.5f, 6);
}

void rangedRows(Window* w, RangedWeapon& r) {
    nameRow(w, std::string("Damage type: ") + damageTypeName(r.damageType), 11.5f, 5);
    // The brackets widen as their bounds grow.
    new Label(w, "Range:", 0.5f, 13.5f, 6, 1.5f, "");
    const float x[4] = {6.75f, 9, 12, 16}, width[4] = {1.75f, 2.5f, 3.5f, 4.5f};
    for (int i = 0; i < 4; ++i)
        new DirectNumEdit(w, &r.range[i], x[i], 13.5f, width[i], 1.5f, "");
    new Label(w, "Ammo:", 0.5f, 15.5f, 5, 1.5f, "");
    new DirectNumEdit(w, &r.ammo, 6.75f, 15.5f, 3.5f, 1.5f, "");
    new Label(w, "/", 10.5f, 15.5f, 5, 1.5f, "");
    new DirectNumEdit(w, &r.maxAmmo, 12, 15.5f, 3.5f, 1.5f, "");
}
} // namespace

EditWindow<Item>::EditWindow(Window* parent, Item* item) : _EditWindow<Item>(parent, item, "Edit Item") {}

void EditWindow<Item>::rebuild() {
    deleteChildren();
    new DirectEdit(this, &object->name, 0.5f, 3.5f, 20, 1.5f, "");
    new Label(this, "Price:", 0.5f, 5.5f, 5, 1.5f, "");
    new DirectNumEdit(this, &object->price, 5.5f, 5.5f, 15, 1.5f, "");
    float last = 5.5f;
    // A grenade is a weapon too, but has rows of its own only: it is asked for first.
    if (auto* g = dynamic_cast<Grenade*>(object)) {
        grenadeRows(this, *g);
        last = 15.5f;
    } else if (auto* weapon = dynamic_cast<Weapon*>(object)) {
        skillRow(this, weapon->skill);
        new Label(this, "Damage:", 0.5f, 9.5f, 7, 1.5f, "");
        codeFields(this, weapon->damage, 8, 9.5f);
        if (auto* m = dynamic_cast<MeleeWeapon*>(weapon)) meleeRows(this, *m);
        if (auto* r = dynamic_cast<RangedWeapon*>(weapon)) rangedRows(this, *r);
        last = 15.5f;
    } else if (auto* a = dynamic_cast<Armor*>(object)) {
        codeRow(this, "Physical:", a->physical, 7.5f);
        codeRow(this, "Energy:", a->energy, 9.5f);
        codeRow(this, "Penalty:", a->penalty, 11.5f);
        last = 11.5f;
    }
    resize(21, last + 2);
}
