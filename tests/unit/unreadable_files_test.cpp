// Files that open but cannot be read: a directory in the place of a data file, and a stream whose
// buffer fails half way as a file's does on an I/O error. Every reader keeps what it read, and the
// program goes on.
#include "map/hex_map.h"
#include "model_test.h"
#include "rules/character_files.h"
#include "rules/field_reader.h"
#include "toolkit/font.h"

namespace {
// Gives its text three bytes at a time, then fails by throwing from underflow, as a file buffer
// does when the read under it fails.
class FailingBuffer : public std::streambuf {
  public:
    explicit FailingBuffer(std::string text) : text(std::move(text)) {}

  protected:
    int_type underflow() override {
        if (served >= text.size()) throw std::ios_base::failure("read error");
        std::size_t n = std::min<std::size_t>(3, text.size() - served);
        setg(text.data() + served, text.data() + served, text.data() + served + n);
        served += n;
        return traits_type::to_int_type(*gptr());
    }

  private:
    std::string text;
    std::size_t served = 0;
};

class UnreadableFiles : public ModelFileTest {
  protected:
    // A small campaign of one file each: an item, a skill, a character, an NPC and a faction.
    void writeCampaign() {
        write("items.dat", "[Item]\nRope|3\n");
        write("skills.dat", "Perception||0\n");
        write("characters.idx", "Mara\n");
        write("npcs.idx", "Hound\n");
        write("Mara.chr", "[Stats]\nPerception|3|0\n");
        write("Hound.npc", "[Stats]\nPerception|2|0\n");
        write("factions.dat", "[Crew]\nCrew|1|0|0\nMara\n");
    }
    // Items, skills, characters, NPCs, factions, Mara's skills and the members of the first faction.
    static std::vector<int> loaded() {
        loadItems(), loadSkills(), loadCharacters(), loadFactions();
        Character* mara = findCharacter("Mara");
        return {int(allItems.size()),
                int(allSkills.size()),
                int(allCharacters.size()),
                int(allNpcs.size()),
                int(allFactions.size()),
                mara ? int(mara->skills.size()) : -1,
                allFactions.empty() ? -1 : int(allFactions.front()->members.size())};
    }
};
} // namespace

TEST_F(UnreadableFiles, ADirectoryInTheFilesPlaceReadsAsAnEmptyFile) {
    // A character whose file cannot be read is there, with what could be read of it: nothing.
    const std::pair<const char*, std::vector<int>> cases[] = {{"", {1, 1, 1, 1, 1, 1, 1}},
                                                              {"items.dat", {0, 1, 1, 1, 1, 1, 1}},
                                                              {"skills.dat", {1, 0, 1, 1, 1, 0, 1}},
                                                              {"characters.idx", {1, 1, 0, 1, 1, -1, 0}},
                                                              {"npcs.idx", {1, 1, 1, 0, 1, 1, 1}},
                                                              {"Mara.chr", {1, 1, 1, 1, 1, 0, 1}},
                                                              {"factions.dat", {1, 1, 1, 1, 0, 1, -1}}};
    for (auto [name, expected] : cases) {
        clearModel();
        for (const auto& entry : std::filesystem::directory_iterator(dir))
            std::filesystem::remove_all(entry.path());
        writeCampaign();
        if (*name) std::filesystem::remove(name), std::filesystem::create_directory(name);
        EXPECT_EQ(loaded(), expected) << name;
    }
    // Saving reads the index: a directory there is no index, and the character is written unlisted.
    std::filesystem::remove_all("characters.idx");
    std::filesystem::create_directory("characters.idx");
    EXPECT_TRUE(saveCharacter(*findCharacter("Mara")));
    EXPECT_EQ(read("Mara.chr"), "[Stats]\nPerception|3|0\n[Health]\n0|0|0\n[Points]\n0|0|0\n[Penalties]\n"
                                "[Inventory]\n[endInventory]\n");
}

// Each reader keeps what came before a buffer that fails, the line cut off by it as a short one, and
// stops there.
TEST_F(UnreadableFiles, EachReaderKeepsWhatCameBeforeABufferThatFailsHalfWay) {
    auto failing = [](const std::string& text, auto read) {
        FailingBuffer buffer(text);
        std::istream in(&buffer);
        read(in);
        EXPECT_TRUE(in.bad()) << text;
    };
    failing("first\nsecond line, cut", [](std::istream& in) {
        std::string line, second;
        EXPECT_TRUE(readLine(in, line) && readLine(in, second) && !readLine(in, line));
        EXPECT_EQ(std::tuple(second, line, peekByte(in)), std::tuple("second line, cut", "", -1));
    });
    failing("[Item]\nRope|3\n[Armor]\nCoat|1|0|2", [](std::istream& in) { loadItems(in); });
    failing("Perception||0\nDodge|Perc", [](std::istream& in) { loadSkills(in); });
    EXPECT_EQ(std::tuple(names(allItems), dynamic_cast<Armor*>(allItems.back())->energy, names(allSkills),
                         parentOf("Dodge")),
              std::tuple(Names{"Rope", "Coat"}, DiceCode(2, 0), Names{"Perception", "Dodge"}, "Perc"));
    Character& mara = person("Mara", {});
    failing("[Stats]\nPerception|3|0\n[Points]\n2|", [&](std::istream& in) { readCharacter(in, mara); });
    failing("[Crew]\nCrew|1|0|0\nMara\nMara", [](std::istream& in) { loadFactions(in); });
    EXPECT_EQ(std::tuple(mara.getSkill("Perception").level, mara.characterPoints, names(allFactions),
                         mara.faction == allFactions.front()),
              std::tuple(DiceCode(3, 0), 2, Names{"Crew"}, true));
    std::unique_ptr<Map> map;
    failing("6|2|1|0|0|back.dds\n1|0|0|0|4|0|1|1|1|1|1|2\n5|0",
            [&](std::istream& in) { map.reset(loadMap(in, "qm2207.map6", nullptr)); });
    std::ostringstream written;
    map->write(written);
    EXPECT_EQ(written.str(), "6|2|1|0|0|back.dds\n1|0|0|0|4|0|1|1|1|1|1|2\n5|0|0|0|0|1|1|1|1|1|1|0\n");
}

TEST_F(UnreadableFiles, AMapOrFontFileThatIsADirectoryGivesNone) {
    for (const char* name : {"qm2207.map6", "verdana.glf"})
        std::filesystem::create_directory(name);
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(loadMap(nullptr), nullptr);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "qm2207.map6: cannot be read\n");
    loadFont();
    EXPECT_FALSE(fontLoaded);
}
