// Map files: the written format and what the reader makes of each file, shown by writing the map it
// read; the file of each class of map; the built-in flat map; files kept in tests/data/maps.
#include <random>

#include "map_test.h"
#include "temp_dir.h"

namespace {
class MapFiles : public TempDirTest {
  protected:
    // The map read from this text, as the writer writes it; "" for none.
    static std::string reread(const std::string& text) {
        write("qm2207.map6", text);
        return written(loadMap(nullptr));
    }
    static std::string written(Map* map) {
        std::unique_ptr<Map> owned(map);
        std::ostringstream out;
        if (map) map->write(out);
        return out.str();
    }
    static std::string kept(const std::string& name) {
        return read(std::string(HEXFOLD_TEST_DATA) + "/maps/" + name);
    }
};
// Cells of height 0 with no walls and nothing on them, as written.
std::string emptyCells(int count) {
    std::string cells;
    for (int i = 0; i < count; ++i)
        cells += "0|0|0|0|0|1|1|1|1|1|1|0\n";
    return cells;
}
} // namespace

TEST_F(MapFiles, AWallIsWrittenAsZeroOnItsOwnSideOnlyAndFloatsWithSixDigitsAndAllReadsBack) {
    auto map = hexMap(3, 1);
    map->reservedA = 0.1234567f;
    const float heights[3] = {1.2345678f, -0.5f, 1234567.8f};
    for (int i = 0; i < 3; ++i) {
        Cell* c = map->cells[i];
        std::tie(c->light.dice, c->cover.dice, c->protect.dice, c->hardness.dice, c->difficulty) =
            std::tuple(i + 7, 2 * i, 3 * i, 4 * i, 5 * i + 1);
        c->setHeight(heights[i]);
    }
    map->cells[0]->walls[2] = map->cells[2]->walls[0] = map->cells[2]->walls[3] = true;
    map->save();
    const std::string text = "6|3|1|0.123457|0|back.dds\n7|0|0|0|1|1|1|0|1|1|1|1.23457\n"
                             "8|2|3|4|6|1|1|1|1|1|1|-0.5\n9|4|6|8|11|0|1|1|0|1|1|1.23457e+06\n";
    EXPECT_EQ(read("qm2207.map6"), text);
    EXPECT_EQ(reread(text), text);
    std::unique_ptr<Map> back(loadMap(nullptr));
    const Vector3& corner = map->cells[2]->corners[4];
    EXPECT_TRUE(near(back->cells[2]->corners[4], {corner.x, corner.y, 1234570}, 0.01f)) << "the top's height";
}

TEST_F(MapFiles, EachClassOfMapSavesToItsOwnFileAndAFailedSaveChangesNothing) {
    SquareMap(2, 2).save();
    EXPECT_TRUE(std::filesystem::exists("qm2207.map8"));
    std::filesystem::create_directory("qm2207.map6"); // cannot be opened for writing
    ::testing::internal::CaptureStderr();
    hexMap(2, 2)->save();
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "qm2207.map6: cannot be saved: Is a directory\n");
    EXPECT_TRUE(std::filesystem::is_directory("qm2207.map6"));
}

TEST_F(MapFiles, AMissingOrImplausibleFileGivesNoMapAndTheProgramItsFlatOne) {
    EXPECT_EQ(written(loadMap(nullptr)), "") << "no file";
    // Each refusal says why on standard error, in one line that names the file.
    const std::pair<const char*, const char*> refused[] = {{"too_wide.map6", "1025 x 2"},
                                                           {"no_columns.map6", "0 x 5"},
                                                           {"negative_rows.map6", "-3 x 4"},
                                                           {"no_header.map6", "0 x 0"},
                                                           {"garbage.map6", ""}};
    for (auto [name, size] : refused) {
        ::testing::internal::CaptureStderr();
        EXPECT_EQ(reread(kept(name)), "") << name;
        std::string said = ::testing::internal::GetCapturedStderr();
        std::string expected =
            "qm2207.map6: a map has 1 to 1024 columns and rows, this one " + std::string(size);
        EXPECT_EQ(said.substr(0, expected.size()), expected);
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
    }
    EXPECT_EQ(written(openMap(nullptr)), "6|32|24|0|0|back.dds\n" + emptyCells(32 * 24)) << "the flat map";
    const std::string wide = "6|1024|1|0|0|back.dds\n";
    EXPECT_EQ(reread(wide), wide + emptyCells(1024)) << "1024 is still plausible";
    // At most 262,144 cells in all: a header beyond it is refused with a line that says why.
    const std::string largest = "6|1024|256|0|0|back.dds\n";
    EXPECT_TRUE(reread(largest) == largest + emptyCells(1024 * 256));
    ::testing::internal::CaptureStderr();
    EXPECT_TRUE(reread("6|513|512|0|0|back.dds\n").empty());
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "qm2207.map6: a map has at most 262144 cells, this one 513 x 512\n");
}

TEST_F(MapFiles, MalformedFilesAreReadFieldByFieldSaturatingNumbersAndNeverCrash) {
    const std::pair<const char*, std::string> files[] = {
        // Fields missing at the end are empty: zero, and open sides.
        {"short.map6",
         "6|3|2|0.5|2|back.dds\n1|0|0|0|4|0|1|1|1|1|1|2\n0|1|0|0|6|1|1|1|1|1|0|0.5\n" + emptyCells(4)},
        // A line short of a field: the sixth wall runs into the next line, the height takes the rest
        // of that one, and the second cell comes from the third line.
        {"out_of_step.map6", "6|2|1|0|0|back.dds\n1|2|3|4|5|1|1|1|1|1|1|0\n9|9|9|9|9|0|0|0|0|0|0|9\n"},
        {"crlf.map6", "6|2|1|0|0|back.dds\n3|0|0|0|12|0|1|1|1|1|1|1.25\n0|0|2|0|0|1|1|0|1|1|1|0\n"},
        // Beyond the int range saturates, beyond the float range, nan and inf read as 0; only "0" is
        // a wall.
        {"huge_numbers.map6",
         "6|2|2|0|-0|back.dds\n2147483647|-7|3|0|2147483647|0|1|1|1|1|1|0\n"
         "1|1|1|1|1|1|1|1|1|1|1|0\n2|2|2|2|2|1|1|1|1|1|1|-0.5\n3|3|3|3|3|1|1|1|1|1|1|1e+06\n"}};
    for (const auto& [name, text] : files)
        EXPECT_EQ(reread(kept(name)), text) << name;
    EXPECT_EQ(reread("6|2|1|0|0|back.dds\n" + std::string(1 << 20, '7') +
                     "|0|0|0|4|1|1|1|1|1|1|2\n5|0|0|0|0|1|1|1|1|1|1|3\n"),
              "6|2|1|0|0|back.dds\n2147483647|0|0|0|4|1|1|1|1|1|1|2\n5|0|0|0|0|1|1|1|1|1|1|3\n")
        << "a field of a megabyte is read past, and what follows it in step";

    std::mt19937 random(2207);
    const std::string alphabet = "0123456789|||\n\n-.e+x\r ";
    for (int round = 0; round < 100; ++round) {
        int columns = 1 + round % 7, rows = 1 + round % 5;
        std::string text = "6|" + std::to_string(columns) + "|" + std::to_string(rows) + "|0|0|back.dds\n";
        for (int i = static_cast<int>(random() % 400); i > 0; --i)
            text += round % 2 ? static_cast<char>(random() % 256) : alphabet[random() % alphabet.size()];
        write("qm2207.map6", text);
        std::unique_ptr<Map> map(loadMap(nullptr));
        ASSERT_EQ(map->cells.size(), std::size_t(columns * rows)) << round;
        for (const Cell* c : map->cells)
            EXPECT_TRUE(std::isfinite(c->centre.z));
    }
}
