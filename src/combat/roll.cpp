// Roll: what a name rolls, the main roll with its wild die, spending character points, and the
// total that the referee may overwrite.
#include "combat/roll.h"

#include <algorithm>

#include "toolkit/input_state.h"

namespace {
constexpr float rollWidth = 30, rollHeight = 24;

const float wildGreen[3] = {0, 0.85f, 0};
const float wildRed[3] = {1, 0, 0};
const float pointBlue[3] = {0, 0, 0.85f};

// Rows of dice: the main roll, then each spending of points.
constexpr float mainRowY = 7, pointRowY = 10;

DiceCode strengthOf(const Character& c) {
    return c.getSkill("Strength").level;
}

// The code that a name rolls. A skill's name becomes the name of the skill actually found: an
// untrained skill rolls at its attribute, an unknown one is "Not found" at 0D+0.
DiceCode codeFor(const Character& c, std::string& name) {
    if (name == "Damage") {
        DiceCode code = c.weapon->damage;
        if (auto* melee = dynamic_cast<const MeleeWeapon*>(c.weapon)) {
            if (melee->addStrength) code += strengthOf(c);
            // 0D+0 means the weapon sets no limit.
            if (!(melee->maxDamage == DiceCode()) && code > melee->maxDamage) code = melee->maxDamage;
        }
        return code;
    }
    if (name == "PResist") return strengthOf(c) + c.armor->physical;
    if (name == "EResist") return strengthOf(c) + c.armor->energy;
    DiceCode code = effectiveCode(c, name);
    name = c.getSkill(name).name;
    return code;
}
} // namespace

Roll::Roll(Window* parent, Character* character, std::string name, int pointLimit, float x, float y)
    : Dialogue(parent, "Dice Roller", x, y, rollWidth, rollHeight, ""), character(character),
      name(std::move(name)) {
    random.seedFromSystem();
    if (x == -1) this->x = (parent->width - rollWidth) / 2;
    if (y == -1) this->y = (parent->height - rollHeight) / 2;
    fontSize = 1.5f; // before the children, which take it over
    code = codeFor(*character, this->name);
    pointsLeft = std::min(pointLimit, character->characterPoints);

    new Label(this, character->name + " rolls " + this->name + " (" + code.text() + ")", 1, 3.5f, 10, 1.5f,
              "");
    totalEdit = new NumEdit(this, blankNumber, 7.5f, 13, 4, 2, "");
    totalEdit->visible = false;
    totalEdit->changeHandler.bind(this, &Roll::totalChanged);
    totalEdit->commitHandler.bind(this, &Roll::totalCommitted);
    resetButton = new Button(this, "Reset", 12, 13, 6.75f, 2, "");
    resetButton->visible = false;
    resetButton->leftClickHandler.bind(this, &Roll::resetTotal);
    entryEdit = new NumEdit(this, blankNumber, 1, 21, 6, 2, "");
    entryEdit->commitHandler.bind(this, &Roll::entryCommitted);
    rollButton = new Button(this, "Roll", 9, 21, 6, 2, "");
    rollButton->leftClickHandler.bind(this, &Roll::mainRoll);
    wildSwitch = new Switch(this, "WD", 17, 21, 4.5f, 2, "");
    wildSwitch->pressed = true;
    pointsLabel = new Label(this, "Use CP:", 2.2f, 16.75f, 4, 1.5f, "");
    pointsLabel->visible = false;
    for (int i = 0; i < switchCount; ++i) {
        pointSwitches[i] = new Switch(this, std::to_string(i + 1), 9 + 3 * i, 16.5f, 2, 2, "");
        pointSwitches[i]->visible = false;
        pointSwitches[i]->leftClickHandler.bind(this, &Roll::pickPoints);
    }
    // The referee types what the dice showed and presses Enter, without reaching for the mouse.
    focusWindow = entryEdit;
}

Roll::~Roll() = default;

int Roll::rollInto(std::vector<int>& list) {
    int value = random.rollDie();
    total = clampedSum(total, value);
    list.push_back(value);
    return value;
}

void Roll::showDie(int value, int k, float y, const float colour[3]) {
    auto* label = new Label(this, std::to_string(value), 2.5f * k, y, 2, 2, "");
    label->fontSize = 2;
    if (colour) std::copy(colour, colour + 3, label->textColour);
}

void Roll::offerDone() {
    rollButton->caption = "Done";
    rollButton->leftClickHandler.bind(static_cast<Dialogue*>(this), &Dialogue::close);
    entryEdit->visible = false;
}

int Roll::mainRoll(Window*) {
    int typed = *entryEdit->number;
    if (typed >= 0) {
        // Real dice: the number stands as it is, without pips and without a wild die.
        total = typed;
        dice.push_back(typed);
    } else {
        total = code.pips;
        bool wild = wildSwitch->pressed;
        // A code below one die rolls no regular die, and its pips count as they stand.
        int regular = std::min(code.dice, maxRolledDice) - (wild ? 1 : 0);
        int highest = 0;
        for (int i = 0; i < regular; ++i)
            highest = std::max(highest, rollInto(dice));
        if (wild) {
            // The wild die explodes on a six, without limit.
            int last;
            do
                last = rollInto(wildDice);
            while (last == 6);
            // A wild 1 counts for nothing and takes the highest regular die with it.
            if (last == 1) total = clampedSum(total, -(1 + highest));
        }
    }

    int k = 0;
    for (int value : dice)
        showDie(value, ++k, mainRowY, nullptr);
    const float* wildColour = !wildDice.empty() && wildDice.front() == 1 ? wildRed : wildGreen;
    for (int value : wildDice)
        showDie(value, ++k, mainRowY, wildColour);
    new Label(this, "Total:", 2, 13, 2, 2, "");
    *totalEdit->number = total;

    offerDone();
    wildSwitch->visible = false;
    totalEdit->visible = true;
    if (pointsLeft > 0) {
        pointsLabel->visible = true;
        for (int i = 0; i < std::min(pointsLeft, switchCount); ++i)
            pointSwitches[i]->visible = true;
    }
    return 0;
}

int Roll::pickPoints(Window* sender) {
    // Radio buttons: the switch clicked has already turned over; the others let go.
    int position = 0;
    for (int i = 0; i < switchCount; ++i) {
        if (pointSwitches[i] == sender)
            position = i + 1;
        else
            pointSwitches[i]->pressed = false;
    }
    if (position > 0 && pointSwitches[position - 1]->pressed) {
        pointsChosen = position;
        rollButton->caption = "Roll";
        rollButton->leftClickHandler.bind(this, &Roll::spendPoints);
        entryEdit->visible = true;
        focusWindow = entryEdit;
    } else {
        pointsChosen = 0;
        offerDone();
    }
    return 0;
}

int Roll::spendPoints(Window*) {
    size_t first = pointDice.size();
    int typed = *entryEdit->number;
    if (typed >= 0) {
        // Typed, the number is the whole purchase, however many points bought it.
        total = clampedSum(total, typed);
        pointDice.push_back(typed);
    } else {
        // A six here explodes too, without using up a point; a 1 takes nothing away.
        for (int i = 0; i < pointsChosen; ++i)
            while (rollInto(pointDice) == 6) {
            }
    }
    character->characterPoints -= pointsChosen;
    pointsLeft -= pointsChosen;
    pointsChosen = 0;

    pointsLabel->visible = pointsLeft > 0;
    for (int i = 0; i < switchCount; ++i) {
        pointSwitches[i]->pressed = false;
        if (i + 1 > pointsLeft) pointSwitches[i]->visible = false;
    }
    for (size_t k = first; k < pointDice.size(); ++k)
        showDie(pointDice[k], static_cast<int>(k) + 1, pointRowY, pointBlue);
    *totalEdit->number = total;
    offerDone();
    return 0;
}

int Roll::entryCommitted(Window*) {
    // The field shows only while the button rolls or spends, never while it closes the window, so
    // the window still lives after the button's handler.
    if (!entryEdit->visible) return 0;
    rollButton->leftClickHandler(rollButton);
    *entryEdit->number = blankNumber;
    return 0;
}

int Roll::totalChanged(Window*) {
    resetButton->visible = true;
    return 0;
}

int Roll::totalCommitted(Window*) {
    total = *totalEdit->number;
    resetButton->visible = false;
    return 0;
}

int Roll::resetTotal(Window*) {
    *totalEdit->number = total;
    resetButton->visible = false;
    return 0;
}
