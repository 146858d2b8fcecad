// The path search: step costs, one-way walls, the budget and its quirks (the squared test at the
// start, newest first among equals, first-sight estimates), colours, the roll, stretches.
#include "map_test.h"
#include "model_test.h"
#include "rules/speed.h"

namespace {
using Colour = std::tuple<float, float, float>;
using Way = std::vector<std::pair<int, int>>;
const Colour black{0, 0, 0}, blue{0, 0, 1}, green{0, 1, 0}, yellow{1, 1, 0}, red{1, 0, 0};
constexpr float diagonal = 0.9013878f; // the square root of 0.8125

class PathSearch : public ModelTest {
  protected:
    void SetUp() override {
        ModelTest::SetUp(); // the catalogue owns the mover, and empties itself after each test
        mover = new Character(true);
        std::tie(mover->move, mover->moveSpeed, mover->actions) = std::tuple(10, 4, 1);
        standAt(4, 28);
    }
    void standAt(int c, int r) { placeCharacter(mover, at(*map, c, r)); }
    // What the hover handler does when the pointer comes onto a cell; the way found.
    Way seek(int c, int r) {
        map->hovered = at(*map, c, r);
        map->findPath(mover);
        return way(map->pendingPath);
    }
    Way way(const std::deque<PathStep>& path) const {
        Way places;
        for (const PathStep& s : path)
            places.emplace_back((s.cell - map->cells[0]) % map->columns,
                                (s.cell - map->cells[0]) / map->columns);
        return places;
    }
    Colour colour(int step) const {
        const PathStep& s = map->pendingPath[step];
        return {s.red, s.green, s.blue};
    }
    std::unique_ptr<HexMap> map = hexMap(9, 30);
    Character* mover = nullptr;
};
} // namespace

TEST_F(PathSearch, StepsCostTheirDistanceHeightIncludedAndWallsStopOnlyTheWayOut) {
    standAt(4, 10);
    for (auto [c, r] : Way{{4, 9}, {4, 11}, {5, 9}, {5, 10}, {3, 10}, {3, 9}}) {
        EXPECT_EQ(seek(c, r), (Way{{4, 10}, {c, r}}));
        EXPECT_NEAR(map->pendingLength, c == 4 ? 1.0f : diagonal, 1e-6f) << c << ", " << r;
    }
    at(*map, 4, 9)->setHeight(2);
    seek(4, 9);
    EXPECT_FLOAT_EQ(map->pendingLength, std::sqrt(5.0f)) << "up a step of 2";
    at(*map, 4, 9)->setHeight(0);
    at(*map, 4, 10)->walls[0] = true;
    seek(4, 9);
    EXPECT_NEAR(map->pendingLength, 2 * diagonal, 1e-5f) << "round the wall";
    standAt(4, 9);
    seek(4, 10);
    EXPECT_FLOAT_EQ(map->pendingLength, 1.0f) << "the neighbour's own side is open";
    for (int i = 0; i < 6; ++i)
        at(*map, 4, 7)->neighbours[i]->walls[(i + 3) % 6] = true;
    EXPECT_TRUE(seek(4, 7).empty() && map->pendingLength == 0) << "a cell walled in from all sides";
}

TEST_F(PathSearch, TheBudgetFollowsTheLastMovesSpeedTheActionsAndAtTheStartTheSquareOfWhatRemains) {
    // moveSpeed, actions, actionsTaken, and the budget for a move of 2.
    const int cases[][4] = {{0, 1, 0, 2}, {1, 1, 0, 4}, {2, 1, 0, 8}, {3, 1, 0, 8}, {4, 1, 0, 8},
                            {4, 2, 0, 4}, {2, 3, 0, 4}, {4, 1, 1, 4}, {3, 1, -1, 4}};
    mover->move = 2;
    for (auto [speed, actions, taken, budget] : cases) {
        std::tie(mover->moveSpeed, mover->actions, mover->actionsTaken) = std::tie(speed, actions, taken);
        seek(4, 28 - budget);
        EXPECT_FLOAT_EQ(map->pendingLength, float(budget)) << speed << ", " << actions << ", " << taken;
        EXPECT_TRUE(seek(4, 27 - budget).empty()) << speed << ", " << actions << ", " << taken;
    }
    map->committedPath.push_back({at(*map, 4, 28), 0, 0, 1}); // a laid-down way that leaves 0.92
    std::tie(mover->moveSpeed, map->committedLength) = std::tuple(0, 2 - 0.92f);
    EXPECT_TRUE(seek(5, 27).empty()) << "0.901 is above 0.92 squared, though within 0.92";
    map->committedLength = 2 - 0.95f;
    EXPECT_EQ(seek(5, 27).size(), 2u) << "0.901 is below 0.95 squared";
    // The way laid down at a faster speed now lies beyond the budget: its end is drawn black.
    map->committedLength = 5;
    EXPECT_EQ(seek(4, 28).size(), 1u);
    EXPECT_EQ(colour(0), black);
}

TEST_F(PathSearch, NewestFirstAmongEqualEstimatesAndEstimatesKeptFromTheFirstSight) {
    standAt(4, 4);
    // North-east (side 1) and south-east (side 2) lead there equally; the second goes first.
    EXPECT_EQ(seek(6, 4), (Way{{4, 4}, {5, 4}, {6, 4}}));
    EXPECT_EQ(seek(2, 4), (Way{{4, 4}, {3, 3}, {2, 4}}));
    // Here a cell first seen by a long way keeps that way's estimate: the way found is 4.58 long,
    // though one of 4.15 by (3, 3), (3, 2) and (4, 2) exists.
    const char* heights[9] = {"201021120", "110220000", "210000211", "020022010", "122112022",
                              "122110222", "221221001", "222100011", "110201202"};
    for (int r = 0; r < 9; ++r)
        for (int c = 0; c < 9; ++c)
            at(*map, c, r)->setHeight(float(heights[r][c] - '0'));
    EXPECT_EQ(seek(5, 1), (Way{{4, 4}, {5, 3}, {5, 2}, {5, 1}}));
    EXPECT_NEAR(map->pendingLength, 4.5824f, 1e-3f);
}

// A cell closed by one way is opened again when a shorter way to it turns up: here (4, 3) is closed
// at 4.65 metres by the way down column 4, before the way by (3, 1) and (3, 2) reaches it at 4.25.
TEST_F(PathSearch, AClosedCellIsOpenedAgainWhenAShorterWayReachesIt) {
    mover->cell = nullptr; // off the fixture's map, which goes
    map = hexMap(5, 5);
    const char* heights = "1020100221120200200202121";
    for (int i = 0; i < 25; ++i)
        map->cells[i]->setHeight(float(heights[i] - '0'));
    standAt(4, 0);
    EXPECT_EQ(seek(4, 4), (Way{{4, 0}, {4, 1}, {3, 1}, {3, 2}, {4, 3}, {4, 4}}));
    EXPECT_NEAR(map->pendingLength, 5.6619f, 1e-3f);
}

TEST_F(PathSearch, TheLineIsBlackShortOfTheLowerLimitThenColouredBySpeedAndTheRollFollows) {
    ASSERT_EQ(seek(4, 3).size(), 26u);
    for (int m = 0; m <= 25; ++m) // full out with a move of 10 cannot stop within 5 metres
        EXPECT_EQ(colour(m), m < 5 ? black : m <= 5 ? blue : m <= 10 ? green : m <= 20 ? yellow : red) << m;
    mover->moveSpeed = 3;
    seek(4, 26);
    EXPECT_EQ(std::pair(colour(0), colour(1)), std::pair(black, blue)) << "at high speed the limit is 1";
    mover->moveSpeed = 2;
    seek(4, 26);
    EXPECT_EQ(colour(0), blue) << "slower, no limit";
    // At each speed, longest first so that no way crosses an earlier target: metres, the target's
    // difficulty, the roll for the whole way.
    for (auto [metres, difficulty, roll] :
         {std::tuple{25, 31, 20}, {15, 25, 10}, {8, 3, noRollNeeded}, {3, 16, -5}}) {
        at(*map, 4, 28 - metres)->difficulty = difficulty;
        seek(4, 28 - metres);
        EXPECT_EQ(std::pair(map->pendingDifficulty, map->requiredRoll), std::pair(difficulty, roll));
    }
    // Half an odd move is not cut down: with a move of 5, 2.41 metres are still cautious, 2.56 normal.
    mover->move = 5;
    for (auto [height, there] : {std::pair{1.0f, blue}, {1.2f, green}}) {
        at(*map, 4, 26)->setHeight(height);
        seek(4, 26);
        EXPECT_EQ(colour(2), there) << height;
    }
}

TEST_F(PathSearch, AWayLaidDownInStretchesGoesOnFromItsEnd) {
    at(*map, 4, 26)->difficulty = 12;
    seek(4, 25);
    map->commitPath();
    EXPECT_EQ(std::tuple(map->pendingPath.size(), map->committedLength, map->pendingLength),
              std::tuple(std::size_t(0), 3.0f, 3.0f))
        << "the proposed length stays, so that the line is still drawn";
    EXPECT_EQ(seek(4, 23), (Way{{4, 25}, {4, 24}, {4, 23}}));
    EXPECT_EQ(std::tuple(map->pendingLength, map->pendingDifficulty), std::tuple(5.0f, 12));
    EXPECT_EQ(std::pair(colour(1), colour(2)), std::pair(black, blue)); // by the whole way's metres
    map->commitPath();
    EXPECT_EQ(way(map->committedPath), (Way{{4, 28}, {4, 27}, {4, 26}, {4, 25}, {4, 25}, {4, 24}, {4, 23}}));
    EXPECT_EQ(seek(4, 23), (Way{{4, 23}})) << "the end of the way itself";
    EXPECT_EQ(std::pair(map->committedLength, map->pendingLength), std::pair(5.0f, 5.0f));
    map->clearCommittedPath();
    EXPECT_EQ(std::tuple(map->committedPath.size(), map->committedLength, map->requiredRoll),
              std::tuple(std::size_t(0), 0.0f, 0));
}

TEST(PlaceCharacter, ASecondCharacterTakesTheCellAndTheFirstKeepsItsPointer) {
    auto map = hexMap(3, 3);
    Character a(true), b(true);
    for (auto [who, cell] : {std::pair{&a, 0}, {&a, 4}, {&b, 4}})
        placeCharacter(who, map->cells[cell]);
    EXPECT_EQ(std::tuple(map->cells[0]->occupant, map->cells[4]->occupant, a.cell),
              std::tuple(nullptr, &b, map->cells[4]));
    placeCharacter(&a, map->cells[8]);
    EXPECT_EQ(map->cells[4]->occupant, &b) << "the first is not told, nor takes the second off as it leaves";
}
