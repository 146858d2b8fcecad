// Map files: the written format, round trips, the file of each class of map, the built-in flat map,
// and files that are short, out of step, garbled or implausible (kept in tests/data/maps).
#include <climits>
#include <random>

#include "map_test.h"
#include "temp_dir.h"

namespace {
class MapFiles : public TempDirTest {
  protected:
    // Puts one of the kept test files in the working directory under the map's name.
    static void useMapFile(const std::string& name) {
        std::filesystem::copy_file(std::string(HEXFOLD_TEST_DATA) + "/maps/" + name, "qm2207.map6",
                                   std::filesystem::copy_options::overwrite_existing);
    }
    static std::unique_ptr<Map> load() { return std::unique_ptr<Map>(loadMap(nullptr)); }
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

TEST_F(MapFiles, WritesAHeaderAndOneLineACellWithWallsAsZeros) {
    auto map = hexMap(1, 2);
    Cell* c = at(*map, 0, 0);
    c->light.dice = 7;
    c->cover.dice = 2;
    c->protect.dice = 3;
    c->hardness.dice = 4;
    c->difficulty = 25;
    c->walls[2] = true;
    c->setHeight(1.5f);
    map->reservedA = 0.25f;
    map->save();
    EXPECT_EQ(read("qm2207.map6"), "6|1|2|0.25|0|back.dds\n"
                                   "7|2|3|4|25|1|1|0|1|1|1|1.5\n"
                                   "0|0|0|0|0|1|1|1|1|1|1|0\n");
}

TEST_F(MapFiles, AWallOnOneSideLeavesTheNeighboursSideOpenAndIsWrittenOnce) {
    auto map = hexMap(3, 2);
    at(*map, 0, 0)->walls[2] = true;
    EXPECT_FALSE(at(*map, 1, 0)->walls[5]);
    map->save();
    std::istringstream lines(read("qm2207.map6"));
    std::string line;
    std::getline(lines, line);
    int zeros = 0;
    for (int i = 0; std::getline(lines, line); ++i) {
        std::vector<std::string> fields;
        std::istringstream in(line);
        for (std::string f; std::getline(in, f, '|');)
            fields.push_back(f);
        ASSERT_EQ(fields.size(), 12u);
        for (int side = 0; side < 6; ++side)
            zeros += fields[5 + side] == "0";
        if (i == 0) {
            EXPECT_EQ(fields[7], "0") << "the eighth field holds side 2";
        }
    }
    EXPECT_EQ(zeros, 1);
}

TEST_F(MapFiles, ARoundTripKeepsEverythingWithFloatsCutToSixDigits) {
    auto map = hexMap(3, 2);
    map->reservedA = 0.1234567f;
    map->reservedB = -3;
    const float heights[6] = {1.2345678f, -0.5f, 1000000, 0, 2.5f, 12345.678f};
    for (int i = 0; i < 6; ++i) {
        Cell* c = map->cells[i];
        c->light.dice = i;
        c->cover.dice = 2 * i;
        c->protect.dice = 3 * i;
        c->hardness.dice = 4 * i;
        c->difficulty = 5 * i + 1;
        c->walls[i] = true;
        c->walls[(i + 2) % 6] = true;
        c->setHeight(heights[i]);
    }
    map->save();
    EXPECT_EQ(read("qm2207.map6").substr(0, 27), "6|3|2|0.123457|-3|back.dds\n");
    auto back = load();
    ASSERT_NE(back, nullptr);
    ASSERT_EQ(std::pair(back->columns, back->rows), std::pair(3, 2));
    EXPECT_FLOAT_EQ(back->reservedA, 0.123457f);
    EXPECT_EQ(back->reservedB, -3);
    const float cut[6] = {1.23457f, -0.5f, 1000000, 0, 2.5f, 12345.7f};
    for (int i = 0; i < 6; ++i) {
        const Cell *was = map->cells[i], *is = back->cells[i];
        EXPECT_EQ(std::tuple(is->light, is->cover, is->protect, is->hardness, is->difficulty),
                  std::tuple(was->light, was->cover, was->protect, was->hardness, was->difficulty));
        EXPECT_EQ(wallsOf(is), wallsOf(was)) << "cell " << i;
        EXPECT_FLOAT_EQ(is->centre.z, cut[i]) << "cell " << i;
        EXPECT_TRUE(near(is->centre, {was->centre.x, was->centre.y, cut[i]}, 1e-3f));
        for (int k = 0; k < 6; ++k)
            EXPECT_TRUE(near(is->corners[k], {was->corners[k].x, was->corners[k].y, cut[i]}, 1e-3f));
    }
    EXPECT_EQ(at(*back, 1, 0)->neighbours[4], at(*back, 0, 1)) << "neighbours are laid out as for any grid";
}

TEST_F(MapFiles, EachClassOfMapSavesToItsOwnFileAndAFailedSaveChangesNothing) {
    SquareMap square;
    square.save();
    EXPECT_TRUE(std::filesystem::exists("qm2207.map8"));
    EXPECT_FALSE(std::filesystem::exists("qm2207.map6"));

    std::filesystem::create_directory("qm2207.map6"); // cannot be opened for writing
    auto map = hexMap(2, 2);
    at(*map, 1, 1)->difficulty = 9;
    map->save();
    EXPECT_TRUE(std::filesystem::is_directory("qm2207.map6"));
    EXPECT_EQ(at(*map, 1, 1)->difficulty, 9);
}

TEST_F(MapFiles, AMissingOrImplausibleFileGivesNoMapAndTheProgramItsFlatOne) {
    EXPECT_EQ(load(), nullptr) << "no file";
    for (const char* name : {"too_wide.map6", "no_columns.map6", "negative_rows.map6", "no_header.map6"}) {
        useMapFile(name);
        EXPECT_EQ(load(), nullptr) << name;
        std::unique_ptr<Map> flat(openMap(nullptr));
        ASSERT_NE(flat, nullptr);
        EXPECT_EQ(std::pair(flat->columns, flat->rows), std::pair(32, 24)) << name;
        for (const Cell* c : flat->cells) {
            EXPECT_EQ(c->centre.z, 0);
            EXPECT_EQ(c->difficulty, 0);
            EXPECT_EQ(wallsOf(c), open);
        }
        EXPECT_EQ(at(*flat, 31, 23)->neighbours[0], at(*flat, 31, 22));
    }
    write("qm2207.map6", "6|1024|1|0|0|back.dds\n");
    std::unique_ptr<Map> widest(openMap(nullptr));
    EXPECT_EQ(widest->columns, 1024) << "1024 is still plausible";
}

TEST_F(MapFiles, ShortFilesLeaveZerosAndOpenSidesBehindTheirLastLine) {
    useMapFile("short.map6");
    auto map = load();
    ASSERT_NE(map, nullptr);
    ASSERT_EQ(map->cells.size(), 6u);
    EXPECT_EQ(std::pair(map->reservedA, map->reservedB), std::pair(0.5f, 2.0f));
    Cell *first = map->cells[0], *second = map->cells[1];
    EXPECT_EQ(std::tuple(first->light.dice, first->difficulty, first->centre.z), std::tuple(1, 4, 2.0f));
    EXPECT_EQ(wallsOf(first), (std::vector<bool>{true, false, false, false, false, false}));
    EXPECT_EQ(std::tuple(second->cover.dice, second->difficulty, second->centre.z), std::tuple(1, 6, 0.5f));
    EXPECT_TRUE(second->walls[5]);
    for (int i = 2; i < 6; ++i) {
        const Cell* c = map->cells[i];
        EXPECT_EQ(std::tuple(c->light.dice, c->cover.dice, c->difficulty, c->centre.z),
                  std::tuple(0, 0, 0, 0.0f));
        EXPECT_EQ(wallsOf(c), open);
    }
}

TEST_F(MapFiles, FieldsAreReadBySeparatorsSoALineShortOfAFieldRunsTheRestOutOfStep) {
    useMapFile("out_of_step.map6");
    auto map = load();
    ASSERT_NE(map, nullptr);
    Cell *first = map->cells[0], *second = map->cells[1];
    EXPECT_EQ(std::tuple(first->light.dice, first->cover.dice, first->protect.dice, first->hardness.dice,
                         first->difficulty),
              std::tuple(1, 2, 3, 4, 5));
    EXPECT_EQ(wallsOf(first), open) << "the sixth wall field ran into the next line";
    EXPECT_EQ(first->centre.z, 0) << "and the height took the rest of that line";
    EXPECT_EQ(std::tuple(second->light.dice, second->difficulty, second->centre.z), std::tuple(9, 9, 9.0f))
        << "the second cell comes from the third line";
    EXPECT_EQ(wallsOf(second), std::vector<bool>(6, true));
}

TEST_F(MapFiles, LinesEndingInCarriageReturnsReadAsTheirPlainSelves) {
    useMapFile("crlf.map6");
    auto map = load();
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(std::tuple(map->cells[0]->light.dice, map->cells[0]->difficulty, map->cells[0]->centre.z),
              std::tuple(3, 12, 1.25f));
    EXPECT_TRUE(map->cells[0]->walls[0]);
    EXPECT_EQ(map->cells[1]->protect.dice, 2);
    EXPECT_EQ(wallsOf(map->cells[1]), (std::vector<bool>{false, false, true, false, false, false}));
}

TEST_F(MapFiles, NumbersOutOfRangeSaturateAndHeightsThatAreNoNumbersReadAsZero) {
    useMapFile("huge_numbers.map6");
    auto map = load();
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(map->reservedA, 0) << "beyond the float range";
    const Cell* c = map->cells[0];
    EXPECT_EQ(std::tuple(c->light.dice, c->cover.dice, c->protect.dice, c->hardness.dice, c->difficulty),
              std::tuple(INT_MAX, -7, 3, 0, INT_MAX));
    EXPECT_EQ(wallsOf(c), (std::vector<bool>{true, false, false, false, false, false}))
        << "only a field of exactly \"0\" is a wall";
    EXPECT_EQ(c->centre.z, 0) << "nan";
    EXPECT_EQ(map->cells[1]->centre.z, 0) << "inf";
    EXPECT_EQ(map->cells[2]->centre.z, -0.5f);
    EXPECT_EQ(map->cells[3]->centre.z, 1000000) << "the writer's own exponent form";
}

TEST_F(MapFiles, GarbageAndOverlongFieldsNeitherCrashNorOverreach) {
    useMapFile("garbage.map6");
    EXPECT_EQ(load(), nullptr) << "its header is no header";

    // A field of a megabyte is read past, and what follows it is read in step.
    write("qm2207.map6", "6|2|1|0|0|back.dds\n" + std::string(1 << 20, '7') + "|0|0|0|4|1|1|1|1|1|1|2\n" +
                             "5|0|0|0|0|1|1|1|1|1|1|3\n");
    auto map = load();
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(map->cells[0]->light.dice, INT_MAX);
    EXPECT_EQ(std::tuple(map->cells[0]->difficulty, map->cells[0]->centre.z), std::tuple(4, 2.0f));
    EXPECT_EQ(std::tuple(map->cells[1]->light.dice, map->cells[1]->centre.z), std::tuple(5, 3.0f));

    // Random bytes behind a plausible header: whatever the reader makes of them, it ends, and the
    // map has the size of its header.
    std::mt19937 random(2207);
    const std::string alphabet = "0123456789|||\n\n-.e+x\r ";
    for (int round = 0; round < 200; ++round) {
        std::string text =
            "6|" + std::to_string(1 + round % 7) + "|" + std::to_string(1 + round % 5) + "|0|0|back.dds\n";
        int length = static_cast<int>(random() % 400);
        for (int i = 0; i < length; ++i)
            text += round % 2 ? static_cast<char>(random() % 256) : alphabet[random() % alphabet.size()];
        write("qm2207.map6", text);
        auto m = load();
        ASSERT_NE(m, nullptr) << "round " << round;
        EXPECT_EQ(m->cells.size(), std::size_t(1 + round % 7) * std::size_t(1 + round % 5));
        for (const Cell* c : m->cells)
            EXPECT_TRUE(std::isfinite(c->centre.z));
    }
}
