// Items: the difficulty of a shot by distance, ammunition, clones, and the record format that the
// catalogue and the character files share.
#include "model_test.h"
#include "rules/item.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {
RangedWeapon pistol() {
    RangedWeapon w("Harpoon Pistol", "Pistols", DiceCode(3, 1), 0, {10, 30, 50, 100}, 6);
    w.ammo = 2;
    w.price = 450;
    return w;
}

// Writes the item with its header, reads it back, and checks that a second write is identical.
template <class T> T* roundTrip(const Item& item) {
    std::ostringstream first, second;
    writeItemEntry(first, item);
    std::istringstream in(first.str());
    std::string header;
    std::getline(in, header);
    Item* read = readItemEntry(header, in);
    EXPECT_NE(dynamic_cast<T*>(read), nullptr) << first.str();
    writeItemEntry(second, *read);
    EXPECT_EQ(first.str(), second.str());
    return dynamic_cast<T*>(read);
}
} // namespace

TEST(Weapons, DifficultyRisesThroughEachBracket) {
    RangedWeapon gun = pistol();
    std::pair<float, int> cases[] = {{0, 0},   {5, 3},   {9.99f, 5}, {10, 5},   {29, 10}, {30, 10},
                                     {49, 15}, {50, 15}, {99, 20},   {100, -1}, {250, -1}};
    for (auto [distance, difficulty] : cases)
        EXPECT_EQ(gun.getDifficulty(distance), difficulty) << distance;

    Grenade charge("Pressure Charge", "Thrown Weapons", {}, {}, {3, 7, 12, 20}, 0);
    EXPECT_EQ(charge.getDifficulty(0), 0);
    EXPECT_EQ(charge.getDifficulty(3), 5);
    EXPECT_EQ(charge.getDifficulty(19.9f), 20);
    EXPECT_EQ(charge.getDifficulty(20), -1);

    MeleeWeapon hook("Boat Hook", "Clubs", DiceCode(1, 0), 0, 2, true, DiceCode(5, 0));
    EXPECT_EQ(hook.getDifficulty(0), 15);
    EXPECT_EQ(hook.getDifficulty(1), 15);
    EXPECT_EQ(hook.getDifficulty(1.01f), -1);
    EXPECT_EQ(unarmedWeapon->getDifficulty(1), 5);
}

TEST(Weapons, UseSpendsRoundsDownToZeroAndClonesKeepThem) {
    RangedWeapon gun = pistol();
    Item* clone = gun.clone();
    gun.use();
    gun.use();
    gun.use();
    EXPECT_EQ(gun.ammo, 0);
    auto* copy = dynamic_cast<RangedWeapon*>(clone);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->ammo, 2);
    EXPECT_EQ(copy->price, 450);
    copy->use();
    EXPECT_EQ(copy->ammo, 1);
    delete clone;
}

TEST(ItemRecords, EveryClassSurvivesAWriteAndARead) {
    RangedWeapon* gun = roundTrip<RangedWeapon>(pistol());
    EXPECT_EQ(gun->name, "Harpoon Pistol");
    EXPECT_EQ(gun->damage, DiceCode(3, 1));
    EXPECT_EQ(gun->ammo, 2);
    EXPECT_EQ(gun->maxAmmo, 6);
    EXPECT_EQ(gun->range, (std::array<int, 4>{10, 30, 50, 100}));
    EXPECT_EQ(gun->price, 450);

    MeleeWeapon baton("Shock Baton", "Clubs", DiceCode(3, 0), 1, 2, false, DiceCode(4, 2));
    MeleeWeapon* melee = roundTrip<MeleeWeapon>(baton);
    EXPECT_EQ(melee->damageType, 1);
    EXPECT_EQ(melee->difficulty, 2);
    EXPECT_FALSE(melee->addStrength);
    EXPECT_EQ(melee->maxDamage, DiceCode(4, 2));

    Armor plate("Salvage Plate", DiceCode(2, 1), DiceCode(1, 0), DiceCode(1, 0));
    plate.price = 900;
    Armor* armor = roundTrip<Armor>(plate);
    EXPECT_EQ(armor->physical, DiceCode(2, 1));
    EXPECT_EQ(armor->penalty, DiceCode(1, 0));
    EXPECT_EQ(armor->price, 900);

    Grenade charge("Static Bomb", "Thrown Weapons", {DiceCode(4, 2), 3, 2, 1}, {2, 4, 6, 10}, {3, 7, 12, 20},
                   1);
    Grenade* grenade = roundTrip<Grenade>(charge);
    EXPECT_EQ(grenade->blastDamage, (std::array<DiceCode, 4>{4, 3, 2, 1})) << "files keep the dice only";
    EXPECT_EQ(grenade->radius, (std::array<int, 4>{2, 4, 6, 10}));
    EXPECT_EQ(grenade->range, (std::array<int, 4>{3, 7, 12, 20}));
    EXPECT_EQ(grenade->fuse, 0);

    Item lantern("Storm Lantern");
    lantern.price = 15;
    Item* plain = roundTrip<Item>(lantern);
    EXPECT_EQ(plain->price, 15);
    for (Item* i : std::initializer_list<Item*>{gun, melee, armor, grenade, plain})
        delete i;
}

TEST(ItemRecords, ShortOrGarbledRecordsGiveZerosAndHeldIndices) {
    std::istringstream in("Knife|Blades|x2|-1\n"
                          "Club|Clubs|2|0|1|0|0|7|9|\n"
                          "Spike|Clubs|2|0|1|0|0|-4|-3|12\n"
                          "Gun|Pistols|99999999999|4|1|5|");
    Item* knife = readMeleeWeapon(in);
    Item* club = readMeleeWeapon(in);
    Item* spike = readMeleeWeapon(in);
    Item* gun = readRangedWeapon(in);
    auto* k = static_cast<MeleeWeapon*>(knife);
    EXPECT_EQ(k->damage, DiceCode(0, -1));
    EXPECT_EQ(k->maxDamage, DiceCode());
    EXPECT_EQ(k->price, 0);
    EXPECT_EQ(static_cast<MeleeWeapon*>(club)->difficulty, 5);
    EXPECT_EQ(static_cast<MeleeWeapon*>(club)->damageType, 1);
    EXPECT_EQ(static_cast<MeleeWeapon*>(spike)->difficulty, 0);
    EXPECT_EQ(static_cast<MeleeWeapon*>(spike)->damageType, 0);
    auto* g = static_cast<RangedWeapon*>(gun);
    EXPECT_EQ(g->damage, DiceCode(INT_MAX, 4));
    EXPECT_EQ(g->ammo, 5);
    EXPECT_EQ(g->maxAmmo, 0);
    EXPECT_EQ(g->range, (std::array<int, 4>{}));
    EXPECT_EQ(g->getDifficulty(0), -1);
    for (Item* i : {knife, club, spike, gun})
        delete i;
    std::istringstream empty("");
    Item* nothing = readItem(empty);
    EXPECT_EQ(nothing->name, "");
    delete nothing;
}

class ItemCatalogue : public ModelFileTest {};

TEST_F(ItemCatalogue, LoadsEveryHeaderedRecordOnceAndPassesOverTheRest) {
    write("items.dat",
          "[Item]\r\nRope|12\r\n\n[Armor]\nOilskin Coat|1|0|0|1|0|0|80\nnoise line\n\n"
          "[Bogus]\nNot an item|3\n[Grenade]\nStatic Bomb|Thrown Weapons|4|3|2|1|2|4|6|10|1|3|7|12|20|60");
    loadItems();
    ASSERT_EQ(allItems.size(), 3u);
    auto it = allItems.begin();
    EXPECT_EQ((*it)->name, "Rope");
    EXPECT_EQ((*it)->price, 12);
    EXPECT_EQ(typeid(**it), typeid(Item));
    EXPECT_EQ(dynamic_cast<Armor*>(*++it)->energy, DiceCode(0, 1));
    EXPECT_EQ(dynamic_cast<Grenade*>(*++it)->price, 60);
}

TEST_F(ItemCatalogue, MissingFileLeavesItEmpty) {
    loadItems();
    EXPECT_TRUE(allItems.empty());
}
