// The skill catalogue: its odd end-of-list rule, the tree of parents, and making a character's copy.
#include "model_test.h"
#include "rules/skill.h"

#include <gtest/gtest.h>

class Skills : public ModelFileTest {
  protected:
    static std::vector<std::string> names() {
        std::vector<std::string> result;
        for (const Skill* s : allSkills)
            result.push_back(s->name);
        return result;
    }
};

TEST_F(Skills, ReadsUntilALineStartsWithACharacterNotAboveZero) {
    write("skills.dat", "Dexterity||1\r\nDodge|Dexterity|\n1st Aid|Technical|5\nRunning|Dexterity\r\n"
                        "Dodge|Perception|9\n\nHidden|Dexterity|1\n");
    loadSkills();
    EXPECT_EQ(names(), (std::vector<std::string>{"Dexterity", "Dodge", "1st Aid", "Running", "Dodge"}));
    EXPECT_EQ(allSkills.front()->duration, 1);
    EXPECT_EQ(parentOf("Running"), "Dexterity") << "the carriage return is not part of the name";
    EXPECT_EQ(parentOf("Dodge"), "Perception") << "the last duplicate gives the parent";
    EXPECT_EQ(skillParents.count("Hidden"), 0u);

    Skill* dodge = makeSkill("Dodge", 3, 2);
    ASSERT_NE(dodge, nullptr);
    EXPECT_EQ(dodge->level, DiceCode(3, 2));
    EXPECT_EQ(dodge->duration, 0) << "the first duplicate is the one found";
    delete dodge;
    EXPECT_EQ(makeSkill("Hidden", 1, 0), nullptr);
}

TEST_F(Skills, StopsAtOnceOnABlankASpaceOrAZero) {
    for (const char* text : {"\nDexterity||1\n", " Dexterity||1\n", "0Dexterity||1\n", ""}) {
        write("skills.dat", text);
        loadSkills();
        EXPECT_TRUE(allSkills.empty()) << text;
    }
    write("skills.dat", "Strength||2");
    loadSkills();
    ASSERT_EQ(names(), (std::vector<std::string>{"Strength"})) << "a last line without its line end";
    EXPECT_EQ(allSkills.front()->duration, 2);
}

TEST_F(Skills, UnknownNamesEnterTheTreeAndLoopsEndTheClimb) {
    EXPECT_EQ(parentOf("x"), "");
    EXPECT_EQ(skillParents.count("x"), 1u);
    write("skills.dat",
          "Up|Down|0\nDown|Up|0\nSelf|Self|0\nSword|Melee|0\nMelee|Dexterity|0\nDexterity||0\n");
    loadSkills();
    EXPECT_TRUE(descendsFrom("Sword", "Dexterity"));
    EXPECT_TRUE(descendsFrom("Sword", "Sword"));
    EXPECT_FALSE(descendsFrom("Dexterity", "Sword"));
    EXPECT_FALSE(descendsFrom("Up", "Dexterity"));
    EXPECT_FALSE(descendsFrom("Self", "Dexterity"));
}
