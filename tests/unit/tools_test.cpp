// The build's tools: run as processes, they answer bad input with one message and a non-zero exit
// status, never a signal; the map maker's reader finds each fault of a description with its line.
#include "map_description.h"
#include "process.h"
#include "temp_dir.h"

namespace {
using Tools = TempDirTest;
} // namespace

TEST_F(Tools, BadInputGetsAMessageAndAnExitStatusNeverASignal) {
    write("text.txt", "size 2 2\nlegend . difficulty 1\nheights 1\n00\n00\nterrain\n..\n..\n");
    // A second size once made the grids disagree with the map, and the tool read past them.
    write("twice.txt", "size 2 1\nheights 1\n00\nsize 2 2\nlegend . difficulty 1\nterrain\n..\n..\n");
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"make_map"}, "usage: make_map DESCRIPTION OUTPUT\n"},
        {{"make_map", "missing.txt", "out.map6"}, "make_map: cannot read missing.txt\n"},
        {{"make_map", "twice.txt", "out.map6"}, "make_map: twice.txt:4: the size is given twice\n"},
        {{"make_map", "text.txt", "."}, "make_map: cannot write .\n"},
        {{"make_font"}, "make_font: usage: make_font FONT.ttf OUTPUT.glf [LINE_HEIGHT_PIXELS]\n"},
        {{"make_font", "text.txt", "out.glf"}, "make_font: cannot read text.txt\n"},
        {{"make_font", "text.txt", "out.glf", "99999999999"},
         "make_font: line height must lie between 6 and 128 pixels\n"},
        {{"make_ground"}, "make_ground: usage: make_ground OUTPUT.dds [SIZE]\n"},
        {{"make_ground", "out.dds", "4294967312"},
         "make_ground: size must be a power of two from 16 to 4096\n"},
        {{"make_ground", "missing/out.dds", "16"}, "make_ground: cannot write missing/out.dds\n"},
        {{"make_icon"}, "make_icon: usage: make_icon OUTPUT.png [SIZE]\n"},
        {{"make_icon", "out.png", "8"}, "make_icon: size must lie between 16 and 1024\n"},
        {{"make_icon", "missing/out.png", "16"}, "make_icon: cannot write missing/out.png\n"}};
    for (auto [args, message] : cases) {
        std::string tool = args[0];
        args[0] = HEXFOLD_TOOLS_DIR "/" + tool;
        // A status above 0 is an exit; a signal gives minus its number.
        ProcessResult result = runProcess(args);
        EXPECT_EQ(std::pair(result.status > 0, result.err), std::pair(true, message))
            << tool << " " << args.size();
    }
}

TEST(MapDescription, AGoodOneMakesItsMapAndEachFaultIsToldWithItsLine) {
    std::istringstream shed("# a shed\nsize 3 2\nheights 0.5\n012\n000\nterrain\n.f.\n...\n"
                            "legend . difficulty 3\nlegend f room protect 2\n");
    std::ostringstream errors;
    std::unique_ptr<HexMap> map = makeMap(shed, "shed.txt", errors);
    ASSERT_TRUE(map) << errors.str();
    Cell *room = map->cells[1], *below = map->cells[4];
    EXPECT_EQ(std::tuple(map->cells[2]->centre.z, room->protect.dice, room->difficulty, below->difficulty),
              std::tuple(1.0f, 2, 0, 3));
    EXPECT_EQ(std::tuple(room->walls[3], below->walls[0], room->walls[0]), std::tuple(true, true, false))
        << "walled on both sides of the room's edge, not at the map's";

    const std::pair<const char*, const char*> faults[] = {
        {"size 2 1\nheights 1\n00\nsize 2 2\n", "4: the size is given twice"},
        {"size 1025 1\n", "1: size wants two numbers from 1 to 1024"},
        {"size 2 1 7\n", "1: size wants two numbers from 1 to 1024"},
        {"size 513 512\n", "1: a map has at most 262144 cells, this one 513 x 512"},
        {"heights 1\n00\n", "1: the size comes before the grids"},
        {"size 2 1\nheights 1\n00\nheights 1\n00\n", "4: the heights are given twice"},
        {"size 2 1\nterrain\n..\nterrain\n..\n", "4: the terrain is given twice"},
        {"size 2 1\nlegend . light 1\nlegend . light 2\n", "3: legend '.' is given twice"},
        {"size 2 1\nlegend . light 100\n", "2: dice run from 0 to 99"},
        {"size 2 1\nlegend . shade 1\n", "2: unknown legend key \"shade\""},
        {"size 2 1\nheights nan\n", "2: heights wants the metres of one digit, up to 1000"},
        {"size 2 1\nheights 1\n0\n", "3: a grid row has 1 characters, not 2"},
        {"size 2 2\nheights 1\n00\n", "3: the grid ends after 1 rows"},
        {"size 2 1\nheights 1\n0x\nterrain\n..\nlegend . light 1\n", "3: height 'x' in column 1 is no digit"},
        {"size 2 1\nheights 1\n00\nterrain\n.,\nlegend . light 1\n",
         "5: ',' in column 1 is not in the legend"},
        {"size 2 1\nheights 1\n00\n", "3: both grids, heights and terrain, are needed"},
        {"size 2 1\nbogus\n", "2: unknown word \"bogus\""}};
    for (auto [text, fault] : faults) {
        std::istringstream in(text);
        std::ostringstream said;
        EXPECT_EQ(makeMap(in, "d.txt", said), nullptr) << text;
        EXPECT_EQ(said.str(), "make_map: d.txt:" + std::string(fault) + "\n");
    }
}
