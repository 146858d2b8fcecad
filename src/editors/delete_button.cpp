// What the "X" beside a skill, an item, a penalty and a faction member takes away.
#include "editors/delete_button.h"

#include "rules/character.h"
#include "rules/faction.h"

std::string deleteButtonName(const Penalty& penalty) {
    return penalty.reason;
}

template <> int DeleteButton<Character, Skill>::remove(Window*) {
    Character* c = owner;
    c->skills.remove(item);
    delete item;
    c->notifyChanged();
    return 1;
}

template <> int DeleteButton<Character, Item>::remove(Window*) {
    Character* c = owner;
    Item* i = item;
    c->unequip(i);
    c->inventory.remove(i);
    // The character owned it and nobody else holds it: an editor still open on it closes now.
    delete i;
    c->notifyChanged();
    return 1;
}

template <> int DeleteButton<Character, Penalty>::remove(Window*) {
    Character* c = owner;
    c->removePenalty(item);
    c->notifyChanged();
    return 1;
}

template <> int DeleteButton<Faction, Character>::remove(Window*) {
    owner->removeMember(item);
    return 1;
}
