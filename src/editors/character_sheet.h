// The character sheet: the one screen on which a character is read and changed, where items and
// skills are dropped onto it, a skill is rolled with a click, and the character is saved.
#pragma once

#include "editors/edit_window.h"

class Character;

template <> class EditWindow<Character> : public _EditWindow<Character> {
  public:
    EditWindow(Window* parent, Character* character);
    void rebuild() override;

    // An item of this sheet that another window took leaves the character.
    void onDropAccepted(Window* dragged) override;
    // A catalogue item comes as the character's own copy, an item of another sheet as itself, a
    // skill as a copy at its parent's level.
    bool acceptsDrop(Window* dragged) override;

    // Opens the dice window for the skill or attribute whose name was clicked.
    int rollSkill(Window* name);
    int setState(Window* choice);
    int setEquipment(Window* choice);
    int newPenalty(Window* sender);
    // Writes the character's file; when that fails, a message box tells why and nothing changes.
    int save(Window* sender);

  private:
    // The parts from the top down; each but the fixed right column gives the y where it ended.
    float skillColumn();
    void rightColumn();
    float inventory();
    float combatRow(float y);
    float penaltyTable(float y);
};
