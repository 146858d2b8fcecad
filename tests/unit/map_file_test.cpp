// Map files: the written format, round trips, the file of each class of map, the built-in flat map,
// and files that are short, out of step, garbled or implausible (kept in tests/data/maps).
#include <climits>
#include <random>

#include "map_test.h"
#include "temp_dir.h"

namespace {
class MapFiles : public TempDirTest {
  protected:
    static std::unique_ptr<Map> load(const std::string& keptFile = "") {
        if (!keptFile.empty())
            std::filesystem::copy_file(std::string(HEXFOLD_TEST_DATA) + "/maps/" + keptFile, "qm2207.map6",
                                       std::filesystem::copy_options::overwrite_existing);
        return std::unique_ptr<Map>(loadMap(nullptr));
    }
};

std::vector<bool> wallsOf(const Cell* c) {
    return std::vector<bool>(c->walls.get(), c->walls.get() + c->sides);
}
const std::vector<bool> open(6, false);

class SquareMap : public Map {
  public:
    SquareMap() : Map(nullptr) { makeCells(2, 2); }
};
} // namespace

TEST_F(MapFiles, WritesAHeaderAndALineACellWithAWallAsZeroOnItsOwnSideOnly) {
    auto map = hexMap(2, 1);
    Cell* c = map->cells[0];
    std::tie(c->light.dice, c->cover.dice, c->protect.dice, c->hardness.dice, c->difficulty) =
        std::tuple(7, 2, 3, 4, 25);
    c->walls[2] = true;
    c->setHeight(1.5f);
    map->reservedA = 0.25f;
    EXPECT_FALSE(map->cells[1]->walls[5]) << "the neighbour's side stays open";
    map->save();
    EXPECT_EQ(read("qm2207.map6"), "6|2|1|0.25|0|back.dds\n"
                                   "7|2|3|4|25|1|1|0|1|1|1|1.5\n"
                                   "0|0|0|0|0|1|1|1|1|1|1|0\n");
}

TEST_F(MapFiles, ARoundTripKeepsEverythingWithFloatsCutToSixDigits) {
    auto map = hexMap(3, 2);
    map->reservedA = 0.1234567f;
    const float heights[6] = {1.2345678f, -0.5f, 1000000, 0, 2.5f, 12345.678f};
    const float cut[6] = {1.23457f, -0.5f, 1000000, 0, 2.5f, 12345.7f};
    for (int i = 0; i < 6; ++i) {
        Cell* c = map->cells[i];
        std::tie(c->light.dice, c->cover.dice, c->protect.dice, c->hardness.dice, c->difficulty) =
            std::tuple(i, 2 * i, 3 * i, 4 * i, 5 * i + 1);
        c->walls[i] = c->walls[(i + 2) % 6] = true;
        c->setHeight(heights[i]);
    }
    map->save();
    auto back = load();
    ASSERT_NE(back, nullptr);
    ASSERT_EQ(std::pair(back->columns, back->rows), std::pair(3, 2));
    EXPECT_FLOAT_EQ(back->reservedA, 0.123457f);
    for (int i = 0; i < 6; ++i) {
        const Cell *was = map->cells[i], *is = back->cells[i];
        EXPECT_EQ(std::tuple(is->light, is->cover, is->protect, is->hardness, is->difficulty),
                  std::tuple(was->light, was->cover, was->protect, was->hardness, was->difficulty));
        EXPECT_EQ(wallsOf(is), wallsOf(was)) << "cell " << i;
        for (int k = 0; k < 6; ++k)
            EXPECT_TRUE(near(is->corners[k], {was->corners[k].x, was->corners[k].y, cut[i]}, 1e-3f));
        EXPECT_FLOAT_EQ(is->centre.z, cut[i]);
    }
}

TEST_F(MapFiles, EachClassOfMapSavesToItsOwnFileAndAFailedSaveChangesNothing) {
    SquareMap square;
    square.save();
    EXPECT_TRUE(std::filesystem::exists("qm2207.map8"));
    std::filesystem::create_directory("qm2207.map6"); // cannot be opened for writing
    hexMap(2, 2)->save();
    EXPECT_TRUE(std::filesystem::is_directory("qm2207.map6"));
}

TEST_F(MapFiles, AMissingOrImplausibleFileGivesNoMapAndTheProgramItsFlatOne) {
    EXPECT_EQ(load(), nullptr) << "no file";
    for (const char* name :
         {"too_wide.map6", "no_columns.map6", "negative_rows.map6", "no_header.map6", "garbage.map6"}) {
        EXPECT_EQ(load(name), nullptr) << name;
        std::unique_ptr<Map> flat(openMap(nullptr));
        EXPECT_EQ(std::pair(flat->columns, flat->rows), std::pair(32, 24)) << name;
        for (const Cell* c : flat->cells)
            EXPECT_TRUE(c->centre.z == 0 && c->difficulty == 0 && wallsOf(c) == open);
    }
    write("qm2207.map6", "6|1024|1|0|0|back.dds\n");
    EXPECT_EQ(std::unique_ptr<Map>(openMap(nullptr))->columns, 1024) << "1024 is still plausible";
}

TEST_F(MapFiles, ShortFilesLeaveZerosAndALineShortOfAFieldRunsTheRestOutOfStep) {
    auto map = load("short.map6");
    ASSERT_EQ(map->cells.size(), 6u);
    EXPECT_EQ(std::tuple(map->reservedA, map->reservedB), std::tuple(0.5f, 2.0f));
    EXPECT_EQ(std::tuple(map->cells[0]->light.dice, map->cells[0]->difficulty, map->cells[0]->centre.z),
              std::tuple(1, 4, 2.0f));
    EXPECT_TRUE(map->cells[0]->walls[0] && map->cells[1]->walls[5]);
    for (int i = 2; i < 6; ++i)
        EXPECT_TRUE(map->cells[i]->difficulty == 0 && wallsOf(map->cells[i]) == open) << i;

    // The fields are read by separators: the sixth wall field runs into the next line, the height
    // takes the rest of it, and the second cell comes from the third line.
    map = load("out_of_step.map6");
    Cell *first = map->cells[0], *second = map->cells[1];
    EXPECT_EQ(std::tuple(first->light.dice, first->hardness.dice, first->difficulty, first->centre.z),
              std::tuple(1, 4, 5, 0.0f));
    EXPECT_EQ(wallsOf(first), open);
    EXPECT_EQ(std::tuple(second->light.dice, second->centre.z), std::tuple(9, 9.0f));
    EXPECT_EQ(wallsOf(second), std::vector<bool>(6, true));

    map = load("crlf.map6");
    EXPECT_EQ(std::tuple(map->cells[0]->difficulty, map->cells[0]->centre.z), std::tuple(12, 1.25f));
    EXPECT_EQ(wallsOf(map->cells[1]), (std::vector<bool>{false, false, true, false, false, false}));
}

TEST_F(MapFiles, NumbersOutOfRangeSaturateAndHeightsThatAreNoNumbersReadAsZero) {
    auto map = load("huge_numbers.map6");
    EXPECT_EQ(map->reservedA, 0) << "beyond the float range";
    const Cell* c = map->cells[0];
    EXPECT_EQ(std::tuple(c->light.dice, c->cover.dice, c->protect.dice, c->hardness.dice, c->difficulty),
              std::tuple(INT_MAX, -7, 3, 0, INT_MAX));
    EXPECT_EQ(wallsOf(c), (std::vector<bool>{true, false, false, false, false, false}))
        << "only exactly \"0\" is a wall";
    const float heights[4] = {0, 0, -0.5f, 1000000}; // nan, inf, -0.5, 1e+06
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(map->cells[i]->centre.z, heights[i]) << "cell " << i;
}

TEST_F(MapFiles, OverlongFieldsAndRandomBytesNeitherCrashNorOverreach) {
    // A field of a megabyte is read past, and what follows it is read in step.
    write("qm2207.map6", "6|2|1|0|0|back.dds\n" + std::string(1 << 20, '7') +
                             "|0|0|0|4|1|1|1|1|1|1|2\n5|0|0|0|0|1|1|1|1|1|1|3\n");
    auto map = load();
    EXPECT_EQ(std::tuple(map->cells[0]->light.dice, map->cells[0]->difficulty, map->cells[0]->centre.z),
              std::tuple(INT_MAX, 4, 2.0f));
    EXPECT_EQ(std::tuple(map->cells[1]->light.dice, map->cells[1]->centre.z), std::tuple(5, 3.0f));

    std::mt19937 random(2207);
    const std::string alphabet = "0123456789|||\n\n-.e+x\r ";
    for (int round = 0; round < 100; ++round) {
        int columns = 1 + round % 7, rows = 1 + round % 5;
        std::string text = "6|" + std::to_string(columns) + "|" + std::to_string(rows) + "|0|0|back.dds\n";
        for (int i = static_cast<int>(random() % 400); i > 0; --i)
            text += round % 2 ? static_cast<char>(random() % 256) : alphabet[random() % alphabet.size()];
        write("qm2207.map6", text);
        auto m = load();
        ASSERT_EQ(m->cells.size(), std::size_t(columns * rows)) << "round " << round;
        for (const Cell* c : m->cells)
            EXPECT_TRUE(std::isfinite(c->centre.z));
    }
}
