// Attacks as the referee resolves them: the refusals in their order, cover from the target's cell,
// the target's standing in the round, the "Reaction Request" and its answers, hits, misses, damage
// and resistance, read in the report byte for byte.
#include "action_screen.h"
#include "combat/attack_action.h"

namespace {
using Captions = std::vector<std::string>;

class AttackActions : public ActionScreen {
  protected:
    void SetUp() override {
        ActionScreen::SetUp();
        // Han shoots up column 4 at 3 m, where his pistol needs 3; Greedo stands there.
        han = &fighter("Han", 4, 20, {{"Blaster", {4, 0}}, {"Brawling", {3, 0}}});
        greedo =
            &fighter("Greedo", 4, 17, {{"Dodge", {3, 0}}, {"Brawling Parry", {2, 0}}, {"Strength", {2, 0}}});
        han->actions = 3;
        pistol = new RangedWeapon("Pistol", "Blaster", {4, 0}, 1, {5, 10, 15, 20}, 2);
        han->addItem(pistol);
        han->equip(pistol);
    }
    AttackAction* attack(Character& attacker, Character& target) {
        return begin(new AttackAction(root, &attacker, &target, map));
    }
    Dialogue* request() { return captioned<Dialogue>(root, "Reaction Request"); }
    // The answers that the request offers, and its question.
    Captions offered() {
        Captions shown;
        Dialogue* asked = request();
        for (Window* w : asked ? asked->children : std::vector<Window*>{}) {
            if (auto* b = dynamic_cast<Button*>(w)) shown.push_back(b->caption);
            if (auto* l = dynamic_cast<Label*>(w)) shown.push_back(l->caption);
        }
        return shown;
    }
    void answer(const std::string& caption) {
        Dialogue* asked = request();
        auto* b = asked ? captioned<Button>(asked, caption) : nullptr;
        ASSERT_NE(b, nullptr) << caption;
        clickOn(b);
        EXPECT_EQ(request(), nullptr) << "the request closes";
    }
    // Leaves an attack where it stands, with its roll.
    void drop(AttackAction* action) {
        while (Roll* roll = front<Roll>())
            delete roll;
        delete action;
    }

    Character* han = nullptr;
    Character* greedo = nullptr;
    RangedWeapon* pistol = nullptr;
};
} // namespace

TEST_F(AttackActions, RefusalsComeInTheirOrderAndSpendNothing) {
    // Everything fails at first; each step puts one thing right, and the next refusal shows.
    pistol->ammo = 0;
    std::tie(han->actions, han->actionsTaken) = std::tuple(0, -1);
    auto* wound = new Penalty("Wound", {4, 0}, -1, "All");
    han->addPenalty(wound);
    placeCharacter(greedo, cell(4, 0));
    const std::pair<std::string, std::function<void()>> steps[] = {
        {"Nope: No more actions this round", [&] { han->actions = 1; }},
        {"Too exclusive: You're already doing something exclusive", [&] { han->actionsTaken = 0; }},
        {"Out of Range: Think of something else", [&] { placeCharacter(greedo, cell(4, 17)); }},
        {"No Dice: Due to your penalties your skill is 0D+0.\nBottom line: not gonna happen.",
         [&] { han->removePenalty(wound); }},
        {"Out of Ammo: Permaybehaps try reloading", [&] { pistol->ammo = 1; }},
    };
    for (const auto& [said, putRight] : steps) {
        auto before = std::tuple(han->actions, han->actionsTaken, pistol->ammo);
        EXPECT_EQ(attack(*han, *greedo), nullptr) << said;
        EXPECT_EQ(refusal(), said);
        EXPECT_EQ(std::tuple(han->actions, han->actionsTaken, pistol->ammo), before) << said;
        putRight();
    }
    EXPECT_NE(attack(*han, *greedo), nullptr);
}

// Only the target's cell gives cover: the worse of darkness and smoke, and protection on top. Then
// a reaction that stands takes the place of the difficulty, or after a full reaction comes on top of
// it; a target that lost the round cannot react; any other is asked.
TEST_F(AttackActions, CoverAndTheTargetsStandingMakeTheTargetNumberOrTheTargetIsAsked) {
    struct Case {
        bool ranged;
        int light, cover, protect; // dice
        int dodge, parry, taken;
        std::string lines; // after "Position adds cover of "; empty when the target is asked
        std::vector<int> dice = {};
    };
    constexpr int none = noValue;
    // clang-format off
    const Case cases[] = {
        {true, 0, 0, 0, none, none, -1, "0D (0)\nGreedo can't react.\nTotal difficulty is 3\n"},
        {true, 2, 3, 1, none, none, -1, "4D (18)\nGreedo can't react.\nTotal difficulty is 21\n",
         {6, 5, 4, 3}},
        {true, 3, 1, 0, none, none, -1, "3D (6)\nGreedo can't react.\nTotal difficulty is 9\n", {1, 2, 3}},
        {true, 0, 0, 0, 12, none, 1, "0D (0)\nGreedo's previous dodge roll was 12\nTotal difficulty is 12\n"},
        {true, 0, 0, 0, 12, none, -1, "0D (0)\nGreedo was fully dodging.\nTotal difficulty is 15\n"},
        {false, 0, 0, 0, none, 9, 1, "0D (0)\nGreedo's previous parry roll was 9\nTotal difficulty is 9\n"},
        {false, 0, 0, 0, 12, none, 1, ""},
        {true, 0, 0, 0, none, 9, 1, ""},
    };
    // clang-format on
    for (const Case& k : cases) {
        Cell* place = cell(4, k.ranged ? 17 : 19);
        std::tie(place->light, place->cover, place->protect) = std::tuple(k.light, k.cover, k.protect);
        placeCharacter(greedo, place);
        std::tie(greedo->dodge, greedo->parry, greedo->actionsTaken) = std::tie(k.dodge, k.parry, k.taken);
        k.ranged ? han->equip(pistol) : han->unequip(pistol);
        sharedRandom.seedWord(seedFor(k.dice));
        AttackAction* action = attack(*han, *greedo);
        ASSERT_NE(action, nullptr);
        std::string first = k.ranged ? "Han shoots Greedo at 3.0m\n" : "Han strikes Greedo at 1.0m\n";
        if (k.lines.empty()) {
            EXPECT_EQ(action->text->caption, first + "Position adds cover of 0D (0)\n");
            EXPECT_NE(request(), nullptr);
        } else {
            EXPECT_EQ(action->text->caption, first + "Position adds cover of " + k.lines);
            Roll* roll = front<Roll>();
            EXPECT_TRUE(roll && roll->character == han) << "the attack roll follows: " << k.lines;
        }
        drop(action);
    }
}

TEST_F(AttackActions, TheRequestOffersWhatTheTargetCanStillDo) {
    const std::string shot = "Greedo, any reaction to Han\ntaking a shot at you?";
    struct Case {
        int actions, taken;
        Captions shown;
    };
    const Case cases[] = {
        {1, 0, {shot, "Don't\nreact", "Use\naction", "Extra\naction"}},
        // Nothing done and no actions standing, none declared yet among them: a full reaction is open.
        {noValue, 0, {shot, "Don't\nreact", "Extra\naction", "Fully\nreact"}},
    };
    for (const Case& k : cases) {
        std::tie(greedo->actions, greedo->actionsTaken) = std::tie(k.actions, k.taken);
        AttackAction* action = attack(*han, *greedo);
        EXPECT_EQ(offered(), k.shown) << k.actions << ", " << k.taken;
        drop(action);
        EXPECT_EQ(request(), nullptr) << "the request goes with its attack";
    }
}

TEST_F(AttackActions, AHitIsDamagedAndResistedAMissSpendsTheRoundAllTheSame) {
    AttackAction* action = attack(*han, *greedo);
    answer("Don't\nreact");
    EXPECT_EQ(rolled(3), "Han Blaster") << "a tie hits";
    EXPECT_EQ(rolled(10), "Han Damage");
    // The pistol does energy damage; damage equal to the resistance is a stun, not nothing.
    EXPECT_EQ(rolled(10), "Greedo EResist");
    EXPECT_EQ(action->text->caption, "Han shoots Greedo at 3.0m\nPosition adds cover of 0D (0)\n"
                                     "Greedo is doing nothing\nTotal difficulty is 3\n"
                                     "Han rolled 3 and hit\nHan hits for 10 damage\n"
                                     "Greedo rolls resist of 10, is Stunned and is now Stunned\n");
    EXPECT_EQ(std::tuple(han->actions, han->actionsTaken, pistol->ammo, greedo->health),
              std::tuple(2, 1, 1, 6));
    EXPECT_TRUE(pressOk(action));

    action = attack(*han, *greedo);
    answer("Use\naction");
    EXPECT_EQ(rolled(12), "Greedo Dodge");
    EXPECT_EQ(rolled(9), "Han Blaster");
    EXPECT_EQ(action->text->caption, "Han shoots Greedo at 3.0m\nPosition adds cover of 0D (0)\n"
                                     "Greedo is using an action to react\n"
                                     "Greedo rolled dodge of 12\nTarget number is 12\n"
                                     "Han rolled 9 and missed\n");
    EXPECT_EQ(std::tuple(greedo->actions, greedo->actionsTaken, greedo->dodge), std::tuple(0, 1, 12));
    EXPECT_TRUE(pressOk(action));
    EXPECT_EQ(std::tuple(han->actions, han->actionsTaken, pistol->ammo), std::tuple(1, 2, 0))
        << "the last round";

    // A hit that the resistance outweighs leaves the target as it was.
    pistol->ammo = 1;
    pistol->damageType = 0;
    action = attack(*han, *greedo);
    EXPECT_EQ(rolled(20), "Han Blaster");
    EXPECT_EQ(rolled(5), "Han Damage");
    EXPECT_EQ(rolled(6), "Greedo PResist");
    EXPECT_TRUE(action->text->caption.ends_with("Greedo rolls resist of 6, is Healthy and is now Stunned\n"));
}

TEST_F(AttackActions, AnExtraActionIsFreeOnlyAsTheFirstThingAndAFullReactionGivesUpTheRound) {
    greedo->actions = noValue; // not declared yet
    auto* carbine = new RangedWeapon("Carbine", "Blaster", {5, 0}, 0, {5, 10, 15, 20}, 9);
    greedo->addItem(carbine);
    greedo->equip(carbine);
    Character& rook = fighter("Rook", 5, 17, {{"Brawling", {3, 0}}});
    rook.actions = 3;

    AttackAction* action = attack(*han, *greedo);
    answer("Extra\naction");
    EXPECT_EQ(std::pair(countReason(*greedo, "Reaction"), greedo->actionsTaken), std::pair(0, 1));
    EXPECT_EQ(rolled(8), "Greedo Dodge");
    EXPECT_EQ(rolled(2), "Han Blaster");
    EXPECT_TRUE(pressOk(action));

    // A parry after the dodge: a second thing done, at -1D. A carbine in hand parries by brawling.
    action = attack(rook, *greedo);
    EXPECT_EQ(offered(), (Captions{"Greedo, any reaction to Rook\ntaking a swing at you?", "Don't\nreact",
                                   "Extra\naction"}));
    answer("Extra\naction");
    EXPECT_EQ(std::pair(countReason(*greedo, "Reaction"), greedo->actionsTaken), std::pair(1, 2));
    EXPECT_EQ(rolled(6), "Greedo Brawling Parry");
    EXPECT_EQ(rolled(2), "Rook Brawling");
    EXPECT_EQ(action->text->caption,
              "Rook strikes Greedo at 0.9m\nPosition adds cover of 0D (0)\n"
              "Greedo is taking an extra action to react\n"
              "Greedo rolled parry of 6\nTarget number is 6\nRook rolled 2 and missed\n");
    EXPECT_TRUE(pressOk(action));

    // Empty hands parry with "Melee Parry"; a full reaction adds the roll on top of the difficulty,
    // for this attack and every later one of the round, and leaves no dodge.
    Character& vos = fighter("Vos", 6, 17, {{"Melee Parry", {3, 0}}});
    vos.actions = noValue;
    action = attack(rook, vos);
    answer("Fully\nreact");
    EXPECT_EQ(std::pair(vos.actions, vos.actionsTaken), std::pair(0, -1));
    EXPECT_EQ(rolled(6), "Vos Melee Parry");
    EXPECT_EQ(rolled(11), "Rook Brawling");
    EXPECT_EQ(action->text->caption,
              "Rook strikes Vos at 0.9m\nPosition adds cover of 0D (0)\n"
              "Vos is doing a full reaction\nVos rolled parry of 11\nTarget number is 11\n"
              "Rook rolled 11 and hit\n");
    drop(action);
    action = attack(rook, vos);
    EXPECT_TRUE(action->text->caption.ends_with("Vos was fully parrying.\nTotal difficulty is 11\n"));
    drop(action);
    action = attack(*han, vos);
    EXPECT_TRUE(action->text->caption.ends_with("Vos can't react.\nTotal difficulty is 4\n"));
    drop(action);
}
