// The sample campaign in data/campaign loads through the readers, holds what a referee needs to
// run a fight, and is written in exactly the form that saving produces.
#include "model_test.h"
#include "rules/character_files.h"

#include <set>

class Campaign : public ModelFileTest {};

TEST_F(Campaign, LoadsTheSkillsGearPeopleAndFactionsThatAFightNeeds) {
    for (const auto& entry : std::filesystem::directory_iterator(HEXFOLD_SOURCE_DIR "/data/campaign"))
        std::filesystem::copy(entry.path(), dir / entry.path().filename());
    loadItems(), loadSkills(), loadCharacters(), loadFactions();
    std::set<std::string> attributes, skills;
    for (const Skill* s : allSkills)
        (parentOf(s->name).empty() ? attributes : skills).insert(s->name);
    EXPECT_EQ(std::pair(attributes.size(), skills.size() >= 30), std::pair(6ul, true));
    for (const char* name : {"Running", "Dodge", "Melee Parry", "Brawling Parry", "Brawling"})
        EXPECT_TRUE(skills.count(name)) << name;
    for (const Item* i : allItems)
        EXPECT_TRUE(!dynamic_cast<const Weapon*>(i) || skills.count(static_cast<const Weapon*>(i)->skill))
            << i->name;
    // Every character has the six attributes, one is wounded, and a save changes no file.
    ASSERT_EQ(std::pair(allCharacters.size(), allNpcs.size()), std::pair(4ul, 6ul));
    int wounded = 0;
    for (const auto* list : {&allCharacters, &allNpcs}) {
        for (Character* c : *list) {
            auto isAttribute = [&](Skill* s) { return attributes.count(s->name); };
            EXPECT_EQ(std::count_if(c->skills.begin(), c->skills.end(), isAttribute), 6) << c->name;
            wounded += c->health == Wounded && countReason(*c, "Wound") == 1;
            std::string file = c->name + (c->isNpc ? ".npc" : ".chr"), sample = read(file);
            saveCharacter(*c);
            EXPECT_EQ(read(file), sample);
        }
    }
    EXPECT_EQ(wounded, 1);
    // Tobin's plate weighs on every Dexterity skill, also once the saves have put it on again; the
    // saves leave no file behind.
    EXPECT_EQ(effectiveCode(*findCharacter("Tobin Greaves"), "Dodge"), DiceCode(1, 2));
    for (const auto& entry : std::filesystem::directory_iterator(dir))
        EXPECT_TRUE(std::filesystem::exists(HEXFOLD_SOURCE_DIR "/data/campaign" / entry.path().filename()))
            << entry.path();
    EXPECT_EQ(read("characters.idx"), read(HEXFOLD_SOURCE_DIR "/data/campaign/characters.idx"));
    EXPECT_EQ(std::pair(allFactions.size(), names(allFactions.front()->members)),
              std::pair(3ul, Names{"Mara Vell", "Tobin Greaves"}));
}
