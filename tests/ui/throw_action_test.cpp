// Throws as the referee resolves them: the refusals, the fuse set in the timer window, the throw,
// the scatter of a miss by range and direction, and the grenade leaving the thrower's hands to go
// off at once or rounds later.
#include "action_screen.h"
#include "combat/throw_action.h"
#include "combat/timer_window.h"
#include "rules/updatable.h"
#include "toolkit/input_state.h"

namespace {
class ThrowActions : public ActionScreen {
  protected:
    void SetUp() override {
        ActionScreen::SetUp();
        // Kira throws up column 4; with these ranges the difficulty is the distance.
        kira = &fighter("Kira", 4, 21, {{"Grenade", {3, 0}}});
        grenade = inHand(true);
    }
    // A new grenade in Kira's hand, and one action for it; the combat panel listens for the
    // explosion when it starts a throw.
    Grenade* inHand(bool listened) {
        auto* g = new Grenade("Frag", "Grenade", {}, {}, {5, 10, 15, 20}, 0);
        if (listened) g->explodeHandler.bind(this, &ThrowActions::exploded);
        kira->addItem(g);
        kira->equip(g);
        std::tie(kira->actions, kira->actionsTaken) = std::tuple(1, 0);
        return g;
    }
    ThrowAction* throwAt(int column, int row) {
        map->hovered = cell(column, row);
        return begin(new ThrowAction(root, kira, map));
    }
    // "Impact", or what is typed before Enter.
    void setTimer(ThrowAction* action, const std::string& typed) {
        TimerWindow* timer = nullptr;
        for (Window* w : action->children)
            if (auto* t = dynamic_cast<TimerWindow*>(w)) timer = t;
        ASSERT_NE(timer, nullptr);
        ASSERT_EQ(focusWindow, timer->timerEdit) << "the keys go to the field at once";
        if (typed == "Impact") {
            clickOn(timer->impactButton);
        } else {
            type(typed);
            tap(platform::KEY_ENTER);
        }
    }
    // As the combat panel: the explosion is told, and the grenade deleted.
    int exploded(Grenade* g) {
        explosions.push_back(okShown);
        delete g;
        return 0;
    }
    bool gone() const {
        return kira->weapon == unarmedWeapon &&
               std::ranges::find(kira->inventory, static_cast<Item*>(grenade)) == kira->inventory.end();
    }

    Character* kira = nullptr;
    Grenade* grenade = nullptr;
    // For each explosion: whether the throw's OK button stood already.
    std::vector<bool> explosions;
    bool okShown = false;
};
} // namespace

// The order of the refusals is the attack's; what is the throw's own is its range and its skill.
TEST_F(ThrowActions, AThrowBeyondTheGrenadesRangeOrSkillIsRefusedAndTheGrenadeStaysInHand) {
    auto* wound = new Penalty("Wound", {3, 0}, -1, "All");
    kira->addPenalty(wound);
    EXPECT_EQ(throwAt(4, 1), nullptr) << "20 m: the end of the last range";
    EXPECT_EQ(refusal(), "Out of Range: Think of something else");
    EXPECT_EQ(throwAt(4, 2), nullptr) << "19 m";
    EXPECT_EQ(refusal(),
              "No Dice: Due to your penalties your skill is 0D+0.\nBottom line: not gonna happen.");
    EXPECT_EQ(std::tuple(kira->weapon, kira->actions, kira->actionsTaken), std::tuple(grenade, 1, 0));
    kira->removePenalty(wound);
    EXPECT_NE(throwAt(4, 2), nullptr);
}

TEST_F(ThrowActions, AMissScattersByTheRangeInOneOfSixDirections) {
    struct Case {
        int row;               // the target cell in column 4: 8, 12 or 18 m off
        std::vector<int> dice; // the scatter dice, then the direction
        std::string lines;
    };
    const Case cases[] = {
        {13, {3, 1}, "missed by 3m\nThrow was too far\nGrenade landed at (3.50,10.50)\n"},
        {13, {3, 2}, "missed by 3m\nThrow was to the far right\nGrenade landed at (5.75,12.00)\n"},
        {13, {3, 3}, "missed by 3m\nThrow was to the right\nGrenade landed at (6.50,13.50)\n"},
        {13, {3, 4}, "missed by 3m\nThrow was too short\nGrenade landed at (3.50,16.50)\n"},
        {13, {3, 5}, "missed by 3m\nThrow was to the left\nGrenade landed at (0.50,13.50)\n"},
        {13, {3, 6}, "missed by 3m\nThrow was to the far left\nGrenade landed at (2.00,11.50)\n"},
        // Two dice beyond the second range, three beyond the third.
        {9, {2, 3, 4}, "missed by 5m\nThrow was too short\nGrenade landed at (3.50,14.50)\n"},
        {3, {1, 1, 1, 3}, "missed by 3m\nThrow was to the right\nGrenade landed at (6.50,3.50)\n"},
        {3, {6, 6, 6, 1}, "missed by 18m\nThrow was too far\nGrenade is off the map"},
    };
    for (const Case& k : cases) {
        Grenade* frag = inHand(true);
        ThrowAction* action = throwAt(4, k.row);
        ASSERT_NE(action, nullptr);
        setTimer(action, "1");
        sharedRandom.seedWord(seedFor(k.dice));
        EXPECT_EQ(rolled(0), "Kira Grenade");
        std::string distance = std::to_string(21 - k.row);
        EXPECT_EQ(action->text->caption,
                  "Kira throws grenade at " + distance + ".0m\nDifficulty is " + distance +
                      "\nKira sets grenade to explode after 1 rounds\nKira rolled 0 and " + k.lines);
        EXPECT_TRUE(pressOk(action));
        // Wherever it came down, it burns.
        EXPECT_EQ(std::ranges::count(updatables, static_cast<Updatable*>(frag)), 1);
    }
}

// Hit or missed, the grenade leaves the thrower's hands. On impact ("Impact", or Enter on the empty
// field) it goes off in the step of the roll, before the OK button shows; a fuse of n goes off at the
// (n + 1)-th end of round. With nobody listening it is gone all the same, and one still burning at
// the end is freed with the other updatables.
TEST_F(ThrowActions, TheTimerSetsWhenTheThrownGrenadeGoesOff) {
    struct Case {
        std::string timer, line;
        int roll, rounds; // ends of round before it goes off; -1: on impact
        bool listened;
    };
    const Case cases[] = {
        {"Impact", "explode on impact\n", 8, -1, true}, {"", "explode on impact\n", 2, -1, false},
        {"0", "explode after 0 rounds\n", 8, 0, true},  {"2", "explode after 2 rounds\n", 2, 2, true},
        {"5", "explode after 5 rounds\n", 8, 5, false},
    };
    for (const Case& k : cases) {
        grenade = inHand(k.listened);
        explosions.clear();
        ThrowAction* action = throwAt(4, 13);
        setTimer(action, k.timer);
        sharedRandom.seedWord(seedFor({1, 1}));
        EXPECT_EQ(rolled(k.roll), "Kira Grenade");
        EXPECT_TRUE(action->text->caption.starts_with("Kira throws grenade at 8.0m\nDifficulty is 8\n"
                                                      "Kira sets grenade to " +
                                                      k.line + "Kira rolled "))
            << action->text->caption;
        EXPECT_TRUE(gone()) << k.timer;
        EXPECT_EQ(std::pair(kira->actions, kira->actionsTaken), std::pair(0, 1)) << k.timer;
        EXPECT_EQ(explosions, std::vector<bool>(k.listened && k.rounds < 0, false)) << k.timer;
        EXPECT_TRUE(pressOk(action)) << k.timer;
        okShown = true;
        for (int round = 0; round < k.rounds; ++round)
            updateAll();
        EXPECT_TRUE(k.rounds < 0 || explosions.empty()) << k.timer;
        updateAll();
        EXPECT_EQ(explosions.size(), k.listened ? 1u : 0u) << k.timer;
        okShown = false;
    }
}
