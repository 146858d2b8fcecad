// Items: the difficulty of a shot by distance, ammunition, and the record format that the
// catalogue and the character files share.
#include "model_test.h"

TEST(Weapons, DifficultyRisesThroughEachBracketAndMeleeReachesOneUnit) {
    RangedWeapon gun("Harpoon Pistol", "Pistols", DiceCode(3, 1), 0, {10, 30, 50, 100}, 2);
    std::pair<float, int> cases[] = {{0, 0},   {5, 3},   {9.99f, 5}, {10, 5},   {29, 10}, {30, 10},
                                     {49, 15}, {50, 15}, {99, 20},   {100, -1}, {250, -1}};
    for (auto [distance, difficulty] : cases)
        EXPECT_EQ(gun.getDifficulty(distance), difficulty) << distance;
    Grenade charge("Pressure Charge", "Thrown Weapons", {}, {}, {3, 7, 12, 20}, 0);
    EXPECT_EQ(std::pair(charge.getDifficulty(3), charge.getDifficulty(20)), std::pair(5, -1));
    MeleeWeapon hook("Boat Hook", "Clubs", DiceCode(1, 0), 0, 2, true, DiceCode(5, 0));
    EXPECT_EQ(std::pair(hook.getDifficulty(1), hook.getDifficulty(1.01f)), std::pair(15, -1));
    EXPECT_EQ(unarmedWeapon->getDifficulty(0), 5);
    for (int shot = 0; shot < 3; ++shot)
        gun.use();
    EXPECT_EQ(gun.ammo, 0);
}

TEST(ItemRecords, EveryClassWritesItsFieldsInOrderAndReadsThemBack) {
    auto* gun = new RangedWeapon("Harpoon Pistol", "Pistols", DiceCode(3, 1), 0, {3, 10, 25, 40}, 6);
    gun->ammo = 2;
    std::pair<Item*, const char*> cases[] = {
        {gun, "[Ranged Weapon]\nHarpoon Pistol|Pistols|3|1|0|2|6|3|10|25|40|451\n"},
        {new MeleeWeapon("Shock Baton", "Clubs", DiceCode(3, 0), 1, 2, false, DiceCode(4, 2)),
         "[Melee Weapon]\nShock Baton|Clubs|3|0|0|4|2|1|2|452\n"},
        {new Armor("Salvage Plate", DiceCode(2, 1), DiceCode(1, 0), DiceCode(1, 0)),
         "[Armor]\nSalvage Plate|2|1|1|0|1|0|453\n"},
        {new Grenade("Static Bomb", "Thrown Weapons", {DiceCode(4, 2), 3, 2, 1}, {2, 4, 6, 10},
                     {3, 7, 12, 20}, 1),
         "[Grenade]\nStatic Bomb|Thrown Weapons|4|3|2|1|2|4|6|10|1|3|7|12|20|454\n"},
        {new Item("Rope"), "[Item]\nRope|455\n"}};
    int price = 450;
    for (auto [item, text] : cases) {
        item->price = ++price;
        std::unique_ptr<Item> clone(item->clone());
        delete item;
        std::ostringstream written, again;
        writeItemEntry(written, *clone);
        EXPECT_EQ(written.str(), text);
        std::istringstream in(written.str());
        std::string header;
        std::getline(in, header);
        std::unique_ptr<Item> read(readItemEntry(header, in));
        EXPECT_EQ(typeid(*read), typeid(*clone));
        writeItemEntry(again, *read);
        EXPECT_EQ(again.str(), text) << "blast damage keeps its dice only";
    }
}

TEST(ItemRecords, ShortOrGarbledRecordsGiveZerosAndIndicesHeldToTheirTables) {
    std::istringstream in("Knife|Blades|x2|-1\nClub|Clubs|2|0|1|0|0|7|9|\nSpike|Clubs|2|0|1|0|0|-4|-3|12\n"
                          "Gun|Pistols|99999999999|4|1|5|");
    std::unique_ptr<MeleeWeapon> knife(readMeleeWeapon(in)), club(readMeleeWeapon(in)),
        spike(readMeleeWeapon(in));
    std::unique_ptr<RangedWeapon> gun(readRangedWeapon(in));
    EXPECT_EQ(std::tuple(knife->damage, knife->maxDamage, knife->price),
              std::tuple(DiceCode(0, -1), DiceCode(), 0));
    EXPECT_EQ(std::pair(club->difficulty, club->damageType), std::pair(5, 1));
    EXPECT_EQ(std::pair(spike->difficulty, spike->damageType), std::pair(0, 0));
    EXPECT_EQ(std::tuple(gun->damage, gun->ammo, gun->maxAmmo), std::tuple(DiceCode(INT_MAX, 4), 5, 0));
    EXPECT_EQ(gun->getDifficulty(0), -1) << "all four ranges are 0";
}

class ItemCatalogue : public ModelFileTest {};

TEST_F(ItemCatalogue, LoadsEveryHeaderedRecordOnceAndPassesOverTheRest) {
    loadItems();
    EXPECT_TRUE(allItems.empty());
    write("items.dat",
          "[Item]\r\nRope|12\r\n\n[Armor]\nOilskin Coat|1|0|0|1|0|0|80\nnoise\n\n[Bogus]\nNot an item|3\n"
          "[Grenade]\nStatic Bomb|Thrown Weapons|4|3|2|1|2|4|6|10|1|3|7|12|20|60");
    loadItems();
    ASSERT_EQ(allItems.size(), 3u);
    EXPECT_EQ(std::pair(allItems.front()->name, allItems.front()->price), std::pair(std::string("Rope"), 12));
    EXPECT_EQ(dynamic_cast<Armor&>(**std::next(allItems.begin())).energy, DiceCode(0, 1));
    EXPECT_EQ(dynamic_cast<Grenade&>(*allItems.back()).price, 60);
}
