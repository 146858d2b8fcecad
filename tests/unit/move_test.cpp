// Moves in the model: what a way of a given length costs at each speed, the shortest stop at speed,
// acceleration from round to round, the bands of a mishap, and where a rolled move ends.
#include "map_test.h"
#include "model_test.h"

namespace {
using Penalties = std::vector<std::tuple<std::string, std::string, int>>;

Penalties penaltiesOf(const Character& c) {
    Penalties list;
    for (const Penalty* p : c.penalties) {
        EXPECT_EQ(p->applyTo, "All") << p->reason;
        list.emplace_back(p->reason, p->dice.text(), p->duration);
    }
    return list;
}

class Moves : public ModelTest {
  protected:
    Character& runner(int move, int speed, int actions) {
        Character& c = person("Tova", {});
        std::tie(c.move, c.moveSpeed, c.actions) = std::tuple(move, speed, actions);
        return c;
    }
};
} // namespace

TEST_F(Moves, AWayTakesItsSpeedAndCostsByItAndTheGroundUnlessItIsTooShortOrTooLong) {
    struct Case {
        int move, speed, actions;
        float distance;
        int terrainClass;
        int result, speedAfter, actionsAfter, takenAfter;
        bool moved;
    };
    const Case cases[] = {
        {10, 0, 2, 5, 2, 1, 1, 2, 0, true}, // cautious over easy ground is free
        {10, 0, 2, 5, 3, 1, 1, 1, 1, true}, // over rough ground it costs an action
        {10, 0, 2, 8, 0, 2, 2, 1, 1, true}, // normal costs one anywhere
        {10, 0, 2, 8, 5, 2, 2, 1, 1, true},
        {10, 1, 2, 15, 0, 3, 3, 1, 1, true},     // high, after a cautious move
        {10, 2, 1, 30, 4, 4, 4, 0, -1, true},    // full out takes the round
        {10, 0, 2, 0, 0, 0, 0, 2, 0, false},     // no way
        {10, 0, 2, 10.5f, 0, 1, 0, 2, 0, false}, // beyond the budget: nothing changes
        {10, 4, 1, 4.9f, 0, -1, 4, 1, 0, false}, // at full out, at least half the move
        {10, 4, 1, 5, 0, 1, 1, 1, 0, true},
        {11, 4, 1, 5, 0, 1, 1, 1, 0, true},      // the half truncated
        {10, 3, 1, 0.5f, 0, -1, 3, 1, 0, false}, // at high speed, at least 1
        {10, 3, 1, 1, 0, 1, 1, 1, 0, true},
    };
    for (const Case& k : cases) {
        Character& c = runner(k.move, k.speed, k.actions);
        EXPECT_EQ(c.applyMove(k.distance, k.terrainClass), k.result) << k.distance << " at " << k.speed;
        EXPECT_EQ(std::tuple(c.moveSpeed, c.actions, c.actionsTaken, c.moved),
                  std::tuple(k.speedAfter, k.actionsAfter, k.takenAfter, k.moved))
            << k.distance << " at " << k.speed;
    }
    Character& twice = runner(10, 0, 2);
    twice.applyMove(3, 0);
    EXPECT_EQ(twice.applyMove(3, 3), 1) << "a second move in the round";
    EXPECT_EQ(std::pair(twice.actions, twice.actionsTaken), std::pair(2, 0));
}

TEST_F(Moves, ARunnerAcceleratesByStepsFromRoundToRound) {
    Character& c = runner(10, 0, 1);
    // Each round: a way too long for the budget, the longest it allows, and the speed of that.
    const struct {
        float tooFar, allowed;
        int speed;
    } rounds[] = {{10.5f, 10, 2}, {40.5f, 40, 4}, {40.5f, 40, 4}};
    for (auto [tooFar, allowed, speed] : rounds) {
        std::tie(c.actions, c.actionsTaken, c.moved) = std::tuple(1, 0, false);
        EXPECT_EQ(c.applyMove(tooFar, 0), 1) << allowed;
        EXPECT_FALSE(c.moved) << allowed;
        EXPECT_EQ(c.applyMove(allowed, 0), speed) << allowed;
        EXPECT_TRUE(c.moved) << allowed;
    }
    // One who means to do more this round gets only twice the move.
    std::tie(c.actions, c.actionsTaken, c.moved) = std::tuple(2, 0, false);
    EXPECT_EQ(c.moveBudget(), 20);
}

TEST_F(Moves, AMishapBringsThePenaltiesAndTheFallOfItsBand) {
    struct Case {
        int margin, speedBefore, parts;
        Penalties penalties;
        int speed, posture, actions, taken, unconscious;
    };
    const Penalties slight{{"Slight Slip", "1D+0", 1}}, slip{{"Slip", "2D+0", 1}, {"Slip", "1D+0", 2}},
        fall{{"Fall", "2D+0", 2}};
    const Case cases[] = {
        {1, 3, 1, slight, 3, 0, 2, 1, 0}, {3, 3, 1, slight, 3, 0, 2, 1, 0}, {4, 3, 2, slip, 2, 0, 2, 1, 0},
        {6, 0, 2, slip, 0, 0, 2, 1, 0},   {7, 3, 2, fall, 0, 1, 0, -1, 0},  {10, 4, 2, fall, 0, 1, 0, -1, 0},
        {11, 4, 4, {}, 0, 2, 0, -1, 2},   {40, 2, 4, {}, 0, 2, 0, -1, 2},
    };
    for (const Case& k : cases) {
        Character& c = runner(10, k.speedBefore, 2);
        c.actionsTaken = 1;
        EXPECT_EQ(c.applyMishap(k.margin), k.parts) << k.margin;
        EXPECT_EQ(penaltiesOf(c), k.penalties) << k.margin;
        EXPECT_EQ(std::tuple(c.moveSpeed, c.posture, c.actions, c.actionsTaken, c.unconscious),
                  std::tuple(k.speed, k.posture, k.actions, k.taken, k.unconscious))
            << k.margin;
    }
}

TEST_F(Moves, ARolledMoveEndsAtTheEndOnATieAndShortOfItByTheMishap) {
    auto map = hexMap(9, 12);
    Character& c = runner(10, 3, 1);
    Character& other = person("Bystander", {});
    struct Case {
        int steps, roll, margin, end;
        bool occupied; // someone stands where the runner would come down
    };
    // A high run over difficulty 16 needs 21.
    const Case cases[] = {
        {7, 21, 0, 6, false}, {7, 20, 1, 6, false}, {7, 16, 5, 3, false}, {7, 9, 12, 1, false},
        {7, 16, 5, 2, true},  {2, 20, 1, 1, false}, {2, 16, 5, 0, false}, {1, 0, 21, 0, false},
    };
    for (const Case& k : cases) {
        c.moveSpeed = 3;
        for (int i = 0; i < k.steps; ++i)
            map->committedPath.push_back({at(*map, 4, 10 - i), 0, 0, 1});
        placeCharacter(&c, at(*map, 4, 10));
        map->committedDifficulty = 16;
        if (k.occupied) placeCharacter(&other, at(*map, 4, 10 - k.end - 1));
        EXPECT_EQ(map->resolveMove(k.roll, &c), k.margin) << k.steps << " steps, roll " << k.roll;
        Cell* end = at(*map, 4, 10 - k.end);
        EXPECT_TRUE(c.cell == end && end->occupant == &c) << k.steps << " steps, roll " << k.roll;
        EXPECT_TRUE(map->committedPath.empty() && map->committedDifficulty == 0) << k.steps;
        if (k.occupied) {
            EXPECT_EQ(at(*map, 4, 10 - k.end - 1)->occupant, &other);
        }
    }
}
