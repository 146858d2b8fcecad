// The path search: step costs, walls, the budget, its quirks (the squared test at the start, the
// first-sight estimates, newest first among equals), the line's colours, the roll the way needs,
// and ways laid down in stretches.
#include <climits>
#include <vector>

#include "map_test.h"
#include "model_test.h"
#include "rules/speed.h"

namespace {
struct Place {
    int column, row;
};

class PathSearch : public ModelTest {
  protected:
    void SetUp() override {
        ModelTest::SetUp();
        mover = new Character(true);
        mover->move = 10;
        mover->moveSpeed = 4;
        mover->actions = 1;
        standAt(4, 28);
    }

    void standAt(int column, int row) { placeCharacter(mover, at(*map, column, row)); }

    // What the hover handler does when the pointer comes onto a cell.
    void seek(int column, int row) {
        map->hovered = at(*map, column, row);
        map->findPath(mover);
    }

    std::vector<Cell*> way(const std::deque<PathStep>& path) const {
        std::vector<Cell*> cells;
        for (const PathStep& s : path)
            cells.push_back(s.cell);
        return cells;
    }
    std::vector<Cell*> cellsAt(std::initializer_list<Place> places) {
        std::vector<Cell*> cells;
        for (Place p : places)
            cells.push_back(at(*map, p.column, p.row));
        return cells;
    }

    std::unique_ptr<HexMap> map = hexMap(9, 30);
    Character* mover = nullptr;
};

constexpr float flatDiagonal = 0.9013878f; // the square root of 0.8125
} // namespace

TEST_F(PathSearch, StepsCostOneNorthAndSouthAndAboutPointNineAlongTheOtherFour) {
    standAt(4, 10);
    seek(4, 9);
    EXPECT_FLOAT_EQ(map->pendingLength, 1.0f);
    EXPECT_EQ(way(map->pendingPath), cellsAt({{4, 10}, {4, 9}})) << "the way starts on the mover's cell";
    seek(4, 11);
    EXPECT_FLOAT_EQ(map->pendingLength, 1.0f);
    for (Place p : {Place{5, 9}, Place{5, 10}, Place{3, 10}, Place{3, 9}}) {
        seek(p.column, p.row);
        EXPECT_NEAR(map->pendingLength, flatDiagonal, 1e-6f) << p.column << ", " << p.row;
    }
    at(*map, 4, 9)->setHeight(2);
    seek(4, 9);
    EXPECT_FLOAT_EQ(map->pendingLength, std::sqrt(5.0f)) << "a step up of 2 counts its height";
}

TEST_F(PathSearch, AWallStopsOnlyTheWayOutOfItsOwnCell) {
    standAt(4, 10);
    at(*map, 4, 10)->walls[0] = true;
    seek(4, 9);
    EXPECT_NEAR(map->pendingLength, 2 * flatDiagonal, 1e-5f) << "round the wall";
    EXPECT_EQ(map->pendingPath.size(), 3u);

    standAt(4, 9);
    seek(4, 10);
    EXPECT_FLOAT_EQ(map->pendingLength, 1.0f) << "the neighbour's own side is open";
}

TEST_F(PathSearch, ACellWalledInFromAllSidesCannotBeReached) {
    standAt(4, 10);
    Cell* target = at(*map, 4, 8);
    for (int i = 0; i < 6; ++i)
        target->neighbours[i]->walls[(i + 3) % 6] = true;
    seek(4, 8);
    EXPECT_TRUE(map->pendingPath.empty());
    EXPECT_EQ(map->pendingLength, 0);

    for (int i = 0; i < 6; ++i)
        target->neighbours[i]->walls[(i + 3) % 6] = false;
    for (int i = 0; i < 6; ++i)
        target->walls[i] = true;
    seek(4, 8);
    EXPECT_FLOAT_EQ(map->pendingLength, 2.0f) << "walls on its own sides only keep one from leaving it";
}

TEST_F(PathSearch, TheBudgetFollowsTheSpeedOfTheLastMoveAndTheActionsOfTheRound) {
    struct Case {
        int moveSpeed, actions, actionsTaken, budget;
    };
    // After a standstill the move, after "cautious" twice the move, after anything faster four
    // times, but only twice for a character who does more this round.
    const Case cases[] = {{0, 1, 0, 2}, {1, 1, 0, 4}, {2, 1, 0, 8}, {3, 1, 0, 8}, {4, 1, 0, 8},
                          {4, 0, 0, 8}, {4, 2, 0, 4}, {2, 3, 0, 4}, {4, 1, 1, 4}, {3, 1, -1, 4}};
    mover->move = 2;
    for (const Case& c : cases) {
        mover->moveSpeed = c.moveSpeed;
        mover->actions = c.actions;
        mover->actionsTaken = c.actionsTaken;
        seek(4, 28 - c.budget);
        EXPECT_FLOAT_EQ(map->pendingLength, float(c.budget))
            << "speed " << c.moveSpeed << ", actions " << c.actions << ", taken " << c.actionsTaken;
        seek(4, 28 - c.budget - 1);
        EXPECT_TRUE(map->pendingPath.empty()) << "one step beyond, speed " << c.moveSpeed;
    }
}

TEST_F(PathSearch, AtTheStartATargetIsHeldAgainstTheSquareOfWhatRemains) {
    // move 2 at a standstill: a budget of 2, of which the laid-down way leaves what remains.
    mover->move = 2;
    mover->moveSpeed = 0;
    standAt(4, 10);
    auto layDown = [&](float length) {
        map->clearCommittedPath();
        map->committedPath.push_back({at(*map, 4, 10), 0, 0, 1});
        map->committedLength = length;
    };
    layDown(2 - 0.92f);
    seek(5, 9);
    EXPECT_TRUE(map->pendingPath.empty()) << "0.901 is above 0.92 squared, though within 0.92";
    layDown(2 - 0.95f);
    seek(5, 9);
    EXPECT_EQ(map->pendingPath.size(), 2u) << "0.901 is below 0.95 squared";

    // Refused at the start, the search does not even reset the cells' states; let through, it
    // does, and then the budget stops it on the way.
    for (Cell* c : map->cells)
        c->pathState = 42;
    layDown(2 - 0.5f);
    seek(5, 9);
    EXPECT_EQ(at(*map, 4, 10)->pathState, 42);
    EXPECT_NEAR(at(*map, 4, 10)->pathEstimate, flatDiagonal, 1e-6f);

    mover->move = 4; // a budget of 4, of which 3 remain
    layDown(1);
    seek(4, 2);
    EXPECT_TRUE(map->pendingPath.empty()) << "8 is beyond 3";
    EXPECT_NE(at(*map, 4, 10)->pathState, 42) << "but below 3 squared: the search ran";
}

TEST_F(PathSearch, AmongEquallyPromisingCellsTheLastSeenIsTriedFirst) {
    standAt(4, 4);
    // Both cells to the east, north-east (side 1) and south-east (side 2), lead to (6, 4) in two
    // equal steps; the south-east one is seen second, goes first, and makes the way.
    seek(6, 4);
    EXPECT_EQ(way(map->pendingPath), cellsAt({{4, 4}, {5, 4}, {6, 4}}));
    seek(2, 4);
    EXPECT_EQ(way(map->pendingPath), cellsAt({{4, 4}, {3, 3}, {2, 4}}))
        << "north-west is seen after south-west";
}

TEST_F(PathSearch, ACellKeepsTheEstimateOfItsFirstSightSoTheWayFoundMayBeLonger) {
    mover->cell = nullptr; // a character keeps pointing at its cell when the map goes
    map = hexMap(9, 9);
    const char* heights[9] = {"201021120", "110220000", "210000211", "020022010", "122112022",
                              "122110222", "221221001", "222100011", "110201202"};
    for (int r = 0; r < 9; ++r)
        for (int c = 0; c < 9; ++c)
            at(*map, c, r)->setHeight(float(heights[r][c] - '0'));
    standAt(4, 4);
    seek(5, 1);
    EXPECT_EQ(way(map->pendingPath), cellsAt({{4, 4}, {5, 3}, {5, 2}, {5, 1}}));
    std::vector<Cell*> shorter = cellsAt({{4, 4}, {3, 3}, {3, 2}, {4, 2}, {5, 1}});
    float shorterLength = 0;
    for (std::size_t i = 1; i < shorter.size(); ++i)
        shorterLength += distance(shorter[i - 1], shorter[i]);
    for (std::size_t i = 1; i < shorter.size(); ++i)
        EXPECT_NE(shorter[i]->neighbours[0], nullptr);
    EXPECT_NEAR(shorterLength, 4.1491f, 1e-3f);
    EXPECT_NEAR(map->pendingLength, 4.5824f, 1e-3f) << "longer than the shortest way";
}

TEST_F(PathSearch, TheLineIsBlackShortOfTheLowerLimitThenColouredBySpeed) {
    seek(4, 3); // 25 steps north
    ASSERT_EQ(map->pendingPath.size(), 26u);
    auto colourAt = [&](int metres) {
        const PathStep& s = map->pendingPath[metres];
        return std::tuple(s.red, s.green, s.blue);
    };
    using C = std::tuple<float, float, float>;
    const C black{0, 0, 0}, blue{0, 0, 1}, green{0, 1, 0}, yellow{1, 1, 0}, red{1, 0, 0};
    // Full out with a move of 10 cannot stop within 5 metres.
    for (int m = 0; m <= 4; ++m)
        EXPECT_EQ(colourAt(m), black) << m;
    EXPECT_EQ(colourAt(5), blue) << "up to half the move: cautious";
    for (int m = 6; m <= 10; ++m)
        EXPECT_EQ(colourAt(m), green) << m;
    for (int m = 11; m <= 20; ++m)
        EXPECT_EQ(colourAt(m), yellow) << m;
    for (int m = 21; m <= 25; ++m)
        EXPECT_EQ(colourAt(m), red) << m;

    mover->moveSpeed = 3;
    seek(4, 26);
    EXPECT_EQ(colourAt(0), black) << "at high speed the limit is 1";
    EXPECT_EQ(colourAt(1), blue);
    mover->moveSpeed = 2;
    seek(4, 26);
    EXPECT_EQ(colourAt(0), blue) << "slower, no limit";
}

TEST_F(PathSearch, TheRollFollowsTheSpeedOfTheWholeWayAndItsWorstCell) {
    struct Case {
        int steps, difficulty, roll;
    };
    // A move of 10: 3 metres cautious, 8 normal, 15 high, 25 full out.
    const Case cases[] = {{3, 3, INT_MIN}, {3, 16, -5},  {8, 3, noRollNeeded}, {8, 16, 0},
                          {15, 3, 0},      {15, 25, 10}, {25, 3, 5},           {25, 31, 20}};
    for (const Case& c : cases) {
        for (Cell* cell : map->cells)
            cell->difficulty = 3;
        at(*map, 4, 28 - c.steps)->difficulty = c.difficulty;
        seek(4, 28 - c.steps);
        EXPECT_EQ(map->pendingDifficulty, c.difficulty);
        EXPECT_EQ(map->requiredRoll, c.roll) << c.steps << " metres over difficulty " << c.difficulty;
    }
}

TEST_F(PathSearch, AWayLaidDownInStretchesGoesOnFromItsEnd) {
    at(*map, 4, 26)->difficulty = 12;
    seek(4, 25);
    map->commitPath();
    EXPECT_EQ(way(map->committedPath), cellsAt({{4, 28}, {4, 27}, {4, 26}, {4, 25}}));
    EXPECT_TRUE(map->pendingPath.empty());
    EXPECT_FLOAT_EQ(map->committedLength, 3);
    EXPECT_FLOAT_EQ(map->pendingLength, 3) << "kept, so that the line is still drawn";
    EXPECT_EQ(map->committedDifficulty, 12);

    seek(4, 23);
    EXPECT_EQ(way(map->pendingPath), cellsAt({{4, 25}, {4, 24}, {4, 23}}));
    EXPECT_FLOAT_EQ(map->pendingLength, 5) << "along both stretches";
    EXPECT_EQ(map->pendingDifficulty, 12) << "the worst cell of the laid-down way counts";
    EXPECT_EQ(std::tuple(map->pendingPath[1].red, map->pendingPath[1].green, map->pendingPath[1].blue),
              std::tuple(0.0f, 0.0f, 0.0f))
        << "4 metres into the whole way: black still, at full out";
    EXPECT_EQ(map->pendingPath[2].blue, 1) << "5 metres: cautious";
    map->commitPath();
    EXPECT_EQ(map->committedPath.size(), 7u) << "the joint cell stands twice";
    EXPECT_EQ(map->committedPath[3].cell, map->committedPath[4].cell);

    seek(4, 23);
    EXPECT_EQ(way(map->pendingPath), cellsAt({{4, 23}})) << "the end of the way itself";
    EXPECT_FLOAT_EQ(map->pendingLength, map->committedLength);

    map->clearCommittedPath();
    EXPECT_TRUE(map->committedPath.empty());
    EXPECT_EQ(std::tuple(map->committedLength, map->committedDifficulty, map->requiredRoll),
              std::tuple(0.0f, 0, 0));
    EXPECT_EQ(map->pendingPath.size(), 1u) << "the proposed way stays";
    map->clearPendingPath();
    EXPECT_EQ(std::tuple(map->pendingPath.size(), map->pendingLength, map->pendingDifficulty),
              std::tuple(std::size_t(0), 0.0f, 0));
}

TEST_F(PathSearch, NothingIsProposedWithoutATargetOrAStart) {
    seek(4, 20);
    ASSERT_FALSE(map->pendingPath.empty());
    map->hovered = nullptr;
    map->findPath(mover);
    EXPECT_TRUE(map->pendingPath.empty()) << "the old way is cleared all the same";
    mover->cell = nullptr;
    seek(4, 20);
    EXPECT_TRUE(map->pendingPath.empty());
}

TEST(PlaceCharacter, ASecondCharacterTakesTheCellAndTheFirstKeepsItsPointer) {
    auto map = hexMap(3, 3);
    Character a(true), b(true);
    Cell *one = at(*map, 0, 0), *two = at(*map, 1, 1), *three = at(*map, 2, 2);
    placeCharacter(&a, one);
    placeCharacter(&a, two);
    EXPECT_EQ(one->occupant, nullptr) << "leaving a cell empties it";
    placeCharacter(&b, two);
    EXPECT_EQ(two->occupant, &b);
    EXPECT_EQ(a.cell, two) << "the first is not told";
    placeCharacter(&a, three);
    EXPECT_EQ(two->occupant, &b) << "nor does it take the second off when it moves on";
    EXPECT_EQ(three->occupant, &a);
}
