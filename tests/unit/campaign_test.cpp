// The sample campaign in data/campaign loads through the readers, holds what a referee needs to
// run a fight, and is written in exactly the form that saving produces.
#include "model_test.h"
#include "rules/character_files.h"

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
};

TEST_F(Campaign, HoldsTheSkillsAndGearThatAFightNeeds) {
    std::set<std::string> attributes, skills;
    for (const Skill* s : allSkills)
        (parentOf(s->name).empty() ? attributes : skills).insert(s->name);
    EXPECT_EQ(attributes.size(), 6u);
    EXPECT_GE(skills.size(), 30u);
    for (const char* name :
         {"Mechanical", "Technical", "Running", "Dodge", "Melee Parry", "Brawling Parry", "Brawling"})
        EXPECT_TRUE(attributes.count(name) + skills.count(name)) << name;
    std::map<std::string, int> kinds;
    std::set<std::array<int, 4>> brackets;
    bool cappedStrength = false, hinderingArmor = false;
    for (const Item* i : allItems) {
        ++kinds[typeid(*i).name()];
        auto* w = dynamic_cast<const Weapon*>(i);
        EXPECT_TRUE(!w || skills.count(w->skill)) << i->name;
        if (auto* r = dynamic_cast<const RangedWeapon*>(i)) brackets.insert(r->range);
        if (auto* m = dynamic_cast<const MeleeWeapon*>(i)) cappedStrength |= m->addStrength && m->maxDamage;
        if (auto* a = dynamic_cast<const Armor*>(i)) hinderingArmor |= a->penalty.dice > 0;
    }
    for (const char* kind : {typeid(RangedWeapon).name(), typeid(MeleeWeapon).name(), typeid(Item).name()})
        EXPECT_GE(kinds[kind], 3) << kind;
    EXPECT_EQ(std::pair(kinds[typeid(Armor).name()], kinds[typeid(Grenade).name()]), std::pair(3, 2));
    EXPECT_GE(brackets.size(), 3u);
    EXPECT_TRUE(cappedStrength && hinderingArmor);
}

// Every character has the six attributes, one is wounded, and each file is written exactly as
// saving writes it, so a save of an untouched character changes nothing.
TEST_F(Campaign, FourPlayerCharactersSixNpcsAndThreeFactions) {
    ASSERT_EQ(std::pair(allCharacters.size(), allNpcs.size()), std::pair(4ul, 6ul));
    int wounded = 0;
    auto isAttribute = [](Skill* s) { return parentOf(s->name).empty(); };
    for (const auto* list : {&allCharacters, &allNpcs}) {
        for (Character* c : *list) {
            EXPECT_EQ(std::count_if(c->skills.begin(), c->skills.end(), isAttribute), 6) << c->name;
            wounded += c->health == Wounded && countReason(*c, "Wound") == 1;
            std::string file = c->name + (c->isNpc ? ".npc" : ".chr"), sample = read(file);
            saveCharacter(*c);
            EXPECT_EQ(read(file), sample);
        }
    }
    EXPECT_EQ(wounded, 1);
    EXPECT_EQ(read("characters.idx"), read(HEXFOLD_SOURCE_DIR "/data/campaign/characters.idx"));
    Character* tobin = findCharacter("Tobin Greaves");
    ASSERT_NE(tobin, nullptr);
    EXPECT_EQ(effectiveCode(*tobin, "Dodge"), DiceCode(1, 2)) << "his plate weighs on every Dexterity skill";
    std::set<std::array<float, 3>> colours;
    for (const Faction* f : allFactions)
        colours.insert({f->colour[0], f->colour[1], f->colour[2]});
    EXPECT_EQ(colours.size(), 3u);
    EXPECT_EQ(allFactions.front()->members.front()->name, "Mara Vell");
}
