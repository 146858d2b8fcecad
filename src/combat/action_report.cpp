// The refusals, the report window and the OK button of the actions of combat.
#include "combat/action_report.h"

#include <cstdarg>
#include <cstdio>

#include "rules/character.h"
#include "toolkit/button.h"
#include "toolkit/message_box.h"

namespace {
constexpr float reportSide = 30;
}

void refuse(Dialogue* action, Window* parent, const std::string& caption, const std::string& message) {
    new MessageBox(parent, caption, message, -1, -1, 0, 0);
    action->visible = false;
}

bool refusedAttackOrThrow(Dialogue* action, Window* parent, const Character& actor, int difficulty,
                          const std::string& skill) {
    if (actor.actions == 0) {
        refuse(action, parent, "Nope", "No more actions this round");
    } else if (actor.actionsTaken < 0) {
        refuse(action, parent, "Too exclusive", "You're already doing something exclusive");
    } else if (difficulty < 0) {
        refuse(action, parent, "Out of Range", "Think of something else");
    } else if (DiceCode level = effectiveCode(actor, skill); nothingLeft(level)) {
        refuse(action, parent, "No Dice",
               "Due to your penalties your skill is " + level.text() + ".\nBottom line: not gonna happen.");
    } else {
        return false;
    }
    return true;
}

Text* openReport(Dialogue* action, Window* parent) {
    action->resize(reportSide, reportSide);
    action->fontSize = 1.5f;
    action->x = (parent->width - reportSide) / 2;
    action->y = (parent->height - reportSide) / 2;
    return new Text(action, 1, 4, 28, 21, "");
}

void report(Text* text, char (&buffer)[reportBufferSize], const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, reportBufferSize, format, arguments);
    va_end(arguments);
    text->caption += buffer;
}

void offerOk(Dialogue* action) {
    auto* ok = new Button(action, "OK", (action->width - 5) / 2, action->height - 4, 5, 3, "");
    ok->leftClickHandler.bind(action, &Dialogue::close);
}
