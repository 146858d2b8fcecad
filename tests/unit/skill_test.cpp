// The skill catalogue: its odd end-of-list rule, the tree of parents, and copies for characters.
#include "model_test.h"

class Skills : public ModelFileTest {};

TEST_F(Skills, ReadsUntilALineStartsWithACharacterNotAboveZero) {
    write("skills.dat", "Dexterity||1\r\nDodge|Dexterity|\n1st Aid|Technical|5\nRunning|Dexterity\r\n"
                        "Dodge|Perception|9\n\nHidden|Dexterity|1\n");
    loadSkills();
    std::vector<std::string> names;
    for (const Skill* s : allSkills)
        names.push_back(s->name);
    EXPECT_EQ(names, (std::vector<std::string>{"Dexterity", "Dodge", "1st Aid", "Running", "Dodge"}));
    EXPECT_EQ(parentOf("Running"), "Dexterity") << "the carriage return is no part of the name";
    EXPECT_EQ(parentOf("Dodge"), "Perception") << "the last duplicate gives the parent";
    std::unique_ptr<Skill> dodge(makeSkill("Dodge", 3, 2));
    EXPECT_EQ(std::pair(dodge->level, dodge->duration), std::pair(DiceCode(3, 2), 0))
        << "the first duplicate is found";
    EXPECT_EQ(makeSkill("Hidden", 1, 0), nullptr);
    for (const char* text : {" Dexterity||1\n", "0Dexterity||1\n", "", "Strength||2"}) {
        clearSkills();
        write("skills.dat", text);
        loadSkills();
        EXPECT_EQ(allSkills.size(), text[0] == 'S' ? 1u : 0u) << text;
    }
}

TEST_F(Skills, UnknownNamesEnterTheTreeAndLoopsEndTheClimb) {
    EXPECT_EQ(parentOf("x"), "");
    EXPECT_EQ(skillParents.count("x"), 1u);
    write("skills.dat",
          "Up|Down|0\nDown|Up|0\nSelf|Self|0\nSword|Melee|0\nMelee|Dexterity|0\nDexterity||0\n");
    loadSkills();
    EXPECT_TRUE(descendsFrom("Sword", "Dexterity") && descendsFrom("Sword", "Sword"));
    EXPECT_FALSE(descendsFrom("Dexterity", "Sword") || descendsFrom("Up", "Dexterity") ||
                 descendsFrom("Self", "x"));
}
