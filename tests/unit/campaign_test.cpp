// The sample campaign in data/campaign loads through the readers, holds what a referee needs to
// run a fight, and is written in exactly the form that saving produces.
#include "model_test.h"
#include "rules/character_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

class Campaign : public ModelFileTest {
  protected:
    void SetUp() override {
        ModelFileTest::SetUp();
        for (const auto& entry : std::filesystem::directory_iterator(HEXFOLD_SOURCE_DIR "/data/campaign"))
            std::filesystem::copy(entry.path(), dir / entry.path().filename());
        // In the order of the program's start.
        loadItems();
        loadSkills();
        loadCharacters();
        loadFactions();
    }
    template <class T> static int count() {
        return static_cast<int>(
            std::count_if(allItems.begin(), allItems.end(), [](Item* i) { return typeid(*i) == typeid(T); }));
    }
};

TEST_F(Campaign, SkillTreeHasTheSixAttributesAndTheSkillsOfEveryWeapon) {
    std::set<std::string> attributes, skills;
    for (const Skill* s : allSkills)
        (parentOf(s->name).empty() ? attributes : skills).insert(s->name);
    EXPECT_EQ(attributes, (std::set<std::string>{"Dexterity", "Perception", "Knowledge", "Strength",
                                                 "Technical", "Mechanical"}));
    EXPECT_GE(skills.size(), 30u);
    for (const char* name : {"Running", "Dodge", "Melee Parry", "Brawling Parry", "Brawling"})
        EXPECT_EQ(skills.count(name), 1u) << name;
    std::list<Item*> everything = allItems;
    for (const Character* c : allCharacters)
        everything.insert(everything.end(), c->inventory.begin(), c->inventory.end());
    for (const Character* c : allNpcs)
        everything.insert(everything.end(), c->inventory.begin(), c->inventory.end());
    for (const Item* i : everything) {
        if (auto* w = dynamic_cast<const Weapon*>(i)) {
            EXPECT_EQ(skills.count(w->skill), 1u) << w->name;
        }
    }
}

TEST_F(Campaign, ItemCatalogueHasEveryKindOfGear) {
    EXPECT_GE(count<RangedWeapon>(), 3);
    EXPECT_GE(count<MeleeWeapon>(), 3);
    EXPECT_GE(count<Armor>(), 2);
    EXPECT_EQ(count<Grenade>(), 2);
    EXPECT_GE(count<Item>(), 3);
    std::set<std::array<int, 4>> brackets;
    std::set<int> magazines;
    bool cappedStrength = false, hinderingArmor = false;
    for (const Item* i : allItems) {
        if (auto* r = dynamic_cast<const RangedWeapon*>(i)) {
            brackets.insert(r->range);
            magazines.insert(r->maxAmmo);
            EXPECT_EQ(r->ammo, r->maxAmmo) << r->name;
        }
        if (auto* m = dynamic_cast<const MeleeWeapon*>(i)) cappedStrength |= m->addStrength && m->maxDamage;
        if (auto* a = dynamic_cast<const Armor*>(i)) hinderingArmor |= a->penalty.dice > 0;
    }
    EXPECT_GE(brackets.size(), 3u);
    EXPECT_GE(magazines.size(), 3u);
    EXPECT_TRUE(cappedStrength);
    EXPECT_TRUE(hinderingArmor);
}

TEST_F(Campaign, FourPlayerCharactersSixNpcsAndThreeFactions) {
    ASSERT_EQ(allCharacters.size(), 4u);
    ASSERT_EQ(allNpcs.size(), 6u);
    int wounded = 0;
    for (const auto* list : {&allCharacters, &allNpcs}) {
        for (const Character* c : *list) {
            for (const Skill* s : allSkills) {
                if (parentOf(s->name).empty()) {
                    EXPECT_EQ(c->getSkill(s->name).name, s->name) << c->name;
                }
            }
            EXPECT_GT(c->skills.size(), 10u) << c->name;
            wounded += c->health == Wounded;
        }
    }
    EXPECT_EQ(wounded, 1);
    Character* tobin = findCharacter("Tobin Greaves");
    ASSERT_NE(tobin, nullptr);
    EXPECT_EQ(tobin->armor->name, "Salvage Plate");
    EXPECT_EQ(effectiveCode(*tobin, "Dodge"), DiceCode(1, 2)) << "the plate weighs on every Dexterity skill";

    ASSERT_EQ(allFactions.size(), 3u);
    std::set<std::array<float, 3>> colours;
    for (const Faction* f : allFactions) {
        colours.insert({f->colour[0], f->colour[1], f->colour[2]});
        for (const Character* member : f->members)
            EXPECT_FALSE(member->isNpc);
    }
    EXPECT_EQ(colours.size(), 3u);
    EXPECT_EQ(allFactions.front()->members.front()->name, "Mara Vell");
}

TEST_F(Campaign, SavingAnyCharacterRewritesItsFileUnchanged) {
    for (const auto* list : {&allCharacters, &allNpcs}) {
        for (Character* c : *list) {
            std::string file = c->name + (c->isNpc ? ".npc" : ".chr");
            std::string sample = read(file);
            saveCharacter(*c);
            EXPECT_EQ(read(file), sample) << file;
        }
    }
    EXPECT_EQ(read("characters.idx"), read(HEXFOLD_SOURCE_DIR "/data/campaign/characters.idx"));
}
