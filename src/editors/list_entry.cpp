// List entries: captions, balloons and the edit window that a right click opens, for each kind.
#include "editors/list_entry.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "editors/character_sheet.h"
#include "editors/edit_window.h"
#include "editors/item_editor.h"
#include "rules/character.h"
#include "rules/faction.h"
#include "rules/item.h"
#include "rules/skill.h"
#include "toolkit/balloon.h"
#include "toolkit/font.h"

namespace {
// One formatted piece of a balloon; the pieces are all short.
std::string piece(const char* format, ...) {
    char buffer[200];
    va_list args;
    va_start(args, format);
    std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    return buffer;
}

std::string captionOf(const Character* c) {
    return c->isNpc ? c->name + " (npc)" : c->name;
}
template <class T> std::string captionOf(const T* t) {
    return t->name;
}

void showBalloon(Item* item) {
    showItemBalloon(item);
}
void showBalloon(Character*) {
    new Balloon("", 1.5f);
}
void showBalloon(Skill*) {
    new Balloon("", 1.5f);
}
void showBalloon(Faction* faction) {
    new Balloon(factionDescription(*faction), 1.5f);
}

void openEditWindow(Window* root, Character* c) {
    new EditWindow<Character>(root, c);
}
void openEditWindow(Window* root, Item* item) {
    new EditWindow<Item>(root, item);
}
void openEditWindow(Window* root, Skill* skill) {
    new EditWindow<Skill>(root, skill);
}
void openEditWindow(Window* root, Faction* faction) {
    new EditWindow<Faction>(root, faction, "Faction: " + faction->name);
}
} // namespace

const char* damageTypeName(int type) {
    return damageTypeNames[std::clamp(type, 0, damageTypeCount - 1)];
}

const char* difficultyName(int difficultyClass) {
    return difficultyTable[std::clamp(difficultyClass, 0, difficultyClassCount - 1)].name;
}

std::string itemDescription(const Item& item) {
    std::string text = item.name + piece("\nPrice: %d\n", item.price);
    // A grenade is a weapon too, but has a part of its own only.
    if (auto* g = dynamic_cast<const Grenade*>(&item)) {
        text += "\nSkill: " + g->skill;
        const auto& d = g->blastDamage;
        text += piece("\nDamage: %dD/%dD/%dD/%dD", d[0].dice, d[1].dice, d[2].dice, d[3].dice);
        text += piece("\nRadius: %d/%d/%d/%d", g->radius[0], g->radius[1], g->radius[2], g->radius[3]);
        text += piece("\nRange: %d/%d/%d/%d", g->range[0], g->range[1], g->range[2], g->range[3]);
        text += std::string("\nDamage type: ") + damageTypeName(g->damageType);
    } else if (auto* w = dynamic_cast<const Weapon*>(&item)) {
        text += "\nSkill: " + w->skill;
        text += piece("\nDamage: %dD+%d", w->damage.dice, w->damage.pips);
        auto* m = dynamic_cast<const MeleeWeapon*>(w);
        if (m && m->addStrength) text += piece("+STR (%dD+%d)", m->maxDamage.dice, m->maxDamage.pips);
        text += std::string("\nDamage type: ") + damageTypeName(w->damageType);
    }
    if (auto* r = dynamic_cast<const RangedWeapon*>(&item)) {
        text += piece("\nAmmo: %d/%d", r->ammo, r->maxAmmo);
        text += piece("\nRanges: 0-%d / %d / %d / %d", r->range[0], r->range[1], r->range[2], r->range[3]);
    } else if (auto* m = dynamic_cast<const MeleeWeapon*>(&item)) {
        text += std::string("\nDifficulty: ") + difficultyName(m->difficulty);
    } else if (auto* a = dynamic_cast<const Armor*>(&item)) {
        text += piece("\nPhysical: %dD+%d\nEnergy: %dD+%d\nPenalty: %dD+%d", a->physical.dice,
                      a->physical.pips, a->energy.dice, a->energy.pips, a->penalty.dice, a->penalty.pips);
    }
    return text;
}

void showItemBalloon(Item* item) {
    new Balloon(itemDescription(*item), 1.5f);
}

std::string factionDescription(const Faction& faction) {
    std::string text = faction.name + piece("  Init: %d\n", faction.initiative);
    for (const Character* c : faction.members)
        text += "\n" + c->name;
    return text;
}

template <class T>
_ListEntry<T>::_ListEntry(Window* parent, T* item, float x, float y, float width, float size)
    : MenuEntry(parent, item->name, x, y, width, size, item->name), item(item) {
    dragDrop = true;
    caption = captionOf(item);
    this->width = measureText(caption, size) + 0.75f;
    height = size + 0.5f;
}

template <class T> void ListEntry<T>::onMouseEnter() {
    MenuEntry::onMouseEnter();
    if (this->item) showBalloon(this->item);
}

template <class T> void ListEntry<T>::onRightClick() {
    // The handler may delete this entry: what follows needs only the object and the root.
    T* object = this->item;
    Window* root = this;
    while (root->parent)
        root = root->parent;
    this->rightClickHandler(this);
    if (!object) return;
    // One edit window per object from the lists: the open one comes to the front.
    if (object->observerCount != 0) {
        if (auto* open = dynamic_cast<Window*>(object->observers.front())) open->raise();
        return;
    }
    openEditWindow(root, object);
}

template class _ListEntry<Item>;
template class _ListEntry<Character>;
template class _ListEntry<Skill>;
template class _ListEntry<Faction>;
template class ListEntry<Item>;
template class ListEntry<Character>;
template class ListEntry<Skill>;
template class ListEntry<Faction>;
