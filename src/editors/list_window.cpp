// The list windows: building the column of entries, the skill tree's three columns, and what a
// drop on a list does.
#include "editors/list_window.h"

#include <algorithm>

#include "editors/list_entry.h"
#include "rules/character.h"
#include "rules/faction.h"
#include "rules/item.h"
#include "rules/skill.h"
#include "toolkit/input_state.h"

template <class T>
List<T>::List(Window* parent, std::string caption, std::list<T*>* source)
    : Dialogue(parent, std::move(caption), 0, 0, 1, 1, ""), source(source) {
    fontSize = 1.5f;
    rebuild();
}

template <class T> void List<T>::onRightClick() {
    rightClickHandler(this);
    close(this);
}

template <class T> bool List<T>::acceptsDrop(Window* dragged) {
    if (dragOrigin == this || !dynamic_cast<ListEntry<T>*>(dragged)) return false;
    acceptsDropHandler(dragged);
    return true;
}

template <class T> void List<T>::rebuild() {
    deleteChildren();
    // The first entry stands just under the title bar; 21 wide whatever the names.
    float y = 1.5f;
    for (T* element : *source) {
        y += 2;
        new ListEntry<T>(this, element, 0.5f, y, 1, 1.5f);
    }
    resize(21, y + 2 + 0.1f);
}

template class List<Item>;
template class List<Character>;
template class List<Skill>;
template class List<Faction>;

ItemList::ItemList(Window* parent, std::string caption) : List<Item>(parent, std::move(caption), &allItems) {}

FactionList::FactionList(Window* parent, std::string caption)
    : List<Faction>(parent, std::move(caption), &allFactions) {}

namespace {
// A character of the other kind dropped on a list of characters joins it as a copy of this kind,
// unless the list has one of that name: names are the keys. The drop is refused all the same, so
// that the origin keeps its entry.
bool copyInto(List<Character>& list, Window* dragged, bool npc) {
    auto* entry = dynamic_cast<ListEntry<Character>*>(dragged);
    if (dragOrigin == &list || !entry || !entry->item || entry->item->isNpc == npc) return false;
    const std::string& name = entry->item->name;
    if (std::any_of(list.source->begin(), list.source->end(), [&](Character* c) { return c->name == name; }))
        return false;
    auto* copy = new Character(*entry->item);
    copy->isNpc = npc;
    list.source->push_back(copy);
    list.acceptsDropHandler(dragged);
    // The entries go, the dragged one is not among them: it comes from another window.
    list.rebuild();
    return false;
}
} // namespace

CharacterList::CharacterList(Window* parent) : List<Character>(parent, "Character List", &allCharacters) {}

bool CharacterList::acceptsDrop(Window* dragged) {
    return copyInto(*this, dragged, false);
}

NPCList::NPCList(Window* parent) : List<Character>(parent, "NPC List", &allNpcs) {}

bool NPCList::acceptsDrop(Window* dragged) {
    return copyInto(*this, dragged, true);
}

SkillList::SkillList(Window* parent) : List<Skill>(parent, "Skill List", &allSkills) {
    // The base's constructor could only build the base's plain column.
    rebuild();
}

void SkillList::rebuild() {
    deleteChildren();
    float left = -0.5f, middle = -0.5f, right = -0.5f;
    for (Skill* attribute : *source) {
        if (!parentOf(attribute->name).empty()) continue;
        const std::string& name = attribute->name;
        float x = 21.5f;
        float* counter = &middle;
        if (name == "Dexterity" || name == "Perception")
            x = 0.5f, counter = &left;
        else if (name == "Knowledge" || name == "Technical")
            x = 42.5f, counter = &right;
        *counter += 4;
        (new ListEntry<Skill>(this, attribute, x, *counter, 1, 1.5f))->dragDrop = false;
        // Only the attributes' own skills: one whose parent is a skill is not shown.
        for (Skill* skill : *source) {
            if (parentOf(skill->name) != name) continue;
            *counter += 2;
            new ListEntry<Skill>(this, skill, x + 2.5f, *counter, 1, 1.5f);
        }
    }
    resize(63, std::max(left, right) + 2.1f);
}
