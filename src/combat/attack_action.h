// AttackAction: one attack, from the click on a target through cover, the target's reaction, the
// attack roll, damage and resistance, to the target's new state, with the report of it all.
#pragma once

#include "combat/action_report.h"
#include "toolkit/dialogue.h"
#include "toolkit/text.h"

class Character;
class Map;

// One attack, event by event. The target number is the cover roll of the target's cell plus a
// defence: the difficulty of the shot, or a reaction roll in its place, or, for a target that gave
// the round up to a full reaction, the roll on top of the difficulty.
//
//   step            event                        what happens                              next
//   constructor     made by the creator          refused: a message box, hidden; else the  the four answers,
//                                                cover roll, and by the target's standing  or attackRolled
//                                                the "Reaction Request", or the attack
//                                                roll with a standing reaction, or with
//                                                none possible
//   noReaction      "Don't react"                the difficulty is the defence; the        attackRolled
//                                                request closes, the attack roll opens
//   useAction       "Use action"                 an action of the target's goes            rollReaction
//   extraAction     "Extra action"               an action more, at -1D unless it is the   rollReaction
//                                                target's first thing this round
//   fullReaction    "Fully react"                the target's round goes into it           rollReaction
//   rollReaction    (from the three above)       the request closes; "Dodge", "Melee       reactionRolled
//                                                Parry" or "Brawling Parry" opens
//   reactionRolled  "Done" in the reaction roll  it stands for the round; the attack roll  attackRolled
//   attackRolled    "Done" in the attack roll    an action and a round spent; a hit opens  damageRolled,
//                                                "Damage"                                  or OK button
//   damageRolled    "Done" in "Damage"           "PResist" or "EResist" for the target     resisted
//   resisted        "Done" in the resistance     takeDamage and the states                 OK button
//   OK button       click                        close: the creator's closeHandler runs    -
class AttackAction : public Dialogue {
  public:
    AttackAction(Window* parent, Character* attacker, Character* target, Map* map);
    // Takes an unanswered "Reaction Request" with it, whose buttons would call this window.
    ~AttackAction() override;

    Map* map;
    bool isRanged = false;
    int targetNumber = 0;
    int attackRoll = 0;
    // The part of targetNumber that stands for range or reaction.
    int defence = 0;
    // The damage roll, then what is left of it after resistance.
    int damage = 0;
    int resist = 0;
    float distance = 0;
    Character* attacker;
    Character* target;
    Text* text = nullptr;
    // Open while the target makes up its mind; owned by the parent.
    Dialogue* reactionWindow = nullptr;
    char buffer[reportBufferSize] = {};

  private:
    void askForReaction();
    int noReaction(Window* sender);
    int useAction(Window* sender);
    int extraAction(Window* sender);
    int fullReaction(Window* sender);
    void rollReaction();
    int reactionRolled(Window* sender);
    void rollAttack();
    int attackRolled(Window* sender);
    int damageRolled(Window* sender);
    int resisted(Window* sender);
    // The difficulty of this shot or swing with the attacker's weapon at the target's distance.
    int difficulty() const;
    void closeReactionWindow();
    const char* reactionName() const { return isRanged ? "dodge" : "parry"; }
};
