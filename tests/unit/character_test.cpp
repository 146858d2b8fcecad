// Characters: skills through the tree, penalties, equipment, copies, the health state machine and
// its aging.
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
    static Character& fighter(int strengthDice = 6) {
        return person("Mara Vell",
                      {{"Dexterity", {3, 1}}, {"Blades", {4, 0}}, {"Strength", {strengthDice, 0}}});
    }
    static std::string shown(const Skill& s) { return s.name + " " + s.level.text(); }
};

TEST_F(Characters, SkillsClimbToTheirAttributeAndPenaltiesCountOnEveryLevel) {
    Character& c = fighter();
    EXPECT_FALSE(c.addSkill(new Skill("Blades", DiceCode(1, 0))));
    EXPECT_EQ(shown(c.getSkill("Dodge")) + ", " + shown(c.getSkill("Search")),
              "Dexterity 3D+1, Not found 0D+0");
    EXPECT_TRUE(c.addSkill(new Skill("Dodge")));
    EXPECT_EQ(shown(c.getSkill("Dodge")) + ", " + shown(c.getSkill("Blades")), "Dodge 3D+1, Blades 4D+0");
    for (Penalty* p :
         {new Penalty("Slipped", {0, 2}, 3, "Blades"), new Penalty("Armor", {1, 0}, -1, "Dexterity"),
          new Penalty("Wound", {0, 1}, -1, "All"), new Penalty("Dazzled", {2, 0}, 1, "Perception")})
        c.addPenalty(p);
    EXPECT_EQ(std::tuple(c.getPenalty("Blades"), c.getPenalty("Dexterity"), effectiveCode(c, "Blades"),
                         effectiveCode(c, "Search")),
              std::tuple(DiceCode(1, 3), DiceCode(1, 1), DiceCode(3, -3), DiceCode(-2, -1)));
}

// A tree deeper than a few levels, which only a hand-edited file makes, is climbed alike, and a
// tree that loops ends where the climb comes round.
TEST_F(Characters, DeepAndLoopingTreesClimbAlike) {
    for (int i = 0; i < 12; ++i) {
        skillParents["L" + std::to_string(i)] = i < 11 ? "L" + std::to_string(i + 1) : "";
        skillParents["R" + std::to_string(i)] = "R" + std::to_string((i + 1) % 10);
    }
    Character& c = person("Deep", {{"L9", {2, 0}}, {"L3", {3, 0}}, {"R7", {1, 0}}});
    for (Penalty* p : {new Penalty("Far", {1, 0}, -1, "L10"), new Penalty("Near", {0, 1}, -1, "L2"),
                       new Penalty("Ring", {0, 2}, -1, "R3")})
        c.addPenalty(p);
    EXPECT_EQ(shown(c.getSkill("L0")) + ", " + shown(c.getSkill("L5")) + ", " + shown(c.getSkill("L10")) +
                  ", " + shown(c.getSkill("R8")),
              "L3 3D+0, L9 2D+0, Not found 0D+0, R7 1D+0");
    EXPECT_EQ(std::tuple(c.getPenalty("L0"), c.getPenalty("L5"), c.getPenalty("R5"), c.getPenalty("L11")),
              std::tuple(DiceCode(1, 1), DiceCode(1, 0), DiceCode(0, 2), DiceCode()));
    EXPECT_TRUE(descendsFrom("L0", "L11") && !descendsFrom("R0", "L0") && !descendsFrom("", ""));
}

// A copy owns copies of everything, ages, and joins the faction but neither list of characters.
TEST_F(Characters, ArmorBringsExactlyOnePenaltyWhileWornAndCopiesAreDeep) {
    Character& c = fighter();
    auto* plate = new Armor("Plate", DiceCode(2, 0), DiceCode(1, 0), DiceCode(1, 0));
    Item *spare = plate->clone(), *coat = new Armor("Coat", DiceCode(1, 0), DiceCode(0, 1), DiceCode());
    auto* knife = new MeleeWeapon("Gutting Knife", "Blades", DiceCode(0, 2), 0, 0, true, DiceCode(4, 0));
    for (Item* i : std::initializer_list<Item*>{plate, spare, coat, knife, new Item("Rope")})
        c.addItem(i), c.equip(i);
    EXPECT_TRUE(c.armor == coat && c.weapon == knife && c.penalties.empty()) << "the rope changes nothing";
    c.equip(plate);
    c.equip(spare);
    EXPECT_EQ(std::tuple(c.armor == spare, countReason(c, "Armor"), effectiveCode(c, "Blades")),
              std::tuple(true, 1, DiceCode(3, 0)));
    c.takeDamage(0);
    Faction crew("Lantern Crew", 0.9f, 0.7f, 0.2f);
    crew.addMember(&c);
    auto* copy = new Character(c);
    auto copied = [&](int i) { return *std::next(copy->inventory.begin(), i); };
    EXPECT_EQ(std::tuple(allCharacters.size(), findCharacter("Mara Vell"), crew.members.size()),
              std::tuple(1ul, &c, 2ul));
    EXPECT_TRUE(copy->armor == copied(1) && copy->weapon == copied(3) &&
                copy->skills.front() != c.skills.front());
    EXPECT_EQ(std::pair(copy->getSkill("Blades").level, countReason(*copy, "Armor")),
              std::pair(DiceCode(4, 0), 1));
    updateAll();
    EXPECT_EQ(copy->penalties.back()->duration, 359) << "the copy ages";
    delete copy;
    EXPECT_EQ(std::pair(crew.members, updatables),
              std::pair(std::list<Character*>{&c}, std::list<Updatable*>{&c}));
}

TEST_F(Characters, EveryRowOfTheHealthStateMachine) {
    // Rows: the state before; columns: margins below 0, 0-3, 4-8, 9-12, 13-15, 16 and more. A
    // healthy character ends in the state that names the hit.
    const int after[7][6] = {{0, 6, 1, 3, 4, 5}, {1, 1, 2, 3, 4, 5}, {2, 2, 3, 3, 4, 5}, {3, 3, 4, 4, 5, 5},
                             {4, 4, 4, 5, 5, 5}, {5, 5, 5, 3, 4, 5}, {6, 6, 6, 3, 4, 5}};
    const int margins[6][2] = {{-5, -1}, {0, 3}, {4, 8}, {9, 12}, {13, 15}, {16, 40}};
    const int wounds[7] = {0, 1, 2, 2, 2, 2, 0};
    for (int from = 0; from < 7; ++from)
        for (int band = 0; band < 6; ++band)
            for (int margin : margins[band]) {
                SCOPED_TRACE(testing::Message() << "state " << from << " hit by " << margin);
                Character& c = fighter();
                c.setHealth(from);
                c.actions = 2;
                EXPECT_EQ(c.takeDamage(margin), after[Healthy][band]);
                int to = after[from][band], out = c.unconscious;
                bool knockedDown = band == 2, stunned = band == 1;
                EXPECT_EQ(std::tuple(c.health, countReason(c, "Wound"), countReason(c, "Stun"), c.stuns),
                          std::tuple(to, wounds[to], +stunned, +stunned));
                EXPECT_TRUE(to == Incapacitated ? out >= 120 && out <= 720 && out % 12 == 0
                                                : out == (to == 4 || to == 5 ? -1 : 0))
                    << out;
                EXPECT_EQ(std::tuple(c.posture, c.actionsTaken, c.actions),
                          knockedDown ? std::tuple(2, -1, 0) : std::tuple(0, 0, 2));
                delete &c;
            }
}

TEST_F(Characters, StunsAddUpToUnconsciousnessAndFadeWithTime) {
    Character& c = fighter(3);
    EXPECT_EQ((std::vector{c.takeDamage(0), c.takeDamage(2), c.takeDamage(3)}),
              (std::vector{Stunned, Stunned, Unconscious}))
        << "as many stuns as Strength has dice";
    int asleep = c.unconscious;
    EXPECT_TRUE(c.health == Stunned && c.stuns == 3 && asleep >= 24 && asleep <= 144 && asleep % 12 == 0);
    c.update(1);
    c.update(1);
    EXPECT_EQ(std::tuple(c.unconscious, countReason(c, "Stun"), c.health), std::tuple(asleep - 2, 0, 6))
        << "a stun that ran out in this round still counted";
    for (int round = 2; round < 359; ++round)
        c.update(1);
    EXPECT_EQ(std::tuple(c.health, c.stuns, c.unconscious), std::tuple(0, 3, 0));
    c.update(1);
    EXPECT_EQ(std::pair(c.stuns, c.penalties.size()), std::pair(0, 0ul));
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
    EXPECT_EQ(c.unconscious, -1) << "the mortally wounded never wake by themselves";
}
