// Characters: skills through the tree, penalties, equipment, the health state machine, aging,
// copies and initiative.
#include "model_test.h"
#include "rules/random_source.h"

#include <gtest/gtest.h>

namespace {
int countReason(const Character& c, const std::string& reason) {
    int n = 0;
    for (const Penalty* p : c.penalties)
        n += p->reason == reason;
    return n;
}
} // namespace

class Characters : public ModelTest {
  protected:
    void SetUp() override {
        ModelTest::SetUp();
        sharedRandom.seedWord(11);
        skillParents = {{"Dexterity", ""}, {"Blades", "Dexterity"}, {"Dodge", "Dexterity"},
                        {"Strength", ""},  {"Perception", ""},      {"Search", "Perception"}};
    }
    // Owned by allCharacters, deleted by the fixture.
    Character* fighter(int strengthDice = 6) {
        auto* c = new Character(false);
        c->name = "Mara Vell";
        c->addSkill(new Skill("Dexterity", DiceCode(3, 1)));
        c->addSkill(new Skill("Blades", DiceCode(4, 0)));
        c->addSkill(new Skill("Strength", DiceCode(strengthDice, 0)));
        return c;
    }
};

TEST_F(Characters, SkillsClimbToTheirAttributeAndPenaltiesCountOnEveryLevel) {
    Character& c = *fighter();
    EXPECT_EQ(c.getSkill("Dodge").name, "Dexterity");
    EXPECT_EQ(c.getSkill("Dodge").level, DiceCode(3, 1));
    EXPECT_EQ(c.getSkill("Search").name, "Not found");
    EXPECT_EQ(c.getSkill("Search").level, DiceCode());

    c.addPenalty(new Penalty("Slipped", DiceCode(0, 2), 3, "Blades"));
    c.addPenalty(new Penalty("Armor", DiceCode(1, 0), -1, "Dexterity"));
    c.addPenalty(new Penalty("Wound", DiceCode(0, 1), -1, "All"));
    c.addPenalty(new Penalty("Dazzled", DiceCode(2, 0), 1, "Perception"));
    c.addPenalty(nullptr);
    EXPECT_EQ(c.getPenalty("Blades"), DiceCode(1, 3));
    EXPECT_EQ(c.getPenalty("Dexterity"), DiceCode(1, 1));
    EXPECT_EQ(c.getPenalty("Search"), DiceCode(2, 1));
    EXPECT_EQ(effectiveCode(c, "Blades"), DiceCode(3, -3));
    EXPECT_EQ(effectiveCode(c, "Search"), DiceCode(-2, -1));
    EXPECT_TRUE(nothingLeft(effectiveCode(c, "Search")));
}

TEST_F(Characters, AddSkillKeepsTheFirstAndStartsNewSkillsAtTheParent) {
    Character& c = *fighter();
    EXPECT_FALSE(c.addSkill(new Skill("Blades", DiceCode(1, 0))));
    EXPECT_EQ(c.getSkill("Blades").level, DiceCode(4, 0));
    EXPECT_TRUE(c.addSkill(new Skill("Dodge")));
    EXPECT_EQ(c.getSkill("Dodge").name, "Dodge");
    EXPECT_EQ(c.getSkill("Dodge").level, DiceCode(3, 1));
    EXPECT_FALSE(c.addSkill(nullptr));
    EXPECT_EQ(c.skills.size(), 4u);
}

TEST_F(Characters, ArmorBringsExactlyOnePenaltyWhileWorn) {
    Character& c = *fighter();
    auto* plate = new Armor("Salvage Plate", DiceCode(2, 0), DiceCode(1, 0), DiceCode(1, 0));
    auto* spare = new Armor("Salvage Plate", DiceCode(2, 0), DiceCode(1, 0), DiceCode(1, 0));
    auto* coat = new Armor("Oilskin Coat", DiceCode(1, 0), DiceCode(0, 1), DiceCode());
    auto* rope = new Item("Rope");
    auto* knife = new MeleeWeapon("Gutting Knife", "Blades", DiceCode(0, 2), 0, 0, true, DiceCode(4, 0));
    for (Item* i : std::initializer_list<Item*>{plate, spare, coat, rope, knife})
        c.addItem(i);

    c.equip(plate);
    c.equip(spare);
    EXPECT_EQ(c.armor, spare);
    EXPECT_EQ(countReason(c, "Armor"), 1);
    EXPECT_EQ(effectiveCode(c, "Blades"), DiceCode(3, 0));
    c.unequip(spare);
    EXPECT_EQ(c.armor, noArmor);
    EXPECT_EQ(countReason(c, "Armor"), 0);

    c.equip(coat);
    c.equip(rope);
    c.equip(knife);
    EXPECT_EQ(c.armor, coat);
    EXPECT_EQ(c.weapon, knife);
    EXPECT_TRUE(c.penalties.empty());
    c.unequip(coat);
    c.unequip(knife);
    EXPECT_EQ(c.armor, noArmor);
    EXPECT_EQ(c.weapon, unarmedWeapon);
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
                Character& c = *fighter();
                c.setHealth(from);
                c.actions = 2;
                EXPECT_EQ(c.takeDamage(margin), hit[band]) << from << " hit by " << margin;
                int to = after[from][band];
                EXPECT_EQ(c.health, to) << from << " hit by " << margin;
                EXPECT_EQ(countReason(c, "Wound"), wounds[to]) << from << " hit by " << margin;
                int expectedUnconscious = to == 4 || to == 5 ? -1 : 0;
                if (to == 3)
                    EXPECT_TRUE(c.unconscious >= 120 && c.unconscious <= 720 && c.unconscious % 12 == 0);
                else
                    EXPECT_EQ(c.unconscious, expectedUnconscious) << from << " hit by " << margin;
                bool knockedDown = band == 2;
                EXPECT_EQ(c.posture, knockedDown ? 2 : 0);
                EXPECT_EQ(c.actionsTaken, knockedDown ? -1 : 0);
                EXPECT_EQ(c.actions, knockedDown ? 0 : 2);
                EXPECT_EQ(countReason(c, "Stun"), band == 1 ? 1 : 0);
                EXPECT_EQ(c.stuns, band == 1 ? 1 : 0);
                delete &c;
            }
        }
    }
}

TEST_F(Characters, StunsAddUpToUnconsciousnessAndFadeWithTime) {
    Character& c = *fighter(3);
    EXPECT_EQ(c.takeDamage(0), Stunned);
    EXPECT_EQ(c.takeDamage(2), Stunned);
    EXPECT_EQ(c.takeDamage(3), Unconscious);
    EXPECT_EQ(c.health, Stunned);
    EXPECT_EQ(c.stuns, 3);
    EXPECT_EQ(countReason(c, "Stun Effect"), 3);
    EXPECT_TRUE(c.unconscious >= 24 && c.unconscious <= 144 && c.unconscious % 12 == 0);
    int asleep = c.unconscious;

    c.update(1);
    EXPECT_EQ(c.unconscious, asleep - 1);
    EXPECT_EQ(countReason(c, "Stun"), 3);
    c.update(1);
    EXPECT_EQ(countReason(c, "Stun"), 0);
    EXPECT_EQ(c.health, Stunned) << "a stun that ran out in this round still counted";
    c.update(1);
    EXPECT_EQ(c.health, Healthy);
    for (int round = 3; round < 359; ++round)
        c.update(1);
    EXPECT_EQ(c.stuns, 3);
    EXPECT_EQ(c.unconscious, 0);
    c.update(1);
    EXPECT_EQ(c.stuns, 0);
    EXPECT_TRUE(c.penalties.empty());

    Character& hurt = *fighter(3);
    hurt.setHealth(Wounded);
    EXPECT_EQ(hurt.takeDamage(3), Stunned);
    EXPECT_EQ(hurt.health, Wounded);
    EXPECT_EQ(hurt.stuns, 1);
    EXPECT_EQ(hurt.penalties.size(), 3u);
}

TEST_F(Characters, WoundsThatRunOutHealOneStepWhileTheWalkGoesOn) {
    Character& c = *fighter();
    c.setHealth(WoundedTwice);
    c.takeDamage(1);
    for (Penalty* p : c.penalties)
        if (p->reason == "Wound") p->duration = 2;
    c.update(1);
    EXPECT_EQ(c.health, WoundedTwice);
    c.update(1);
    // The first wound healed a step; setHealth replaced both wounds in the middle of the walk, so
    // the second, which would have run out in the same round, is gone and heals nothing.
    EXPECT_EQ(c.health, Wounded);
    ASSERT_EQ(countReason(c, "Wound"), 1);
    EXPECT_EQ(countReason(c, "Stun"), 0);
    EXPECT_EQ(c.penalties.back()->duration, -1);
    c.penalties.back()->duration = 1;
    c.update(1);
    EXPECT_EQ(c.health, Healthy);
    EXPECT_EQ(countReason(c, "Stun Effect"), 1);

    c.setHealth(MortallyWounded);
    c.update(1);
    EXPECT_EQ(c.unconscious, -1);
    c.takeDamage(0);
    c.setHealth(Healthy);
    EXPECT_EQ(c.unconscious, 0);
    EXPECT_EQ(countReason(c, "Wound"), 0);
    EXPECT_EQ(countReason(c, "Stun"), 1);
}

TEST_F(Characters, CopiesAreDeepAgeAndJoinTheFactionButNoList) {
    Character& c = *fighter();
    auto* plate = new Armor("Salvage Plate", DiceCode(2, 0), DiceCode(1, 0), DiceCode(1, 0));
    auto* knife = new MeleeWeapon("Gutting Knife", "Blades", DiceCode(0, 2), 0, 0, true, DiceCode(4, 0));
    c.addItem(plate);
    c.addItem(knife);
    c.equip(plate);
    c.equip(knife);
    c.takeDamage(0);
    Faction crew("Lantern Crew", 0.9f, 0.7f, 0.2f);
    crew.addMember(&c);

    auto* copy = new Character(c);
    EXPECT_EQ(allCharacters.size(), 1u);
    EXPECT_EQ(copy->name, "Mara Vell");
    ASSERT_EQ(copy->inventory.size(), 2u);
    EXPECT_EQ(copy->armor, copy->inventory.front());
    EXPECT_EQ(copy->weapon, copy->inventory.back());
    EXPECT_NE(copy->armor, plate);
    EXPECT_EQ(copy->getSkill("Blades").level, DiceCode(4, 0));
    EXPECT_NE(copy->skills.front(), c.skills.front());
    EXPECT_EQ(copy->penalties.size(), 3u);
    EXPECT_EQ(copy->faction, &crew);
    EXPECT_EQ(crew.members.size(), 2u);

    updateAll();
    EXPECT_EQ((*std::next(copy->penalties.begin()))->duration, 1) << "the copy's stun ages";
    delete copy;
    EXPECT_EQ(crew.members, (std::list<Character*>{&c}));
    EXPECT_EQ(updatables, (std::list<Updatable*>{&c}));
}

TEST_F(Characters, InitiativeIsSharedThroughTheFactionAndResetEachRound) {
    Character& loner = *fighter();
    loner.setInitiative(12);
    loner.setInitiative(7);
    EXPECT_EQ(loner.getInitiative(), 7);

    Character& member = *fighter();
    Faction crew("Lantern Crew", 0.9f, 0.7f, 0.2f);
    crew.addMember(&member);
    member.setInitiative(9);
    EXPECT_EQ(member.getInitiative(), 0) << "a new faction counts as rolled";
    member.resetCombatState();
    EXPECT_EQ(crew.initiative, -1);
    member.setInitiative(9);
    member.setInitiative(4);
    EXPECT_EQ(member.getInitiative(), 9);
    EXPECT_EQ(member.initiative, -1);

    member.actionsTaken = 2;
    member.moved = true;
    member.posture = 1;
    member.resetCombatState();
    EXPECT_EQ(crew.initiative, -1);
    EXPECT_EQ(member.actions, noValue);
    EXPECT_EQ(member.dodge, noValue);
    EXPECT_EQ(member.actionsTaken, 0);
    EXPECT_FALSE(member.moved);
    EXPECT_EQ(member.posture, 1);
}

TEST_F(Characters, FindCharacterSearchesPlayerCharactersOnly) {
    Character& pc = *fighter();
    auto* npc = new Character(true);
    npc->name = "Reef Hound";
    EXPECT_EQ(findCharacter("Mara Vell"), &pc);
    EXPECT_EQ(findCharacter("Reef Hound"), nullptr);
    EXPECT_EQ(allNpcs, (std::list<Character*>{npc}));
}
