// Moves as the referee resolves them: the refusals and what they leave, the ways that need no roll,
// and the "Running" roll with every band of its failure, tumble damage and resistance, read in the
// report byte for byte.
#include "action_screen.h"
#include "combat/attack_action.h"
#include "combat/move_action.h"

namespace {
class MoveActions : public ActionScreen {
  protected:
    // Tova runs up column 4 from row 20; a move of 5 makes high speed 5 to 10, full out 10 to 20.
    Character& runner() {
        Character& c =
            fighter("Tova", 4, 20, {{"Dexterity", {3, 0}}, {"Running", {4, 0}}, {"Strength", {3, 0}}});
        c.move = 5;
        return c;
    }
    MoveAction* move(Character& mover) { return begin(new MoveAction(root, &mover, map)); }
};
} // namespace

TEST_F(MoveActions, ARefusalSaysWhyCostsNothingAndClearsTheWay) {
    struct Case {
        std::function<void(Character&)> prepare;
        int column, row;
        std::string said;
        std::function<void(Character&)> afterTheWay = [](Character&) {};
    };
    const Case cases[] = {
        {[](Character& c) { c.actions = 0; }, 4, 17, "Nope: No more actions this round"},
        {[](Character& c) { c.moved = true; }, 4, 17, "Nope: You already moved this round"},
        // A normal way over rough ground asks for a roll of nothing.
        {[this](Character& c) {
             c.addPenalty(new Penalty("Wound", {4, 0}, -1, "All")), cell(4, 16)->difficulty = 16;
         },
         4, 16, "No dice: With your penalties you're at 0D+0.\nForget it."},
        // At full out at least half the move; at high speed, more than the 0.9 m to a diagonal neighbour.
        {[](Character& c) { c.moveSpeed = 4, c.move = 10; }, 4, 16, "Too fast: Sorry, gotta move further."},
        {[](Character& c) { c.moveSpeed = 3; }, 5, 19, "Too fast: Sorry, gotta move further."},
        // A way laid down for someone faster is beyond this runner's reach.
        {[](Character&) {}, 4, 16, "Too far: That way is beyond your reach this round.\nLay it down anew.",
         [](Character& c) { c.move = 2; }},
    };
    for (const Case& k : cases) {
        Character& c = runner();
        k.prepare(c);
        wayTo(c, k.column, k.row);
        k.afterTheWay(c);
        auto before = std::tuple(c.actions, c.actionsTaken, c.moveSpeed, c.moved);
        EXPECT_EQ(move(c), nullptr) << k.said;
        EXPECT_EQ(refusal(), k.said);
        EXPECT_EQ(std::tuple(c.actions, c.actionsTaken, c.moveSpeed, c.moved), before) << k.said;
        EXPECT_TRUE(c.cell == cell(4, 20) && map->committedPath.empty() && map->pendingPath.empty())
            << k.said;
        cell(4, 20)->occupant = nullptr;
    }
}

// The combat panel's fight walks the other ways without a roll: a free cautious step over easy
// ground, and a normal one that costs an action.
TEST_F(MoveActions, ACautiousWayOverMediumGroundIsFreeEvenForOneWhoCanNoLongerRun) {
    Character& c = runner();
    auto* wound = new Penalty("Wound", {4, 0}, -1, "All");
    c.addPenalty(wound);
    Character& target = fighter("Rook", 4, 17, {});
    cell(4, 18)->difficulty = 12;
    wayTo(c, 4, 18);
    EXPECT_EQ(move(c), nullptr);
    EXPECT_EQ(front<MessageBox>(), nullptr);
    EXPECT_TRUE(c.cell == cell(4, 18) && cell(4, 18)->occupant == &c && cell(4, 20)->occupant == nullptr);
    EXPECT_EQ(std::tuple(c.actions, c.actionsTaken, c.moveSpeed, c.moved), std::tuple(1, 0, 1, true));
    c.removePenalty(wound);
    c.addSkill(new Skill("Brawling", {3, 0}));
    EXPECT_NE(begin(new AttackAction(root, &c, &target, map)), nullptr) << "the attack goes ahead";
}

// A high run of 7 over difficulty 16 needs 21, a full out run of 12 needs 31. A tie succeeds; a
// failure slips, falls or tumbles, and a tumble at speed hurts by the speed from before the fall.
TEST_F(MoveActions, TheRunningRollTakesTheRunnerToTheEndOrSlipsFallsOrTumbles) {
    struct Case {
        bool full;
        int roll;
        std::string lines;
        int row, health;
        std::vector<int> damage = {}; // the dice of a tumble, then what is typed for "PResist"
        int resist = 0;
    };
    // clang-format off
    const Case cases[] = {
        {false, 21, "", 13, 0},
        {false, 19, "Slight slip, -1D for remaining round\n", 13, 0},
        {false, 16, "Slip, -3D for remaining round, -1D next round\n", 17, 0},
        {false, 11, "Fall, no more actions, -2D next round\n", 17, 0},
        {false, 10, "Minor tumble, no damage", 19, 0},
        {true, 20, "Minor tumble and 1D damage (3)\nNo damage\n", 17, 0, {3}, 4},
        {true, 15, "Tumble and 4D damage (14)\nYou were Stunned, all in all you're now Stunned\n", 17, 6,
         {2, 5, 6, 1}, 14},
        {true, 10, "Major tumble and 6D damage (36)\nYou were Killed, all in all you're now Killed\n", 17, 5,
         {6, 6, 6, 6, 6, 6}, 0},
    };
    // clang-format on
    for (const Case& k : cases) {
        Character& c = runner();
        c.moveSpeed = k.full ? 2 : 1;
        cell(4, 18)->difficulty = 16;
        wayTo(c, 4, k.full ? 8 : 13);
        MoveAction* action = move(c);
        ASSERT_NE(action, nullptr) << k.roll;
        sharedRandom.seedWord(seedFor(k.damage));
        EXPECT_EQ(rolled(k.roll), "Tova Running") << k.roll;
        if (!k.damage.empty()) {
            EXPECT_EQ(rolled(k.resist), "Tova PResist") << k.roll;
        }
        EXPECT_EQ(action->text->caption,
                  (k.full ? "Tova is moving at full out speed\nTerrain difficulty is 16\n"
                            "Total difficulty is 31\n"
                          : "Tova is moving at high speed\nTerrain difficulty is 16\n"
                            "Total difficulty is 21\n") +
                      k.lines);
        EXPECT_EQ(std::pair(c.cell, c.health), std::pair(cell(4, k.row), k.health)) << k.roll;
        EXPECT_TRUE(pressOk(action)) << k.roll;
        c.cell->occupant = nullptr;
    }
}
