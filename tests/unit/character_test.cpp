// Characters: skills through the tree, penalties, equipment, the health state machine, aging,
// copies and initiative.
#include "model_test.h"
#include "rules/random_source.h"

class Characters : public ModelTest {
  protected:
    void SetUp() override {
        ModelTest::SetUp();
        sharedRandom.seedWord(11);
        skillParents = {{"Dexterity", ""}, {"Blades", "Dexterity"}, {"Dodge", "Dexterity"},
                        {"Strength", ""},  {"Perception", ""},      {"Search", "Perception"}};
    }
    // Owned by allCharacters, which the fixture empties.
    static Character& fighter(int strengthDice = 6) {
        auto* c = new Character(false);
        c->name = "Mara Vell";
        c->addSkill(new Skill("Dexterity", DiceCode(3, 1)));
        c->addSkill(new Skill("Blades", DiceCode(4, 0)));
        c->addSkill(new Skill("Strength", DiceCode(strengthDice, 0)));
        return *c;
    }
    static std::string shown(const Skill& s) { return s.name + " " + s.level.text(); }
    static Armor* plate() { return new Armor("Plate", DiceCode(2, 0), DiceCode(1, 0), DiceCode(1, 0)); }
};

TEST_F(Characters, SkillsClimbToTheirAttributeAndPenaltiesCountOnEveryLevel) {
    Character& c = fighter();
    EXPECT_EQ(shown(c.getSkill("Dodge")), "Dexterity 3D+1");
    EXPECT_EQ(shown(c.getSkill("Search")), "Not found 0D+0");
    EXPECT_FALSE(c.addSkill(new Skill("Blades", DiceCode(1, 0))));
    EXPECT_TRUE(c.addSkill(new Skill("Dodge")));
    EXPECT_EQ(shown(c.getSkill("Dodge")) + ", " + shown(c.getSkill("Blades")), "Dodge 3D+1, Blades 4D+0");
    c.addPenalty(new Penalty("Slipped", DiceCode(0, 2), 3, "Blades"));
    c.addPenalty(new Penalty("Armor", DiceCode(1, 0), -1, "Dexterity"));
    c.addPenalty(new Penalty("Wound", DiceCode(0, 1), -1, "All"));
    c.addPenalty(new Penalty("Dazzled", DiceCode(2, 0), 1, "Perception"));
    EXPECT_EQ(std::pair(c.getPenalty("Blades"), c.getPenalty("Dexterity")),
              std::pair(DiceCode(1, 3), DiceCode(1, 1)));
    EXPECT_EQ(effectiveCode(c, "Blades"), DiceCode(3, -3));
    EXPECT_EQ(effectiveCode(c, "Search"), DiceCode(-2, -1));
}

TEST_F(Characters, ArmorBringsExactlyOnePenaltyWhileWorn) {
    Character& c = fighter();
    Armor *first = plate(), *second = plate(),
          *coat = new Armor("Coat", DiceCode(1, 0), DiceCode(0, 1), DiceCode());
    auto* knife = new MeleeWeapon("Gutting Knife", "Blades", DiceCode(0, 2), 0, 0, true, DiceCode(4, 0));
    for (Item* i : std::initializer_list<Item*>{first, second, coat, knife, new Item("Rope")})
        c.addItem(i);
    c.equip(first);
    c.equip(second);
    EXPECT_EQ(std::pair(c.armor, countReason(c, "Armor")), std::pair(second, 1));
    EXPECT_EQ(effectiveCode(c, "Blades"), DiceCode(3, 0));
    c.unequip(second);
    EXPECT_EQ(c.armor, noArmor);
    EXPECT_TRUE(c.penalties.empty());
    for (Item* i : c.inventory)
        c.equip(i);
    EXPECT_TRUE(c.armor == coat && c.weapon == knife && c.penalties.empty()) << "the rope changes nothing";
    c.unequip(coat);
    c.unequip(knife);
    EXPECT_TRUE(c.armor == noArmor && c.weapon == unarmedWeapon);
}

TEST_F(Characters, EveryRowOfTheHealthStateMachine) {
    // Rows: the state before; columns: margins below 0, 0-3, 4-8, 9-12, 13-15, 16 and more.
    const int after[7][6] = {{0, 6, 1, 3, 4, 5}, {1, 1, 2, 3, 4, 5}, {2, 2, 3, 3, 4, 5}, {3, 3, 4, 4, 5, 5},
                             {4, 4, 4, 5, 5, 5}, {5, 5, 5, 3, 4, 5}, {6, 6, 6, 3, 4, 5}};
    const HealthState hit[6] = {Healthy, Stunned, Wounded, Incapacitated, MortallyWounded, Killed};
    const int margins[6][2] = {{-5, -1}, {0, 3}, {4, 8}, {9, 12}, {13, 15}, {16, 40}};
    const int wounds[7] = {0, 1, 2, 2, 2, 2, 0};
    for (int from = 0; from < 7; ++from) {
        for (int band = 0; band < 6; ++band) {
            for (int margin : margins[band]) {
                SCOPED_TRACE(testing::Message() << "state " << from << " hit by " << margin);
                Character& c = fighter();
                c.setHealth(from);
                c.actions = 2;
                EXPECT_EQ(c.takeDamage(margin), hit[band]);
                int to = after[from][band];
                EXPECT_EQ(std::pair(c.health, countReason(c, "Wound")), std::pair(to, wounds[to]));
                if (to == Incapacitated)
                    EXPECT_TRUE(c.unconscious >= 120 && c.unconscious <= 720 && c.unconscious % 12 == 0);
                else
                    EXPECT_EQ(c.unconscious, to == 4 || to == 5 ? -1 : 0);
                bool knockedDown = band == 2, stunned = band == 1;
                EXPECT_EQ(std::tuple(c.posture, c.actionsTaken, c.actions),
                          knockedDown ? std::tuple(2, -1, 0) : std::tuple(0, 0, 2));
                EXPECT_EQ(std::pair(countReason(c, "Stun"), c.stuns), std::pair(+stunned, +stunned));
                delete &c;
            }
        }
    }
}

TEST_F(Characters, StunsAddUpToUnconsciousnessAndFadeWithTime) {
    Character& c = fighter(3);
    EXPECT_EQ(c.takeDamage(0), Stunned);
    EXPECT_EQ(c.takeDamage(2), Stunned);
    EXPECT_EQ(c.takeDamage(3), Unconscious) << "as many stuns as Strength has dice";
    EXPECT_EQ(std::pair(c.health, c.stuns), std::pair(6, 3));
    EXPECT_TRUE(c.unconscious >= 24 && c.unconscious <= 144 && c.unconscious % 12 == 0);
    int asleep = c.unconscious;
    c.update(1);
    c.update(1);
    EXPECT_EQ(std::tuple(c.unconscious, countReason(c, "Stun"), c.health), std::tuple(asleep - 2, 0, 6))
        << "a stun that ran out in this round still counted";
    c.update(1);
    EXPECT_EQ(c.health, Healthy);
    for (int round = 3; round < 359; ++round)
        c.update(1);
    EXPECT_EQ(std::pair(c.stuns, c.unconscious), std::pair(3, 0));
    c.update(1);
    EXPECT_EQ(std::pair(c.stuns, c.penalties.size()), std::pair(0, 0ul));
    Character& hurt = fighter(3);
    hurt.setHealth(Wounded);
    EXPECT_EQ(hurt.takeDamage(3), Stunned);
    EXPECT_EQ(std::tuple(hurt.health, hurt.stuns, hurt.penalties.size()), std::tuple(1, 1, 3ul));
}

TEST_F(Characters, WoundsThatRunOutHealOneStepWhileTheWalkGoesOn) {
    Character& c = fighter();
    c.setHealth(WoundedTwice);
    c.takeDamage(1);
    for (Penalty* p : c.penalties)
        if (p->reason == "Wound") p->duration = 2;
    c.update(1);
    EXPECT_EQ(c.health, WoundedTwice);
    c.update(1);
    // The first wound healed a step; setHealth replaced both wounds in the middle of the walk, so
    // the second, which would have run out in the same round, is gone and heals nothing.
    EXPECT_EQ(std::pair(c.health, countReason(c, "Wound")), std::pair(1, 1));
    c.penalties.back()->duration = 1;
    c.update(1);
    EXPECT_EQ(c.health, Healthy);
    c.setHealth(MortallyWounded);
    c.update(1);
    EXPECT_EQ(c.unconscious, -1);
    c.takeDamage(0);
    c.setHealth(Healthy);
    EXPECT_EQ(std::tuple(c.unconscious, countReason(c, "Wound"), countReason(c, "Stun")),
              std::tuple(0, 0, 1));
}

TEST_F(Characters, CopiesAreDeepAgeAndJoinTheFactionButNoList) {
    Character& c = fighter();
    Armor* armor = plate();
    c.addItem(armor);
    c.addItem(new MeleeWeapon("Gutting Knife", "Blades", DiceCode(0, 2), 0, 0, true, DiceCode(4, 0)));
    c.equip(armor);
    c.equip(c.inventory.back());
    c.takeDamage(0);
    Faction crew("Lantern Crew", 0.9f, 0.7f, 0.2f);
    crew.addMember(&c);
    auto* copy = new Character(c);
    EXPECT_EQ(allCharacters, (std::list<Character*>{&c}));
    EXPECT_EQ(findCharacter("Mara Vell"), &c);
    EXPECT_TRUE(copy->armor == copy->inventory.front() && copy->weapon == copy->inventory.back());
    EXPECT_TRUE(copy->armor != armor && copy->skills.front() != c.skills.front());
    EXPECT_EQ(std::pair(copy->getSkill("Blades").level, countReason(*copy, "Armor")),
              std::pair(DiceCode(4, 0), 1));
    EXPECT_EQ(crew.members.size(), 2u);
    updateAll();
    EXPECT_EQ((*std::next(copy->penalties.begin()))->duration, 1) << "the copy's stun ages";
    delete copy;
    EXPECT_EQ(crew.members, (std::list<Character*>{&c}));
    EXPECT_EQ(updatables, (std::list<Updatable*>{&c}));
}

TEST_F(Characters, InitiativeIsSharedThroughTheFactionAndResetEachRound) {
    Character &loner = fighter(), &member = fighter();
    loner.setInitiative(12);
    loner.setInitiative(7);
    EXPECT_EQ(loner.getInitiative(), 7);
    Faction crew("Lantern Crew", 0.9f, 0.7f, 0.2f);
    crew.addMember(&member);
    member.setInitiative(9);
    EXPECT_EQ(member.getInitiative(), 0) << "a new faction counts as rolled";
    member.moved = true;
    member.posture = 1;
    member.resetCombatState();
    member.setInitiative(9);
    member.setInitiative(4);
    EXPECT_EQ(std::pair(member.getInitiative(), member.initiative), std::pair(9, -1));
    EXPECT_EQ(std::tuple(member.actions, member.dodge, member.moved, member.posture),
              std::tuple(noValue, noValue, false, 1));
}
