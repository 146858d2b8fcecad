// Combat: the panel and its map, the round with its initiative pass and turns, the map's handlers,
// and the list of combatants with its "X" buttons.
#include "combat/combat.h"

#include <algorithm>

#include "combat/action_window.h"
#include "combat/attack_action.h"
#include "combat/move_action.h"
#include "combat/roll.h"
#include "combat/throw_action.h"
#include "editors/list_entry.h"
#include "map/map.h"
#include "rules/character.h"
#include "rules/faction.h"
#include "rules/updatable.h"
#include "toolkit/label.h"
#include "toolkit/message_box.h"

ListWindow::ListWindow(Combat* owner, float x, float y)
    : Window(owner, x, y, 19, 10, ""), list(&owner->combatants), owner(owner) {
    fontSize = 1.5f;
}

void ListWindow::refresh() {
    deleteChildren();
    float y = -1.5f;
    for (Character* c : *list) {
        y += 2;
        new DeleteButton<Combat, Character>(this, owner, c, 0.5f, y, 1.125f, 1.5f);
        new ListEntry<Character>(this, c, 1.625f, y, 1, 1.5f);
    }
    y += 2;
    height = std::max(y, 10.0f);
    width = 19;
}

template <> int DeleteButton<Combat, Character>::remove(Window*) {
    Combat* combat = owner;
    Character* c = item;
    if (c == combat->current) return 1;
    auto at = std::find(combat->combatants.begin(), combat->combatants.end(), c);
    if (at == combat->combatants.end()) return 1;
    if (at == combat->cursor)
        combat->cursor = combat->combatants.erase(at);
    else
        combat->combatants.erase(at);
    // Off the map; the character keeps its cell, as it keeps everything else.
    if (c->cell && c->cell->occupant == c) c->cell->occupant = nullptr;
    // This deletes the button inside its own click.
    combat->listWindow->refresh();
    return 1;
}

Combat::Combat(Window* parent, float x, float y, float width, float height)
    : Window(parent, x, y, width, height, ""), cursor(combatants.begin()) {
    fontSize = 1.5f;
    coin.seedFromSystem();
    (new Label(this, "Combat Tool", 2, 1, 19, 3, ""))->fontSize = 2.5f;
    actionWindow = new ActionWindow(this, 1, 6, 19, 31);
    actionWindow->doneHandler.bind(this, &Combat::advanceTurn);
    actionWindow->busy = &busy;
    beginButton = new Button(this, "Begin Combat", 1, 40, 19, 3, "");
    beginButton->leftClickHandler.bind(this, &Combat::beginRound);
    nextButton = new Button(this, "Next Round", 1, 40, 19, 3, "");
    nextButton->leftClickHandler.bind(this, &Combat::nextRound);
    nextButton->visible = false;
    new Label(this, "Combatants", 1, 46, 7, 1.5f, "");
    listWindow = new ListWindow(this, 1, 48);
    listWindow->refresh();
    // The layers that the map paints over the ground; "Height" has none yet.
    new DirectSwitch(this, &showLight, "Light", 1, 80, 9, 3, "");
    new DirectSwitch(this, &showSmoke, "Smoke", 11, 80, 9, 3, "");
    new DirectSwitch(this, &showProtection, "Protection", 1, 84, 9, 3, "");
    new DirectSwitch(this, &showDifficulty, "Difficulty", 11, 84, 9, 3, "");
    new Switch(this, "Height", 1, 88, 9, 3, "");
    new DirectSwitch(this, &showWalls, "Walls", 11, 88, 9, 3, "");
    (new Button(this, "Save Map", 1, 93, 19, 3, ""))->leftClickHandler.bind(this, &Combat::saveMap);
}

Combat::~Combat() {
    // Children die front to back, and the map is older than the actions and the dice windows that
    // point into it: they all go first, and the map last.
    std::erase(children, map);
    deleteChildren();
    dropMap();
    // A grenade still burning outlives the panel that would tell of its explosion.
    const DelegateOf<Grenade> told(this, &Combat::grenadeExploded);
    for (Updatable* u : updatables)
        if (auto* g = dynamic_cast<Grenade*>(u); g && g->explodeHandler == told) g->explodeHandler.clear();
}

void Combat::dropMap() {
    if (!map) return;
    // Removed combatants keep their cell too, so every character is asked.
    for (auto* list : {&allCharacters, &allNpcs})
        for (Character* c : *list)
            if (c->cell && std::find(map->cells.begin(), map->cells.end(), c->cell) != map->cells.end())
                c->cell = nullptr;
    delete map;
    map = nullptr;
}

void Combat::loadDefaultMap() {
    dropMap();
    // Without a map file a flat map serves, so that the tool never stands without one.
    map = openMap(this);
    // In pixels of the screen: 215, 0, 808, 745 from the panel's corner.
    map->setArea(20.99609375f, 0, 78.90625f, 97.00521f);
    map->dropHandler.bind(this, &Combat::onDrop);
    map->occupiedClickHandler.bind(this, &Combat::onOccupiedClick);
    map->emptyClickHandler.bind(this, &Combat::onEmptyClick);
    map->occupiedHoverHandler.bind(this, &Combat::onOccupiedHover);
    map->emptyHoverHandler.bind(this, &Combat::onEmptyHover);
    map->pathResetHandler.bind(this, &Combat::onPathReset);
}

void Combat::showTurn(Character* c) {
    actionWindow->character = c;
    actionWindow->refresh();
}

int Combat::beginRound(Window*) {
    nextButton->visible = false;
    if (combatants.empty()) {
        // Everyone was removed: back to preparing, so that the referee keeps a button to start with.
        beginButton->visible = true;
        current = nullptr;
        busy = true;
        showTurn(nullptr);
        return 0;
    }
    beginButton->visible = false;
    ++roundsBegun;
    for (Character* c : combatants)
        c->resetCombatState();
    current = nextCombatant(true);
    if (current) {
        rollInitiative();
        return 0;
    }
    // Nobody can act; the referee lets the time pass by hand.
    nextButton->visible = true;
    busy = true;
    showTurn(nullptr);
    return 0;
}

int Combat::nextRound(Window*) {
    std::size_t before = children.size();
    updateAll();
    // A grenade that went off told of it in a box; the initiative roll must not hide it.
    before = std::min(before, children.size());
    std::list<WindowRef> told(children.begin() + static_cast<std::ptrdiff_t>(before), children.end());
    beginRound(nullptr);
    for (WindowRef& box : told)
        if (box.get()) box->raise();
    return 0;
}

Character* Combat::nextCombatant(bool restart) {
    if (restart || cursor == combatants.end())
        cursor = combatants.begin();
    else
        ++cursor;
    // An undeclared number of actions is not 0: such a combatant is ready.
    auto ready = [](const Character* c) {
        return c->unconscious == 0 && c->actionsTaken >= 0 && c->actions != 0;
    };
    while (cursor != combatants.end() && !ready(*cursor))
        ++cursor;
    return cursor == combatants.end() ? nullptr : *cursor;
}

void Combat::rollInitiative() {
    if (current->getInitiative() >= 0) {
        initiativeRolled(nullptr); // its faction has rolled
        return;
    }
    Character* roller = current->faction ? current->faction->members.front() : current;
    busy = true;
    // No character points for initiative.
    auto* roll = new Roll(this, roller, "Perception", 0, -1, -1);
    roll->closeHandler.bind(this, &Combat::initiativeRolled);
}

int Combat::initiativeRolled(Window* sender) {
    if (auto* roll = dynamic_cast<Roll*>(sender)) current->setInitiative(roll->total);
    current = nextCombatant(false);
    if (current) {
        rollInitiative();
        return 0;
    }
    sortCombatants();
    return advanceTurn(nullptr);
}

void Combat::sortCombatants() {
    std::list<Character*> sorted;
    for (Character* c : combatants) {
        auto p = sorted.begin();
        for (; p != sorted.end(); ++p) {
            int mine = c->getInitiative(), theirs = (*p)->getInitiative();
            if (mine != theirs) {
                if (mine > theirs) break;
                continue;
            }
            DiceCode a = effectiveCode(*c, "Perception"), b = effectiveCode(**p, "Perception");
            if (a > b) break;
            if (b > a) continue;
            if (coin.randInt(1) == 0) break;
        }
        sorted.insert(p, c);
    }
    combatants = std::move(sorted);
    cursor = combatants.end();
    listWindow->refresh();
}

int Combat::advanceTurn(Window*) {
    // No one starts a move on another's way, nor beyond its own budget.
    map->clearCommittedPath();
    map->clearPendingPath();
    current = nextCombatant(false);
    if (!current) current = nextCombatant(true);
    if (!current) return nextRound(nullptr); // the round ends by itself when the last action is spent
    showTurn(current);
    if (current->actions < 0) {
        busy = true;
        (new NumActionRequest(this))->closeHandler.bind(this, &Combat::actionsDeclared);
        return 0;
    }
    busy = false;
    return 0;
}

int Combat::actionsDeclared(Window* sender) {
    auto* request = dynamic_cast<NumActionRequest*>(sender);
    if (!request || !current) return 0;
    current->actions = request->edit->ownNumber;
    // A die for each action beyond the first, on everything, for this round; an action already
    // taken (a reaction) counts as one more. Declaring none gives a die more instead.
    int penalty = current->actions - 1 + (current->actionsTaken != 0 ? 1 : 0);
    if (penalty != 0) current->addPenalty(new Penalty("Actions", DiceCode(penalty, 0), 1, "All"));
    busy = false;
    return 0;
}

int Combat::onDrop(Window*) {
    Character* c = map->hovered ? map->hovered->occupant : nullptr;
    if (!c || std::find(combatants.begin(), combatants.end(), c) != combatants.end()) return 0;
    // Also in the middle of a round: with no initiative, last in the list, and declaring when reached.
    combatants.push_back(c);
    c->resetCombatState();
    listWindow->refresh();
    return 0;
}

int Combat::onOccupiedClick(Window*) {
    if (!acting()) return 0;
    Character* target = map->hovered->occupant;
    if (target == current)
        new MessageBox(this, "Selfreferential", "Yes, that's you. What now?", -1, -1, 0, 0);
    // A grenade is thrown at a free cell, never at someone.
    else if (dynamic_cast<RangedWeapon*>(current->weapon) || dynamic_cast<MeleeWeapon*>(current->weapon))
        startAttack(target);
    return 0;
}

int Combat::onEmptyClick(Window*) {
    if (!acting()) return 0;
    if (dynamic_cast<Grenade*>(current->weapon))
        startThrow();
    else
        startMove();
    return 0;
}

int Combat::onEmptyHover(Window*) {
    if (!acting() || current->moved || current->actionsTaken < 0) return 0;
    map->findPath(current);
    map->showPath = true;
    return 0;
}

int Combat::onOccupiedHover(Window*) {
    map->showPath = false;
    return 0;
}

int Combat::onPathReset(Window*) {
    if (!acting()) return 0;
    map->clearCommittedPath();
    map->findPath(current);
    return 0;
}

bool Combat::started(Dialogue* action) {
    if (!action->visible) {
        delete action; // refused, or over already: its message box says why
        return false;
    }
    busy = true;
    action->closeHandler.bind(this, &Combat::advanceTurn);
    return true;
}

void Combat::startAttack(Character* target) {
    started(new AttackAction(this, current, target, map));
}

void Combat::startThrow() {
    auto* action = new ThrowAction(this, current, map);
    // Bound before the throw: a grenade set to go off on impact does so at the end of it.
    if (started(action)) action->grenade->explodeHandler.bind(this, &Combat::grenadeExploded);
}

void Combat::startMove() {
    if (map->pendingPath.empty()) return;
    // A move that needs no roll is over when the constructor returns; the turn stays while actions
    // are left, so that a cautious step may come before an attack.
    if (!started(new MoveAction(this, current, map)) && current->actions == 0) advanceTurn(nullptr);
}

int Combat::grenadeExploded(Grenade* g) {
    // Nobody is hurt by it and no cell changes: the referee reads the rings off the item.
    new MessageBox(this, "Kaboom", "A grenade went off and all I got was this lousy message box", -1, -1, 0,
                   0);
    delete g; // which takes it out of the updatables
    return 0;
}

int Combat::saveMap(Window*) {
    if (map) map->save();
    return 0;
}
