// Items: the difficulty of a shot by distance, ammunition, the record format that the catalogue
// and the character files share, and the catalogues of items and skills.
#include "model_test.h"

TEST(Weapons, DifficultyRisesThroughEachBracketAndMeleeReachesOneUnit) {
    RangedWeapon gun("Harpoon Pistol", "Pistols", DiceCode(3, 1), 0, {10, 30, 50, 100}, 2);
    std::pair<float, int> cases[] = {{0, 0},   {5, 3},   {9.99f, 5}, {10, 5},   {29, 10}, {30, 10},
                                     {49, 15}, {50, 15}, {99, 20},   {100, -1}, {250, -1}};
    for (auto [distance, difficulty] : cases)
        EXPECT_EQ(gun.getDifficulty(distance), difficulty) << distance;
    Grenade charge("Pressure Charge", "Thrown Weapons", {}, {}, {3, 7, 12, 20}, 0);
    MeleeWeapon hook("Boat Hook", "Clubs", DiceCode(1, 0), 0, 2, true, DiceCode(5, 0));
    EXPECT_EQ(std::tuple(charge.getDifficulty(3), charge.getDifficulty(20), hook.getDifficulty(1),
                         hook.getDifficulty(1.01f), unarmedWeapon->getDifficulty(0)),
              std::tuple(5, -1, 15, -1, 5));
    for (int shot = 0; shot < 3; ++shot)
        gun.use();
    EXPECT_EQ(gun.ammo, 0);
}

class Catalogues : public ModelFileTest {};

// Every class writes its fields in order and reads them back from items.dat, where other lines are
// passed over, short or garbled records give zeros, and indices are held to their tables.
TEST_F(Catalogues, ItemsOfEveryClassMakeTheRoundTripAndGarbledOnesLoadAsZeros) {
    auto* gun = new RangedWeapon("Harpoon Pistol", "Pistols", DiceCode(3, 1), 0, {3, 10, 25, 40}, 6);
    gun->ammo = 2;
    const std::string records =
        "[Ranged Weapon]\nHarpoon Pistol|Pistols|3|1|0|2|6|3|10|25|40|0\n"
        "[Melee Weapon]\nShock Baton|Clubs|3|0|0|4|2|1|2|0\n[Armor]\nSalvage Plate|2|1|1|0|1|0|0\n"
        "[Grenade]\nStatic Bomb|Thrown Weapons|4|3|2|1|2|4|6|10|1|3|7|12|20|0\n[Item]\nRope|0\n";
    std::ostringstream written, again;
    for (Item* item : std::initializer_list<Item*>{
             gun, new MeleeWeapon("Shock Baton", "Clubs", DiceCode(3, 0), 1, 2, false, DiceCode(4, 2)),
             new Armor("Salvage Plate", DiceCode(2, 1), DiceCode(1, 0), DiceCode(1, 0)),
             new Grenade("Static Bomb", "Thrown Weapons", {DiceCode(4, 2), 3, 2, 1}, {2, 4, 6, 10},
                         {3, 7, 12, 20}, 1),
             new Item("Rope")}) {
        std::unique_ptr<Item> original(item), clone(item->clone());
        writeItemEntry(written, *clone);
    }
    EXPECT_EQ(written.str(), records) << "blast damage keeps its dice only";
    write("items.dat", written.str() + "noise\n\n[Bogus]\nNot an item|3\n[Item]\r\nLamp|12\r\n"
                                       "[Melee Weapon]\nKnife|Blades|x2|-1\n"
                                       "[Melee Weapon]\nClub|Clubs|2|0|1|0|0|7|9|\n"
                                       "[Melee Weapon]\nSpike|Clubs|2|0|1|0|0|-4|-3|12\n"
                                       "[Ranged Weapon]\nGun|Pistols|99999999999|4|1|5|");
    loadItems();
    for (const Item* i : allItems)
        writeItemEntry(again, *i);
    EXPECT_EQ(again.str(), records + "[Item]\nLamp|12\n[Melee Weapon]\nKnife|Blades|0|-1|0|0|0|0|0|0\n"
                                     "[Melee Weapon]\nClub|Clubs|2|0|1|0|0|1|5|0\n"
                                     "[Melee Weapon]\nSpike|Clubs|2|0|1|0|0|0|0|12\n"
                                     "[Ranged Weapon]\nGun|Pistols|2147483647|4|1|5|0|0|0|0|0|0\n");
}

// A line that starts with a character not above "0" ends skills.dat.
TEST_F(Catalogues, SkillsReadUntilAnEndLineAndClimbTheirTree) {
    write("skills.dat",
          "Dexterity||1\r\nDodge|Dexterity|\n1st Aid|Technical|5\nRunning|Dexterity\r\n"
          "Dodge|Perception|9\nSprint|Running|0\nUp|Down|0\nDown|Up|0\nSelf|Self|0\n\nHidden||1\n");
    loadSkills();
    EXPECT_EQ(names(allSkills),
              (Names{"Dexterity", "Dodge", "1st Aid", "Running", "Dodge", "Sprint", "Up", "Down", "Self"}));
    EXPECT_EQ(parentOf("Dodge"), "Perception") << "the last duplicate gives the parent";
    EXPECT_TRUE(descendsFrom("Sprint", "Dexterity") && descendsFrom("Sprint", "Sprint"));
    EXPECT_FALSE(descendsFrom("Dexterity", "Sprint") || descendsFrom("Up", "Dexterity") ||
                 descendsFrom("Self", "x") || descendsFrom("x", "Dexterity"));
    for (const char* text : {" Dexterity||1\n", "0Dexterity||1\n", "", "Strength||2"}) {
        clearSkills();
        write("skills.dat", text);
        loadSkills();
        EXPECT_EQ(allSkills.size(), text[0] == 'S' ? 1u : 0u) << text;
    }
}
