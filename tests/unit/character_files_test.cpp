// Character files and their index files: the written format, round trips, index handling, and
// files that are missing, truncated or garbled.
#include "model_test.h"
#include "rules/character_files.h"
#include "rules/field_reader.h"

#include <gtest/gtest.h>

namespace {
int countReason(const Character& c, const std::string& reason) {
    int n = 0;
    for (const Penalty* p : c.penalties)
        n += p->reason == reason;
    return n;
}

const char* const savedMara = "[Stats]\n"
                              "Dexterity|3|1\n"
                              "Pistols|4|0\n"
                              "Strength|2|2\n"
                              "[Health]\n"
                              "1|1|0\n"
                              "[Points]\n"
                              "5|1|0\n"
                              "[Penalties]\n"
                              "Wound|1|0|5|All\n"
                              "Stun Effect|0|0|360|All\n"
                              "[Inventory]\n"
                              "[Ranged Weapon]\n"
                              "Harpoon Pistol|Pistols|3|1|0|2|6|3|10|25|40|450\n"
                              "1\n"
                              "[Melee Weapon]\n"
                              "Boat Hook|Clubs|1|0|1|5|0|0|1|30\n"
                              "0\n"
                              "[Armor]\n"
                              "Salvage Plate|2|0|1|0|1|0|900\n"
                              "1\n"
                              "[Grenade]\n"
                              "Static Bomb|Thrown Weapons|4|3|2|1|2|4|6|10|1|3|7|12|20|60\n"
                              "0\n"
                              "[Item]\n"
                              "Rope|12\n"
                              "0\n"
                              "[endInventory]\n";
} // namespace

class CharacterFiles : public ModelFileTest {
  protected:
    void SetUp() override {
        ModelFileTest::SetUp();
        write("skills.dat", "Dexterity||0\nPistols|Dexterity|1\nStrength||0\nPerception||0\n");
        loadSkills();
    }
    Character* mara() {
        auto* c = new Character(false);
        c->name = "Mara Vell";
        c->addSkill(makeSkill("Dexterity", 3, 1));
        c->addSkill(makeSkill("Pistols", 4, 0));
        c->addSkill(makeSkill("Strength", 2, 2));
        c->characterPoints = 5;
        c->forcePoints = 1;
        c->setHealth(Wounded);
        c->penalties.front()->duration = 5;
        c->addPenalty(new Penalty("Stun Effect", DiceCode(), 360, "All"));
        c->stuns = 1;
        std::istringstream items(std::string(savedMara).substr(std::string(savedMara).find("[Ranged")));
        std::string line;
        while (std::getline(items, line))
            if (Item* i = readItemEntry(line, items)) {
                c->addItem(i);
                std::getline(items, line);
            }
        c->equip(c->inventory.front());
        c->equip(*std::next(c->inventory.begin(), 2));
        c->move = 7;
        return c;
    }
};

TEST_F(CharacterFiles, AFullCharacterSurvivesSaveAndLoadAndSavesIdentically) {
    write("characters.idx", "");
    Character* original = mara();
    ASSERT_EQ(countReason(*original, "Armor"), 1);
    saveCharacter(*original);
    EXPECT_EQ(read("Mara Vell.chr"), savedMara);
    EXPECT_EQ(read("characters.idx"), "Mara Vell\n");
    EXPECT_EQ(countReason(*original, "Armor"), 1) << "the armor is worn again after the save";
    EXPECT_EQ(original->armor->name, "Salvage Plate");
    EXPECT_FALSE(std::filesystem::exists("Mara Vell.chr.saving"));
    delete original;

    loadCharacters();
    ASSERT_EQ(allCharacters.size(), 1u);
    Character& c = *allCharacters.front();
    EXPECT_EQ(c.health, Wounded);
    EXPECT_EQ(c.stuns, 1);
    EXPECT_EQ(c.move, 10);
    EXPECT_EQ(c.characterPoints, 5);
    ASSERT_EQ(countReason(c, "Wound"), 1);
    EXPECT_EQ(c.penalties.front()->duration, 5);
    EXPECT_EQ(countReason(c, "Armor"), 1);
    EXPECT_EQ(c.armor->name, "Salvage Plate");
    ASSERT_EQ(c.weapon->name, "Harpoon Pistol");
    EXPECT_EQ(static_cast<RangedWeapon*>(c.weapon)->ammo, 2);
    EXPECT_EQ(effectiveCode(c, "Pistols"), DiceCode(2, 0));
    saveCharacter(c);
    EXPECT_EQ(read("Mara Vell.chr"), savedMara);
    EXPECT_EQ(read("characters.idx"), "Mara Vell\n");
}

TEST_F(CharacterFiles, SavingListsANewNameOnceAndOnlyInAnExistingIndex) {
    write("characters.idx", "Tobin Greaves");
    write("npcs.idx", "Reef Hound\r\n");
    Character* c = mara();
    saveCharacter(*c);
    saveCharacter(*c);
    EXPECT_EQ(read("characters.idx"), "Tobin Greaves\nMara Vell\n");
    auto* hound = new Character(true);
    hound->name = "Reef Hound";
    saveCharacter(*hound);
    EXPECT_EQ(read("npcs.idx"), "Reef Hound\r\n");
    EXPECT_TRUE(std::filesystem::exists("Reef Hound.npc"));

    std::filesystem::remove("characters.idx");
    c->name = "Juno Marrow";
    saveCharacter(*c);
    EXPECT_FALSE(std::filesystem::exists("characters.idx"));
    EXPECT_TRUE(std::filesystem::exists("Juno Marrow.chr"));
    c->name = "no such dir/Juno";
    saveCharacter(*c);
    EXPECT_EQ(countReason(*c, "Armor"), 1) << "a failed save leaves the character as it was";
}

TEST_F(CharacterFiles, IndexesMayNameMissingFilesAndCarryCarriageReturns) {
    write("Mara Vell.chr", "[Stats]\nDexterity|3|1\n");
    write("Tobin Greaves.chr", "[Points]\n2|0|1\n");
    write("Reef Hound.npc", "[Stats]\r\nPerception|2|0\r\n[Health]\r\n6|0|0\r\n");
    write("characters.idx", "Ghost\nMara Vell\r\n\nTobin Greaves");
    write("npcs.idx", "Reef Hound\n");
    loadCharacters();
    ASSERT_EQ(allCharacters.size(), 2u);
    EXPECT_EQ(allCharacters.front()->getSkill("Pistols").level, DiceCode(3, 1));
    EXPECT_EQ(allCharacters.back()->darkSidePoints, 1);
    ASSERT_EQ(allNpcs.size(), 1u);
    EXPECT_TRUE(allNpcs.front()->isNpc);
    EXPECT_EQ(allNpcs.front()->getSkill("Perception").level, DiceCode(2, 0));
    EXPECT_EQ(allNpcs.front()->health, Stunned);

    clearCharacters();
    std::filesystem::remove("characters.idx");
    loadCharacters();
    EXPECT_TRUE(allNpcs.empty()) << "without characters.idx no NPC is loaded either";
    EXPECT_EQ(loadCharacter("Ghost", false), nullptr);
}

TEST_F(CharacterFiles, OddInventoriesAndTruncatedFilesLoadWhatTheySay) {
    write("Odd.chr",
          "[Stats]\nUnknown Skill|3|0\nStrength|4\n[Inventory]\n[Item]\nRope|12\n1\n"
          "[Armor]\nCoat|1|0|0|0|1|0|5\n1\n[Armor]\nPlate|2|0|1|0|1|0|9\n1\n[Melee Weapon]\nKnife\n"
          "[Points]\n3|3|3\n[Health]\n99|2\n[Penalties]\nGrazed\n");
    Character* c = loadCharacter("Odd", false);
    ASSERT_NE(c, nullptr);
    ASSERT_EQ(c->skills.size(), 1u);
    EXPECT_EQ(c->getSkill("Strength").level, DiceCode(4, 0));
    ASSERT_EQ(c->inventory.size(), 4u);
    EXPECT_EQ(c->armor->name, "Plate");
    EXPECT_EQ(countReason(*c, "Armor"), 1);
    EXPECT_EQ(c->weapon, unarmedWeapon);
    EXPECT_EQ(c->characterPoints, 0)
        << "the knife took the header as its flag line, and its section was lost";
    EXPECT_EQ(c->health, Healthy);
    EXPECT_EQ(c->stuns, 2);
    EXPECT_EQ(c->penalties.back()->reason, "Grazed");
    EXPECT_EQ(c->penalties.back()->duration, 0);
}

TEST_F(CharacterFiles, KeptMalformedInputsNeverBreakAReader) {
    const char* names[] = {"skills.dat", "items.dat", "factions.dat", "characters.idx",
                           "npcs.idx",   "X.chr",     "X.npc"};
    for (const auto& entry : std::filesystem::directory_iterator(HEXFOLD_TEST_DATA "/malformed")) {
        clearModel();
        std::string bytes = read(entry.path().string());
        for (const char* name : names)
            write(name, bytes);
        write("characters.idx", bytes + "\nX\n");
        loadItems();
        loadSkills();
        loadCharacters();
        loadFactions();
        ASSERT_NE(findCharacter("X"), nullptr) << entry.path();
        for (Item* i : allItems) {
            auto* w = dynamic_cast<Weapon*>(i);
            for (float d : {0.0f, 5.0f, -3.0f, 1e9f})
                EXPECT_TRUE(!w || w->getDifficulty(d) >= -1000000);
        }
        for (Character* c : allCharacters) {
            for (const Skill* s : c->skills)
                EXPECT_LE(s->name.size(), maxLineLength);
            effectiveCode(*c, "Strength");
            c->takeDamage(2);
            c->update(1);
            saveCharacter(*c);
        }
    }
}
