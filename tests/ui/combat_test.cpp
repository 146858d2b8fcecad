// Combat rounds on the main screen, worked as a referee works them: characters of the sample campaign
// dragged from the Character List onto the map, initiative typed into the dice roller, actions
// declared, turns passed with the menu, moves, attacks and throws from the map. Shots: combat_preparing,
// _rolling, _declaring, _acting; fight_way, _move_report, _reaction_request, _attack_report,
// _timer_window, _grenade_report.
#include <gmock/gmock.h>

#include <filesystem>

#include "catalogue_screen.h"
#include "combat/action_window.h"
#include "combat/attack_action.h"
#include "combat/combat.h"
#include "combat/move_action.h"
#include "combat/roll.h"
#include "combat/throw_action.h"
#include "combat/timer_window.h"
#include "editors/list_window.h"
#include "platform/glfw2.h"
#include "rules/updatable.h"
#include "shell/hexfold.h"
#include "toolkit/message_box.h"
#include "toolkit/select_button.h"
#include "unit/map_test.h"

using ::testing::ElementsAre;

namespace {

class CombatRounds : public CatalogueScreen {
  protected:
    void SetUp() override {
        CatalogueScreen::SetUp();
        if (HasFatalFailure()) return;
        delete root;
        root = app = new Hexfold();
        combat = static_cast<Combat*>(app->children.at(5));
        // The sample map costs a tenth of a second a frame in software under the sanitizers: these
        // fights take place on 12 x 8 cells of a map file of their own, shown only for what happens
        // on the map.
        std::string field = (std::filesystem::temp_directory_path() / "hexfold-field-XXXXXX").string();
        ASSERT_TRUE(mkdtemp(field.data()) && chdir(field.c_str()) == 0);
        HexMap(nullptr, 12, 8).save();
        combat->loadDefaultMap();
        std::filesystem::remove_all(field);
        ASSERT_EQ(chdir(ui::campaignDir().c_str()), 0);
        (map = combat->map)->visible = false;
        map->camera.placeAt({4.5f, 4, 11});
        std::tie(map->camera.halfWidth, map->camera.halfHeight) =
            std::pair(map->viewWidth / 2000, -map->viewHeight / 2000); // the lens that the draw sets
    }

    Cell* cell(int column, int row) { return at(*map, column, row); }
    // The pointer comes onto the map, then moves to the cell: only a move on the map tells it.
    void pointAt(Cell* c, bool click = false) {
        auto [x, y] = pixelOf(*map, c->centre);
        map->visible = true;
        movePixels(int(x) + 6, int(y));
        movePixels(int(x), int(y));
        if (click) press(), release();
        map->visible = false;
    }
    void shot(const std::string& name) {
        map->visible = true, frame(), guidePicture(name), map->visible = false;
    }
    // From the Character List, which the dock opens, put aside over the map's far corner.
    void join(const std::string& name, Cell* c) {
        if (!app->characterList)
            clickOn(app->children.at(0)), app->characterList->x = app->characterList->y = 75;
        Rect from = screenRect(entry(app->characterList, findCharacter(name)));
        auto [x, y] = pixelOf(*map, c->centre);
        map->visible = true;
        drag(from.centreX(), from.centreY(), x / pixelsPerUnitX, y / pixelsPerUnitY);
        map->visible = false;
    }
    template <class W> W* open() { return inFront<W>(combat); }
    // A window built where the pointer stands is only hit after the pointer moved.
    void press(Window* w) {
        if (!w) return ADD_FAILURE() << "nothing to press";
        Rect r = screenRect(w);
        if (toPixelX(r.centreX()) == mouseX && toPixelY(r.centreY()) == mouseY)
            moveTo(r.centreX() + 0.3f, r.centreY());
        click(r.centreX(), r.centreY());
    }
    using UiTest::press;
    // The referee's steps, each logged with who takes it: "r9" types a 9 into the dice roller and
    // presses "Done", "d2" declares 2 actions, "+Gaff" chooses that weapon, and any other step
    // presses that button of the menu.
    void play(std::initializer_list<std::string> steps) {
        for (const std::string& s : steps) {
            Roll* roll = open<Roll>();
            log.push_back(s[0] == 'r' && roll ? roll->character->name + " " + roll->name + " " + s.substr(1)
                                              : combat->current->name + " " + s);
            if (s[0] == 'r' || s[0] == 'd') {
                if ((s[0] == 'r' && !roll) || (s[0] == 'd' && !open<NumActionRequest>()))
                    return ADD_FAILURE() << s;
                type(s.substr(1));
                tap(platform::KEY_ENTER);
                if (roll) press(roll->rollButton);
            } else if (s[0] == '+') {
                press(combat->actionWindow->weaponChoice->button);
                press(captioned<Button>(combat->actionWindow->weaponChoice->list, s.substr(1)));
            } else {
                press(captioned<Button>(combat->actionWindow, s));
            }
        }
    }
    // The button with this caption of the dialogue with this title.
    void answer(const std::string& title, const std::string& caption) {
        auto* d = captioned<Dialogue>(combat, title);
        press(d ? captioned<Button>(d, caption) : nullptr);
    }
    // The message in front, "caption: text", which goes with its OK.
    std::string told() {
        auto* box = open<MessageBox>();
        if (!box) return "no message";
        std::string said = box->caption + ": " + box->text->caption;
        press(captioned<Button>(box, "OK"));
        return said;
    }
    void remove(const std::string& name) {
        for (auto* b : all<DeleteButton<Combat, Character>>(combat->listWindow))
            if (b->item->name == name) return press(b);
        ADD_FAILURE() << "no X for " << name;
    }
    // The combatants in their order, which their list shows.
    Names order() {
        Names listed;
        for (auto* e : all<ListEntry<Character>>(combat->listWindow))
            listed.push_back(e->caption);
        EXPECT_EQ(listed, names(combat->combatants)) << "the list shows the combatants";
        return listed;
    }
    // The weapon in hand, the others offered, and "Reload" if it is there.
    std::string menuShows() {
        std::string text = combat->actionWindow->weaponChoice->button->caption;
        for (Window* e : combat->actionWindow->weaponChoice->list->children)
            text += "|" + static_cast<Button*>(e)->caption;
        return text + (captioned<Button>(combat->actionWindow, "Reload") ? " Reload" : "");
    }

    Hexfold* app = nullptr;
    Combat* combat = nullptr;
    Map* map = nullptr;
    ui::EventLog log;
};

TEST_F(CombatRounds, TurnsWalkTheListInPassesAndTheRoundEndsByItselfWhenTheLastActionIsSpent) {
    join("Iselde Quay", cell(1, 1));
    join("Juno Marrow", cell(3, 1));
    EXPECT_EQ(std::tuple(combat->x, combat->y, combat->width, map->parent, std::lround(map->viewLeft),
                         std::lround(map->viewTop), std::lround(map->viewHeight)),
              std::tuple(0.0f, 3.0f, 100.0f, (Window*)combat, 215l, 23l, 745l));
    // Until someone acts, a click on the map says nothing and the pointer proposes no way.
    pointAt(cell(1, 1), true);
    pointAt(cell(3, 4));
    shot("combat_preparing");
    press(combat->beginButton);
    pointAt(cell(1, 1), true);
    press(open<Roll>()->entryEdit);
    shot("combat_rolling");
    play({"r9", "r5"});
    pointAt(cell(1, 1), true);
    pointAt(cell(4, 4));
    press(open<NumActionRequest>()->edit);
    shot("combat_declaring");
    EXPECT_TRUE(open<MessageBox>() == nullptr && map->pendingPath.empty());
    play({"d2"});
    pointAt(cell(3, 5));
    EXPECT_FALSE(map->pendingPath.empty()) << "acting: the way is proposed";
    shot("combat_acting");
    pointAt(cell(1, 1), true);
    EXPECT_EQ(told(), "Selfreferential: Yes, that's you. What now?");
    holdKey(platform::KEY_RSHIFT);
    pointAt(cell(3, 4), true);
    releaseKey(platform::KEY_RSHIFT);
    pointAt(cell(5, 4));
    play({"Other"});
    EXPECT_TRUE(map->committedPath.empty() && map->pendingPath.empty()) << "the ways went with the turn";
    play({"d1", "Other", "Other"});
    // Juno first now. "End Turn" spends nothing; Mara joins in the middle of the round, and Iselde
    // loses the rest of it.
    play({"r4", "r8", "d2", "End Turn", "d2", "Other"});
    join("Mara Vell", cell(5, 1));
    EXPECT_EQ(std::pair(order().back(), findCharacter("Mara Vell")->getInitiative()),
              std::pair(std::string("Mara Vell"), -1));
    findCharacter("Iselde Quay")->takeDamage(5);
    play({"Other", "d1", "Other", "Other", "r3"});
    EXPECT_THAT(log, ElementsAre("Iselde Quay Perception 9", "Juno Marrow Perception 5", "Iselde Quay d2",
                                 "Iselde Quay Other", "Juno Marrow d1", "Juno Marrow Other",
                                 "Iselde Quay Other", "Iselde Quay Perception 4", "Juno Marrow Perception 8",
                                 "Juno Marrow d2", "Juno Marrow End Turn", "Iselde Quay d2",
                                 "Iselde Quay Other", "Juno Marrow Other", "Mara Vell d1", "Mara Vell Other",
                                 "Juno Marrow Other", "Juno Marrow Perception 3"));
}

TEST_F(CombatRounds, AFactionRollsOnceByItsFirstMemberAndTiesGoToPerceptionThenToTheCoin) {
    Character *mara = findCharacter("Mara Vell"), *iselde = findCharacter("Iselde Quay"),
              *tobin = findCharacter("Tobin Greaves"), *juno = findCharacter("Juno Marrow");
    // "Perception" after penalties: Mara 3D+2, Iselde 3D+0, Tobin and Juno 2D+1. Mara leads the crew.
    mara->faction->addMember(iselde);
    join("Tobin Greaves", cell(1, 1));
    join("Iselde Quay", cell(3, 1));
    join("Juno Marrow", cell(5, 1));
    join("Mara Vell", cell(7, 1));
    press(combat->beginButton);
    play({"r7", "r9"});
    EXPECT_THAT(log, ElementsAre("Mara Vell Perception 7", "Juno Marrow Perception 9"));
    EXPECT_EQ(std::tuple(tobin->getInitiative(), iselde->getInitiative(), mara->getInitiative()),
              std::tuple(7, 7, 7));
    EXPECT_THAT(order(), ElementsAre("Juno Marrow", "Mara Vell", "Iselde Quay", "Tobin Greaves"));
    // The one whose turn it is stays; the others leave the list and the map, and keep their cells.
    for (const char* name : {"Juno Marrow", "Tobin Greaves", "Iselde Quay"})
        remove(name);
    EXPECT_THAT(order(), ElementsAre("Juno Marrow", "Mara Vell"));
    EXPECT_EQ(std::tuple(tobin->cell, tobin->cell->occupant, iselde->cell->occupant, juno->cell->occupant),
              std::tuple(cell(1, 1), nullptr, nullptr, juno));
    // Juno's "Perception" raised to Mara's: with initiative equal too, the coin decides, for the
    // later one in the list against the one before it.
    juno->addPenalty(new Penalty("Keen eyes", {-1, -1}, -1, "Perception"));
    press(open<NumActionRequest>()->edit);
    for (uint32_t side : {0, 1}) {
        uint32_t seed = 1;
        for (RandomSource r; r.seedWord(seed), r.randInt(1) != side;)
            ++seed;
        combat->coin.seedWord(seed);
        play({"d0", "End Turn", "d0", "End Turn", "r5", "r5"});
        // Heads puts Mara before Juno; tails then leaves Juno behind her.
        EXPECT_THAT(order(), ElementsAre("Mara Vell", "Juno Marrow")) << "the coin showed " << side;
    }
}

TEST_F(CombatRounds, ADeclarationCostsADieForEachActionBeyondTheFirstAndTheUnconsciousOnlyWaitForTime) {
    auto panel = [&] {
        return std::tuple(combat->beginButton->visible, combat->nextButton->visible, combat->current,
                          combat->busy, open<Roll>());
    };
    press(combat->beginButton);
    EXPECT_EQ(panel(), std::tuple(true, false, nullptr, true, nullptr)) << "nobody to fight";
    Character* iselde = findCharacter("Iselde Quay");
    join("Iselde Quay", cell(1, 1));
    press(combat->beginButton);
    play({"r9"});
    // Nothing, or a number below 0, leaves the dialogue waiting.
    tap(platform::KEY_ENTER);
    type("1-");
    tap(platform::KEY_ENTER);
    EXPECT_EQ(std::pair(iselde->actions, combat->busy), std::pair(noValue, true));
    struct Case {
        int taken; // actions already taken in this round: a reaction
        std::string declared;
        int penalty; // dice of "Actions" on everything for this round; 0 for none
    };
    for (const Case& c : {Case{0, "1", 0}, Case{0, "3", 2}, Case{1, "1", 1}, Case{0, "0", -1}}) {
        iselde->actionsTaken = c.taken;
        play({"d" + c.declared});
        std::vector<std::tuple<DiceCode, int, std::string>> found, expected;
        for (Penalty* p : iselde->penalties)
            if (p->reason == "Actions") found.emplace_back(p->dice, p->duration, p->applyTo);
        if (c.penalty) expected.emplace_back(DiceCode(c.penalty), 1, "All");
        EXPECT_EQ(found, expected) << c.declared << " declared";
        while (iselde->actions > 0)
            play({"Other"});
        if (c.penalty < 0) iselde->unconscious = 3; // knocked out before the round ends
        if (iselde->actions == 0) play({"End Turn"});
        if (c.penalty >= 0) play({"r9"});
    }
    EXPECT_EQ(panel(), std::tuple(false, true, nullptr, true, nullptr)) << "nobody can act";
    press(combat->nextButton);
    EXPECT_EQ(std::pair(iselde->unconscious, combat->nextButton->visible), std::pair(1, true))
        << "a round at the end of the last, one more with \"Next Round\"";
    remove("Iselde Quay");
    press(combat->nextButton);
    EXPECT_EQ(panel(), std::tuple(true, false, nullptr, true, nullptr)) << "back to preparing";
}

TEST_F(CombatRounds, TheMenuChangesWeaponsReloadsAndPassesTheTurnButNeverWhileARollOrTheDeclarationWaits) {
    Character& rook = person("Rook", {{"Perception", {2, 0}}}); // carries nothing
    Character* mara = findCharacter("Mara Vell");
    auto* pistol = static_cast<RangedWeapon*>(mara->weapon);
    pistol->ammo = pistol->maxAmmo; // loaded before the fight
    auto* gaff = new MeleeWeapon("Gaff", "Clubs", {1, 0}, 0, 1, true, {});
    mara->addItem(gaff);
    join("Rook", cell(1, 1));
    join("Mara Vell", cell(3, 1));
    press(combat->beginButton);
    play({"r9", "r4", "Other", "End Turn"});
    EXPECT_EQ(std::tuple(combat->current, rook.actions, menuShows()),
              std::tuple(&rook, noValue, std::string("Unarmed")))
        << "nothing spent while the declaration waits; a single entry, no reload";
    press(open<NumActionRequest>()->edit);
    play({"d2", "Other", "d2"});
    EXPECT_EQ(menuShows(), "Harpoon Pistol|Gaff|Unarmed") << "a full gun needs no reload";
    pistol->use(); // a shot
    play({"+Gaff"});
    EXPECT_EQ(std::tuple(mara->weapon, mara->actions, combat->current), std::tuple(gaff, 1, &rook));
    play({"Other", "+Harpoon Pistol"});
    // Her last action ended the round. While the initiative is rolled, the menu stays as it was
    // and does nothing.
    play({"Other", "End Turn", "+Gaff"});
    EXPECT_EQ(std::tuple(mara->weapon, mara->actions, open<Roll>()->character),
              std::tuple(pistol, noValue, &rook));
    press(open<Roll>()->entryEdit);
    play({"r9", "r4", "d1", "Other", "d2"});
    EXPECT_EQ(menuShows(), "Harpoon Pistol|Gaff|Unarmed Reload") << "the shot shows at her next turn";
    // The gaff goes while the menu offers it, as a sheet's "X" takes it: its entry chooses nothing.
    press(combat->actionWindow->weaponChoice->button);
    mara->inventory.remove(gaff);
    delete gaff;
    press(captioned<Button>(combat->actionWindow->weaponChoice->list, "Gaff"));
    EXPECT_EQ(std::tuple(mara->weapon, mara->actions, menuShows()),
              std::tuple(pistol, 2, std::string("Harpoon Pistol|Unarmed Reload")));
    play({"Reload"});
    EXPECT_EQ(std::tuple(pistol->ammo, mara->actions, combat->current), std::tuple(pistol->maxAmmo, 1, mara));
}

// Two sides fight three rounds through the panel alone: the mouse on the map and the menu, the dice
// typed in. Shots: fight_move_report, fight_reaction_request, fight_timer_window, fight_grenade_report.
TEST_F(CombatRounds, AWholeFightMovesAttacksAndThrowsUntilTheGrenadeGoesOffTwoRoundsLater) {
    Character *mara = findCharacter("Mara Vell"), *tobin = findCharacter("Tobin Greaves"),
              *iselde = findCharacter("Iselde Quay");
    auto* pistol = static_cast<RangedWeapon*>(mara->weapon);
    const int rounds = pistol->ammo;
    Grenade* bomb = nullptr;
    for (Item* item : iselde->inventory)
        if (item->name == "Static Bomb") bomb = static_cast<Grenade*>(item);
    ASSERT_TRUE(bomb);
    cell(7, 5)->difficulty = 16; // a slick of oil across Mara's way: a normal run over it needs 16
    join("Mara Vell", cell(7, 7));
    join("Tobin Greaves", cell(2, 7));
    join("Iselde Quay", cell(1, 1));
    press(combat->beginButton);
    press(open<Roll>()->entryEdit);
    // The crew rolls once, by Mara; Tobin's "Perception" is the lower, so he goes after her.
    play({"r12", "r8", "d2"});
    EXPECT_THAT(order(), ElementsAre("Mara Vell", "Tobin Greaves", "Iselde Quay"));

    // Mara runs six metres up her column, slips on the oil, and gets halfway: three of seven cells.
    pointAt(cell(7, 1));
    shot("fight_way");
    pointAt(cell(7, 1), true);
    auto* move = open<MoveAction>();
    ASSERT_TRUE(move);
    EXPECT_TRUE(combat->busy) << "the map and the menu wait for the action";
    play({"r11"});
    EXPECT_EQ(move->text->caption, "Mara Vell is moving at normal speed\nTerrain difficulty is 16\n"
                                   "Total difficulty is 16\nSlip, -3D for remaining round, -1D next round\n");
    EXPECT_EQ(mara->cell, cell(7, 4));
    shot("fight_move_report");
    press(captioned<Button>(move, "OK"));
    EXPECT_EQ(combat->current, tobin) << "OK passes the turn";
    play({"d1", "Other", "d2", "+Static Bomb"});

    // Mara shoots; Iselde dodges with an extra action, is hit, and resists.
    pointAt(cell(1, 1), true);
    auto* request = captioned<Dialogue>(combat, "Reaction Request");
    ASSERT_TRUE(request);
    EXPECT_TRUE(captioned<Label>(request, "Iselde Quay, any reaction to Mara Vell\ntaking a shot at you?"));
    shot("fight_reaction_request");
    answer("Reaction Request", "Extra\naction");
    play({"r9", "r14", "r12", "r10"});
    auto* attack = open<AttackAction>();
    ASSERT_TRUE(attack);
    EXPECT_EQ(
        attack->text->caption,
        "Mara Vell shoots Iselde Quay at 5.4m\nPosition adds cover of 0D (0)\nIselde Quay is taking an extra "
        "action to react\n"
        "Iselde Quay rolled dodge of 9\nTarget number is 9\nMara Vell rolled 14 and hit\n"
        "Mara Vell hits for 12 damage\nIselde Quay rolls resist of 10, is Stunned and is now Stunned\n");
    shot("fight_attack_report");
    press(captioned<Button>(attack, "OK"));

    // Iselde throws the bomb at a free cell with a fuse of one round.
    EXPECT_EQ(combat->current, iselde);
    pointAt(cell(4, 3), true);
    auto* toss = open<ThrowAction>();
    ASSERT_TRUE(toss);
    shot("fight_timer_window");
    type("1");
    tap(platform::KEY_ENTER);
    play({"r15"});
    EXPECT_EQ(toss->text->caption, "Iselde Quay throws grenade at 2.7m\nDifficulty is 5\nIselde Quay sets "
                                   "grenade to explode after 1 rounds\nIselde Quay rolled 15 and hit\n");
    shot("fight_grenade_report");
    press(captioned<Button>(toss, "OK"));
    // Her last action ended the round: the bomb burns on.
    EXPECT_EQ(std::pair(std::ranges::count(updatables, static_cast<Updatable*>(bomb)), open<MessageBox>()),
              std::pair(1l, (MessageBox*)nullptr));

    // Round 2. A free cautious step keeps the turn; a walk that takes the last action passes it. A
    // blow out of reach is refused and costs nothing.
    play({"r7", "r6", "d1"});
    pointAt(cell(7, 2));
    pointAt(cell(7, 2), true);
    EXPECT_EQ(std::tuple(mara->cell, combat->current, combat->busy, open<MoveAction>()),
              std::tuple(cell(7, 2), mara, false, nullptr));
    play({"Other", "d1"});
    pointAt(cell(1, 1), true);
    EXPECT_EQ(told(), "Out of Range: Think of something else");
    EXPECT_EQ(std::tuple(tobin->actions, combat->current, combat->busy), std::tuple(1, tobin, false));
    pointAt(cell(2, 1));
    pointAt(cell(2, 1), true);
    EXPECT_EQ(std::tuple(tobin->cell, combat->current), std::tuple(cell(2, 1), iselde));
    // Her last action ends the round, and the bomb goes off at its end.
    play({"d1", "Other"});
    EXPECT_EQ(combat->children.back(), open<MessageBox>()) << "in front of the initiative roll";
    EXPECT_EQ(told(), "Kaboom: A grenade went off and all I got was this lousy message box");
    EXPECT_TRUE(updatables.end() == std::ranges::find(updatables, static_cast<Updatable*>(bomb)));

    // Round 3: everyone as the fight left them.
    EXPECT_EQ(std::tuple(mara->cell, mara->health, pistol->ammo, mara->moveSpeed),
              std::tuple(cell(7, 2), 0, rounds - 1, 1));
    EXPECT_EQ(std::tuple(tobin->cell, tobin->health, tobin->moveSpeed), std::tuple(cell(2, 1), 0, 2));
    EXPECT_EQ(std::tuple(iselde->cell, iselde->health, iselde->weapon, iselde->inventory.size()),
              std::tuple(cell(1, 1), 6, (Weapon*)unarmedWeapon, 4u));
    // The panel goes with a run open and its dice waiting: the run clears its way on a map that
    // still stands.
    press(open<Roll>()->entryEdit); // the keys went with the box
    play({"r5", "r4", "d1"});
    pointAt(cell(7, 6));
    pointAt(cell(7, 6), true);
    EXPECT_TRUE(open<MoveAction>() && open<Roll>());
    EXPECT_THAT(log, ElementsAre("Mara Vell Perception 12", "Iselde Quay Perception 8", "Mara Vell d2",
                                 "Mara Vell Running 11", "Tobin Greaves d1", "Tobin Greaves Other",
                                 "Iselde Quay d2", "Iselde Quay +Static Bomb", "Iselde Quay Dodge 9",
                                 "Mara Vell Pistols 14", "Mara Vell Damage 12", "Iselde Quay PResist 10",
                                 "Iselde Quay Thrown Weapons 15", "Mara Vell Perception 7",
                                 "Iselde Quay Perception 6", "Mara Vell d1", "Mara Vell Other",
                                 "Tobin Greaves d1", "Iselde Quay d1", "Iselde Quay Other",
                                 "Mara Vell Perception 5", "Iselde Quay Perception 4", "Mara Vell d1"));
}

} // namespace
