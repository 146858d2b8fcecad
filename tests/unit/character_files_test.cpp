// Character files and their index files: the written format, index handling, and files that are
// missing, truncated or garbled. Full characters make their round trip in the campaign test.
#include "model_test.h"
#include "rules/character_files.h"
#include "rules/field_reader.h"

#include <functional>
#include <set>

#include <sys/wait.h>
#include <unistd.h>

class CharacterFiles : public ModelFileTest {};

// An index may name a missing file; a new name is listed once, after a last line that lacked its end.
// The odd file has an unknown skill, two worn armors, a melee record cut short that takes the next
// header as its flag line (so the points are lost), and a health that is no state.
TEST_F(CharacterFiles, IndexesListANameOnceAndTruncatedSectionsLoadWhatTheySay) {
    write("Odd.chr",
          "[Stats]\nUnknown Skill|3|0\nPerception|4\n[Inventory]\n[Armor]\nCoat|1|0|0|0|1|0|5\n1\n"
          "[Armor]\nPlate|2|0|1|0|1|0|9\n1\n[Melee Weapon]\nKnife\n[Points]\n3|3|3\n[Health]\n99|2\n");
    write("skills.dat", "Perception||0\n");
    loadSkills();
    write("Reef Hound.npc", "[Stats]\r\nPerception|2|0\r\n[Health]\r\n6|0|0\r\n");
    write("characters.idx", "Ghost\nOdd\r\n\nTobin Greaves");
    write("npcs.idx", "Reef Hound\r\n");
    loadCharacters();
    ASSERT_EQ(std::pair(names(allCharacters), names(allNpcs)), std::pair(Names{"Odd"}, Names{"Reef Hound"}));
    Character& odd = *allCharacters.front();
    EXPECT_EQ(std::tuple(odd.skills.size(), odd.armor->name, countReason(odd, "Armor"), odd.weapon),
              std::tuple(1ul, "Plate", 1, unarmedWeapon));
    EXPECT_EQ(std::tuple(odd.characterPoints, odd.health, odd.stuns), std::tuple(0, 0, 2));
    Character& juno = person("Juno Marrow", {});
    for (Character* c : {&juno, &juno, allNpcs.front()})
        saveCharacter(*c);
    EXPECT_EQ(read("characters.idx") + read("npcs.idx"),
              "Ghost\nOdd\r\n\nTobin Greaves\nJuno Marrow\nReef Hound\r\n");
    EXPECT_EQ(read("Reef Hound.npc"),
              "[Stats]\nPerception|2|0\n[Health]\n6|0|0\n[Points]\n0|0|0\n[Penalties]\n"
              "[Inventory]\n[endInventory]\n");
    clearCharacters();
    std::filesystem::remove("characters.idx");
    loadCharacters();
    saveCharacter(person("Iselde Quay", {}));
    EXPECT_TRUE(allNpcs.empty()) << "without characters.idx no NPC is loaded either";
    EXPECT_TRUE(!std::filesystem::exists("characters.idx") && std::filesystem::exists("Iselde Quay.chr"));
}

TEST_F(CharacterFiles, KeptMalformedInputsNeverBreakAReader) {
    for (const auto& entry : std::filesystem::directory_iterator(HEXFOLD_TEST_DATA "/malformed")) {
        SCOPED_TRACE(entry.path().string());
        clearModel();
        std::string bytes = read(entry.path().string());
        for (const char* name : {"skills.dat", "items.dat", "factions.dat", "npcs.idx", "X.chr", "X.npc"})
            write(name, bytes);
        write("characters.idx", bytes + "\nX\n");
        loadItems(), loadSkills(), loadCharacters(), loadFactions();
        ASSERT_NE(findCharacter("X"), nullptr);
        for (Item* i : allItems)
            EXPECT_TRUE(!dynamic_cast<Weapon*>(i) || dynamic_cast<Weapon*>(i)->getDifficulty(1e9f) >= -1);
        for (Character* c : allCharacters) {
            for (const Skill* s : c->skills)
                EXPECT_LE(s->name.size(), maxLineLength);
            c->takeDamage(2);
            c->update(1);
            saveCharacter(*c);
        }
    }
}

namespace {
// Runs f in a child process that the file permissions hold, as nobody when the tests run as root;
// f's result is the child's exit status.
int asUnprivileged(const std::function<int()>& f) {
    pid_t pid = fork();
    if (pid == 0) {
        if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) _exit(99);
        _exit(f());
    }
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::set<std::string> filesIn(const std::filesystem::path& dir) {
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(dir))
        files.insert(entry.path().filename().string());
    return files;
}
} // namespace

// A save writes the whole file and then lists the name, or changes nothing and says why: a name
// too long for the file system, a directory that may not be written. A link is written through.
TEST_F(CharacterFiles, ASaveIsAllOrNothingAndWritesThroughALink) {
    write("characters.idx", "Mara\n");
    std::string failure;
    for (std::size_t length : {1, 200, 255}) {
        std::string name(length, 'n');
        // With ".chr" the longest makes 259 bytes, more than a file name may have.
        EXPECT_EQ(saveCharacter(person(name, {}), &failure), length < 255) << length;
    }
    const std::string longName(255, 'n');
    EXPECT_EQ(failure, "cannot write \"" + longName + ".chr\": File name too long");
    EXPECT_EQ(read("characters.idx"), "Mara\nn\n" + std::string(200, 'n') + "\n");
    EXPECT_EQ(filesIn(dir),
              (std::set<std::string>{"characters.idx", "n.chr", std::string(200, 'n') + ".chr"}));

    // The index may be written, the directory not: no file can be made beside it.
    Character& juno = person("Juno", {});
    std::filesystem::permissions("characters.idx", std::filesystem::perms(0666));
    std::filesystem::permissions(dir, std::filesystem::perms(0555));
    int result = asUnprivileged([&] {
        std::string why;
        return !saveCharacter(juno, &why) && why == "cannot write \"Juno.chr\": Permission denied" ? 0 : 1;
    });
    std::filesystem::permissions(dir, std::filesystem::perms(0700));
    EXPECT_EQ(result, 0);
    EXPECT_EQ(read("characters.idx"), "Mara\nn\n" + std::string(200, 'n') + "\n");
    EXPECT_FALSE(std::filesystem::exists("Juno.chr"));

    std::filesystem::create_directory("sheets");
    write("sheets/Mara.chr", "old");
    std::filesystem::create_symlink("sheets/Mara.chr", "Mara.chr");
    Character& mara = person("Mara", {});
    mara.characterPoints = 4;
    EXPECT_TRUE(saveCharacter(mara));
    EXPECT_TRUE(std::filesystem::is_symlink("Mara.chr"));
    EXPECT_EQ(read("sheets/Mara.chr"), "[Stats]\n[Health]\n0|0|0\n[Points]\n4|0|0\n[Penalties]\n"
                                       "[Inventory]\n[endInventory]\n");
    EXPECT_EQ(filesIn("sheets"), std::set<std::string>{"Mara.chr"});
}
