// The skill editor and the faction editor.
#include "editors/edit_window.h"

#include "editors/delete_button.h"
#include "editors/list_entry.h"
#include "rules/character.h"
#include "rules/faction.h"
#include "rules/skill.h"
#include "toolkit/edit.h"
#include "toolkit/input_state.h"
#include "toolkit/label.h"

EditWindow<Skill>::EditWindow(Window* parent, Skill* skill)
    : _EditWindow<Skill>(parent, skill, "Edit Skill") {}

void EditWindow<Skill>::rebuild() {
    deleteChildren();
    new Label(this, "Skill:", 0.5f, 3.5f, 4, 1.5f, "");
    new Edit(this, object->name, 6, 3.5f, 16, 1.5f, "");
    new Label(this, "Group:", 0.5f, 5.5f, 4, 1.5f, "");
    new Edit(this, parentOf(object->name), 6, 5.5f, 16, 1.5f, "");
    new Label(this, "Duration:", 0.5f, 7.5f, 4, 1.5f, "");
    new NumEdit(this, object->duration, 8.5f, 7.5f, 7, 1.5f, "");
    resize(22.5f, 10);
}

EditWindow<Faction>::EditWindow(Window* parent, Faction* faction, std::string caption)
    : _EditWindow<Faction>(parent, faction, std::move(caption)) {}

void EditWindow<Faction>::rebuild() {
    deleteChildren();
    float y = 3.5f;
    for (Character* member : object->members) {
        new DeleteButton<Faction, Character>(this, object, member, 0.5f, y + 0.25f, 1.125f, 1.5f);
        new ListEntry<Character>(this, member, 2.5f, y, 1, 1.5f);
        y += 2;
    }
    resize(20, y);
}

bool EditWindow<Faction>::acceptsDrop(Window* dragged) {
    if (dragOrigin == this) return false;
    auto* entry = dynamic_cast<ListEntry<Character>*>(dragged);
    // Joining takes the character from its old faction, whose window rebuilds at its next draw.
    if (!entry || !entry->item || !object->addMember(entry->item)) return false;
    acceptsDropHandler(dragged);
    return true;
}

void EditWindow<Faction>::onDropAccepted(Window* dragged) {
    auto* entry = dynamic_cast<ListEntry<Character>*>(dragged);
    if (!entry || !entry->item) return;
    // Taken by another faction, the member has left already; taken by anything else, it leaves now.
    if (entry->item->faction == object) object->removeMember(entry->item);
    dropAcceptedHandler(dragged);
}
