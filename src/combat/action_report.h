// What the three actions of combat share: the refusals that come before anything is spent, the
// report window with its lines, and the OK button that ends every action.
#pragma once

#include <string>

#include "toolkit/dialogue.h"
#include "toolkit/text.h"

class Character;

// Each action formats a line of its report in a buffer of this size; a longer line is cut short.
inline constexpr int reportBufferSize = 512;

// A refusal: a message box at the default place under parent, and the action hidden, for its
// creator to delete. Nothing has been spent.
void refuse(Dialogue* action, Window* parent, const std::string& caption, const std::string& message);

// The checks that an attack and a throw make, in their order: an action left, nothing exclusive
// under way, the target in reach (a difficulty of 0 or more), something left of the skill. Refuses
// on the first that fails, and says whether one did.
bool refusedAttackOrThrow(Dialogue* action, Window* parent, const Character& actor, int difficulty,
                          const std::string& skill);

// Makes the action a report window of 30 x 30, centred in parent, and gives it the report's Text.
Text* openReport(Dialogue* action, Window* parent);

// Appends a line, formatted in buffer, to the report.
void report(Text* text, char (&buffer)[reportBufferSize], const char* format, ...)
    __attribute__((format(printf, 3, 4)));

// The OK button under the report: it closes the action, whose closeHandler then passes the turn.
void offerOk(Dialogue* action);
