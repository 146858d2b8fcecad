// Character files and their index files: the written format, round trips, index handling, and
// files that are missing, truncated or garbled.
#include "model_test.h"
#include "rules/character_files.h"
#include "rules/field_reader.h"

namespace {
const char* const savedMara = "[Stats]\nDexterity|3|1\nPistols|4|0\n[Health]\n1|1|0\n[Points]\n5|1|0\n"
                              "[Penalties]\nWound|1|0|5|All\nStun Effect|0|0|360|All\n[Inventory]\n"
                              "[Ranged Weapon]\nHarpoon Pistol|Pistols|3|1|0|2|6|3|10|25|40|450\n1\n"
                              "[Melee Weapon]\nBoat Hook|Clubs|1|0|1|5|0|0|1|30\n0\n"
                              "[Armor]\nSalvage Plate|2|0|1|0|1|0|900\n1\n"
                              "[Grenade]\nStatic Bomb|Thrown Weapons|4|3|2|1|2|4|6|10|1|3|7|12|20|60\n0\n"
                              "[Item]\nRope|12\n0\n[endInventory]\n";
} // namespace

class CharacterFiles : public ModelFileTest {
  protected:
    void SetUp() override {
        ModelFileTest::SetUp();
        write("skills.dat", "Dexterity||0\nPistols|Dexterity|1\nPerception||0\n");
        loadSkills();
    }
};

TEST_F(CharacterFiles, AFullCharacterSurvivesLoadAndSaveByteForByte) {
    write("characters.idx", "Mara Vell\n");
    write("Mara Vell.chr", savedMara);
    loadCharacters();
    ASSERT_EQ(allCharacters.size(), 1u);
    Character& c = *allCharacters.front();
    EXPECT_EQ(std::tuple(c.health, c.stuns, c.characterPoints, c.forcePoints), std::tuple(1, 1, 5, 1));
    ASSERT_EQ(countReason(c, "Wound"), 1) << "wounds come from the file, not from the health line";
    EXPECT_EQ(c.penalties.front()->duration, 5);
    EXPECT_EQ(countReason(c, "Armor"), 1);
    EXPECT_EQ(std::pair(c.armor->name, c.weapon->name),
              std::pair(std::string("Salvage Plate"), std::string("Harpoon Pistol")));
    EXPECT_EQ(static_cast<RangedWeapon*>(c.weapon)->ammo, 2);
    EXPECT_EQ(effectiveCode(c, "Pistols"), DiceCode(2, 0));
    c.move = 7;
    saveCharacter(c);
    EXPECT_EQ(read("Mara Vell.chr"), savedMara);
    EXPECT_EQ(countReason(c, "Armor"), 1) << "the armor is worn again after the save";
    EXPECT_EQ(read("characters.idx"), "Mara Vell\n");
    EXPECT_FALSE(std::filesystem::exists("Mara Vell.chr.saving"));
    clearCharacters();
    loadCharacters();
    EXPECT_EQ(allCharacters.front()->move, 10);
}

TEST_F(CharacterFiles, SavingListsANewNameOnceAndOnlyInAnExistingIndex) {
    write("characters.idx", "Tobin Greaves");
    write("npcs.idx", "Reef Hound\r\n");
    Character &juno = *new Character(false), &hound = *new Character(true);
    juno.name = "Juno Marrow";
    hound.name = "Reef Hound";
    saveCharacter(juno);
    saveCharacter(juno);
    saveCharacter(hound);
    EXPECT_EQ(read("characters.idx") + read("npcs.idx"), "Tobin Greaves\nJuno Marrow\nReef Hound\r\n");
    EXPECT_EQ(read("Reef Hound.npc"),
              "[Stats]\n[Health]\n0|0|0\n[Points]\n0|0|0\n[Penalties]\n[Inventory]\n[endInventory]\n");
    std::filesystem::remove("characters.idx");
    juno.name = "Iselde Quay";
    saveCharacter(juno);
    EXPECT_TRUE(!std::filesystem::exists("characters.idx") && std::filesystem::exists("Iselde Quay.chr"));
}

TEST_F(CharacterFiles, IndexesMayNameMissingFilesAndCarryCarriageReturns) {
    write("Mara Vell.chr", "[Stats]\nDexterity|3|1\n");
    write("Tobin Greaves.chr", "[Points]\n2|0|1\n");
    write("Reef Hound.npc", "[Stats]\r\nPerception|2|0\r\n[Health]\r\n6|0|0\r\n");
    write("characters.idx", "Ghost\nMara Vell\r\n\nTobin Greaves");
    write("npcs.idx", "Reef Hound\n");
    loadCharacters();
    ASSERT_EQ(std::pair(allCharacters.size(), allNpcs.size()), std::pair(2ul, 1ul));
    EXPECT_EQ(allCharacters.front()->getSkill("Pistols").level, DiceCode(3, 1));
    EXPECT_EQ(
        std::tuple(allCharacters.back()->darkSidePoints, allNpcs.front()->isNpc, allNpcs.front()->health),
        std::tuple(1, true, 6));
    clearCharacters();
    std::filesystem::remove("characters.idx");
    loadCharacters();
    EXPECT_TRUE(allNpcs.empty()) << "without characters.idx no NPC is loaded either";
}

TEST_F(CharacterFiles, OddInventoriesAndTruncatedSectionsLoadWhatTheySay) {
    write("Odd.chr",
          "[Stats]\nUnknown Skill|3|0\nPerception|4\n[Inventory]\n[Item]\nRope|12\n1\n"
          "[Armor]\nCoat|1|0|0|0|1|0|5\n1\n[Armor]\nPlate|2|0|1|0|1|0|9\n1\n[Melee Weapon]\nKnife\n"
          "[Points]\n3|3|3\n[Health]\n99|2\n[Penalties]\nGrazed\n");
    Character* c = loadCharacter("Odd", false);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(std::pair(c->skills.size(), c->getSkill("Perception").level), std::pair(1ul, DiceCode(4, 0)));
    EXPECT_EQ(std::pair(c->inventory.size(), c->armor->name), std::pair(4ul, std::string("Plate")));
    EXPECT_EQ(countReason(*c, "Armor"), 1);
    EXPECT_EQ(c->weapon, unarmedWeapon) << "the knife took the header as its flag line";
    EXPECT_EQ(c->characterPoints, 0) << "and so the points section was lost";
    EXPECT_EQ(std::pair(c->health, c->stuns), std::pair(0, 2))
        << "a health that is no state reads as healthy";
    EXPECT_EQ(std::pair(c->penalties.back()->reason, c->penalties.back()->duration),
              std::pair(std::string("Grazed"), 0));
}

TEST_F(CharacterFiles, KeptMalformedInputsNeverBreakAReader) {
    for (const auto& entry : std::filesystem::directory_iterator(HEXFOLD_TEST_DATA "/malformed")) {
        SCOPED_TRACE(entry.path().string());
        clearModel();
        std::string bytes = read(entry.path().string());
        for (const char* name : {"skills.dat", "items.dat", "factions.dat", "npcs.idx", "X.chr", "X.npc"})
            write(name, bytes);
        write("characters.idx", bytes + "\nX\n");
        loadItems();
        loadSkills();
        loadCharacters();
        loadFactions();
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
