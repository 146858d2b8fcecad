// Character files and their index files: the written format, index handling, and files that are
// missing, truncated or garbled. Full characters make their round trip in the campaign test.
#include "model_test.h"
#include "rules/character_files.h"
#include "rules/field_reader.h"

#include <functional>
#include <map>
#include <set>

#include <sys/wait.h>
#include <unistd.h>

class CharacterFiles : public ModelFileTest {
  protected:
    // What the readers made of a campaign: the items as the writer writes them, the skills with their
    // parents, the factions with their members, the NPCs, and the character X as saved.
    static std::string loaded() {
        std::ostringstream out;
        for (const Item* i : allItems)
            writeItemEntry(out, *i);
        out << "skills:";
        for (const Skill* s : allSkills)
            out << " " << s->name << "<" << parentOf(s->name) << ">";
        out << "\nfactions:";
        for (const Faction* f : allFactions)
            out << " " << f->name << "(" << f->members.size() << ")";
        out << "\nnpcs: " << allNpcs.size() << "\n";
        Character* x = findCharacter("X");
        if (x && saveCharacter(*x)) out << read("X.chr");
        return out.str();
    }
};

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

// The kept malformed files, each read as every kind of data file at once, give what the readers
// must make of them. Where that departs from reading the fields as they stand, it is a decision of
// the team that the check guards: a line is cut at maxLineLength, a number saturates at the int
// range, a melee difficulty and a damage type are held to their tables. What the readers gave
// survives a save and a second reading unchanged.
TEST_F(CharacterFiles, KeptMalformedInputsGiveWhatTheReadersMustMakeOfThem) {
    const std::string grenade = "||0|0|0|0|0|0|0|0|0|0|0|0|0|0\n", a(maxLineLength, 'A'),
                      b(maxLineLength, 'B');
    const std::string empty = "[Health]\n0|0|0\n[Points]\n0|0|0\n[Penalties]\n[Inventory]\n";
    const std::map<std::string, std::string> expected = {
        {"headers_only.txt",
         "[Item]\n[Ranged Weapon]|0\n[Melee Weapon]\n[Armor]||0|0|0|0|0|0|0|0\n[Grenade]\n[Stats]" + grenade +
             "[Grenade]\n[Item]" + grenade +
             "skills: [Item]<> [Ranged Weapon]<> [Melee Weapon]<> [Armor]<> [Grenade]<> [Stats]<> [Health]<> "
             "[Points]<> [Penalties]<> [Inventory]<> [Grenade]<> [Item]<>\n"
             "factions: [Ranged Weapon](0) [Armor](0) [Stats](0) [Points](0) [Inventory](0) [Item](0)\n"
             "npcs: 0\n[Stats]\n" +
             empty + "[Grenade]\n[Item]" + grenade + "0\n[endInventory]\n"},
        {"huge_numbers.txt",
         "[Ranged Weapon]\nGun|Strength|2147483647|2147483647|0|2147483647|-5|2147483647|-2147483648|0|-1|1\n"
         "[Grenade]\nBomb|Strength|-2147483648|2147483647|0|0|0|0|0|0|0|-2147483648|2147483647|-1|2147483647|"
         "5\n"
         "[Melee Weapon]\nClub|Strength|2147483647|-2147483648|1|2147483647|2147483647|1|0|1\n"
         "[Ranged Weapon]\nGun|Strength|2147483647|2147483647|1|2147483647|-5|-2147483648|2147483647|0|-1|1\n"
         "skills: Strength<2147483647> [Ranged Weapon]<> Gun<Strength> [Grenade]<> Bomb<Strength> "
         "[Melee Weapon]<> Club<Strength> [Stats]<> Strength<2147483647> [Health]<> 3<2147483647> "
         "[Penalties]<> All<2147483647> [Inventory]<> [Ranged Weapon]<> Gun<Strength> 1<> [endInventory]<>\n"
         "factions: [Ranged Weapon](0) Bomb(0) Club(0) Strength(0) 3(0) All(0) [Ranged Weapon](0)\nnpcs: 0\n"
         "[Stats]\nStrength|2147483647|2147483647\n[Health]\n3|2147483647|-2147483648\n[Points]\n0|0|0\n"
         "[Penalties]\nAll|2147483647|-2147483648|-2147483648|All\n[Inventory]\n[Ranged Weapon]\n"
         "Gun|Strength|2147483647|2147483647|1|2147483647|-5|-2147483648|2147483647|0|-1|1\n1\n"
         "[endInventory]\n"},
        {"long_lines.txt", "[Item]\n" + b + "|0\nskills: [Stats]<> " + a + "<> Strength<" +
                               std::string(5000, '9') + "> [Inventory]<> [Item]<> " + b +
                               "<> 1<> [endInventory]<>\nfactions: " + a +
                               "(0) [Item](0)\nnpcs: 0\n[Stats]\n" + a + "|0|0\nStrength|2147483647|2\n" +
                               empty + "[Item]\n" + b + "|0\n0\n[endInventory]\n"},
        {"truncated.chr",
         "[Ranged Weapon]\nHarpoon Pistol|Pistols|3|1|0|2|0|0|0|0|0|0\n"
         "skills: [Stats]<> Strength<3> Dexterity<2> [Health]<> 2<1> [Inventory]<> "
         "[Ranged Weapon]<> Harpoon Pistol<Pistols>\n"
         "factions: Strength(0) 2(0) [Ranged Weapon](0)\nnpcs: 0\n"
         "[Stats]\nStrength|3|1\nDexterity|2|0\n[Health]\n2|1|0\n[Points]\n0|0|0\n[Penalties]\n"
         "[Inventory]\n[Ranged Weapon]\nHarpoon Pistol|Pistols|3|1|0|2|0|0|0|0|0|0\n0\n"
         "[endInventory]\n"}};
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(HEXFOLD_TEST_DATA "/malformed")) {
        std::string name = entry.path().filename().string();
        SCOPED_TRACE(name);
        clearModel();
        std::string bytes = read(entry.path().string());
        for (const char* file : {"skills.dat", "items.dat", "factions.dat", "npcs.idx", "X.chr", "X.npc"})
            write(file, bytes);
        write("characters.idx", bytes + "\nX\n");
        loadItems(), loadSkills(), loadCharacters(), loadFactions();
        std::string summary = loaded();
        // Random bytes give what they give; the decisions hold for them too.
        if (expected.count(name)) {
            ++files;
            EXPECT_TRUE(summary == expected.at(name)) << summary;
        }
        for (const Item* i : allItems) {
            auto* w = dynamic_cast<const Weapon*>(i);
            auto* m = dynamic_cast<const MeleeWeapon*>(i);
            EXPECT_TRUE((!w || w->damageType == 0 || w->damageType == 1) &&
                        (!m || (m->difficulty >= 0 && m->difficulty <= 5)));
        }
        ASSERT_NE(findCharacter("X"), nullptr) << "the index is read past any bytes";
        EXPECT_TRUE(findCharacter("X")->health >= Healthy && findCharacter("X")->health <= Stunned);
        clearCharacters();
        write("characters.idx", "X\n");
        loadCharacters();
        std::string again = loaded();
        EXPECT_TRUE(again.substr(again.find("npcs:")) == summary.substr(summary.find("npcs:")));
        // The rules take the extreme values without overflowing.
        findCharacter("X")->takeDamage(2);
        findCharacter("X")->update(1);
        EXPECT_GE(findCharacter("X")->stuns, 0);
    }
    EXPECT_EQ(files, 4);
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
