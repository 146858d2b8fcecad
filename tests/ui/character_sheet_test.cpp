// The character sheet with the real pointer and keys: layout, equipment, penalties, drops of items
// and skills, saving, and handlers that delete windows while they run. The sample campaign's sheet
// is shot as build/screenshots/character_sheet.png.
#include <gmock/gmock.h>

#include <unistd.h>

#include <filesystem>

#include "catalogue_screen.h"
#include "combat/roll.h"
#include "editors/character_sheet.h"
#include "editors/delete_button.h"
#include "editors/item_editor.h"
#include "editors/list_window.h"
#include "platform/glfw2.h"
#include "rules/character_files.h"
#include "toolkit/button.h"
#include "toolkit/edit.h"
#include "toolkit/font.h"
#include "toolkit/message_box.h"
#include "toolkit/select_button.h"

using ::testing::ElementsAre;

namespace {

using SkillButton = DeleteButton<Character, Skill>;
using ItemButton = DeleteButton<Character, Item>;

class Sheet : public CatalogueScreen {
  protected:
    void SetUp() override {
        CatalogueScreen::SetUp();
        skill("Dexterity"), skill("Perception"), skill("Blades", "Dexterity"), skill("Search", "Perception");
        dodge = skill("Dodge", "Dexterity");
    }
    EditWindow<Character>* open(Character& c, float x = 0, float y = 0) {
        auto* sheet = new EditWindow<Character>(root, &c);
        sheet->x = x, sheet->y = y;
        frame();
        return sheet;
    }
    static float yOf(Window* in, const std::string& caption) {
        Window* w = captioned(in, caption);
        return w ? w->y : -1;
    }
    static DirectNumEdit* fieldOf(Window* in, int* variable) {
        for (auto* f : all<DirectNumEdit>(in))
            if (f->number == variable) return f;
        return nullptr;
    }
    // Opens a choice of the sheet (0 state, 1 weapon, 2 armor) and picks an entry by its caption.
    void choose(Window* sheet, int which, const std::string& caption) {
        SelectButton* choice = all<SelectButton>(sheet).at(which);
        clickOn(choice->button);
        for (Window* e : choice->list->children)
            if (static_cast<Button*>(e)->caption == caption) return clickOn(e), frame();
        ADD_FAILURE() << "no choice " << caption;
    }
    static Names bag(Window* sheet) {
        Names names;
        for (auto* e : all<ListEntry<Item>>(sheet))
            names.push_back(e->caption);
        return names;
    }
    Skill* dodge = nullptr; // of the catalogue
};

TEST_F(Sheet, SkillsStandUnderTheirAttributesAndTheCombatRowFollowsTheLongerColumn) {
    Character& skilled = person("Mara Vell", {{"Dexterity", {3, 0}}, {"Dodge", {4, 1}}, {"Search", {3, 2}}});
    for (int i = 0; i < 13; ++i) {
        skilled.addSkill(new Skill("Trick " + std::to_string(i), {3, 0}));
        parentOf("Trick " + std::to_string(i)) = "Dexterity";
    }
    auto* empty = open(person("Juno Marrow", {}));
    // Without skills the right column, ending at 32.5, decides.
    EXPECT_EQ(
        std::tuple(yOf(empty, "Dodge:"), yOf(empty, "Pos:"), yOf(empty, "Penalty Reason"), empty->height),
        std::tuple(36.5f, 38.5f, 42.5f, 49.0f));
    auto* sheet = open(skilled, 50);
    // "Search" has no attribute on this character: it does not show.
    EXPECT_EQ(std::tuple(yOf(sheet, "Dexterity"), yOf(sheet, "Dodge"), yOf(sheet, "Trick 12"),
                         yOf(sheet, "Search")),
              std::tuple(6.5f, 8.5f, 34.5f, -1.0f));
    EXPECT_EQ(yOf(sheet, "Dodge:"), 38.5f) << "the longer skill column decides";
    DirectNumEdit* dice = fieldOf(sheet, &(*std::next(skilled.skills.begin()))->level.dice);
    ASSERT_TRUE(dice);
    EXPECT_EQ(std::tuple(dice->x, dice->y, dice->getText()),
              std::tuple(3 + measureText("Dodge", 1.5f), 8.5f, std::string("4")));
}

TEST_F(Sheet, TheInventoryWrapsAtTheRightEdgeAndEquippedItemsShowInTheirChoiceOnly) {
    Character& c = person("Tobin Greaves", {});
    for (const char* name :
         {"Rope (20 m)", "Storm Lantern", "Tide Chart", "Medpack", "Relay Keycard", "Flask"})
        c.addItem(new Item(name));
    auto* hook = new MeleeWeapon("Boat Hook", "Clubs", {1, 0}, 0, 1, true, {});
    c.addItem(hook), c.equip(hook);
    auto* sheet = open(c);
    auto entries = all<ListEntry<Item>>(sheet);
    ASSERT_EQ(entries.size(), 6u);
    EXPECT_EQ(all<SelectButton>(sheet).at(1)->button->caption, "Boat Hook");
    auto buttons = all<ItemButton>(sheet);
    auto slot = [](Window* e) { return measureText(static_cast<Label*>(e)->caption, 1.5f) + 2.25f; };
    EXPECT_EQ(std::pair(entries[0]->x, entries[0]->y), std::pair(26.5f, 32.5f));
    int rows = 1;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        EXPECT_EQ(std::pair(buttons.at(i)->x, buttons.at(i)->y),
                  std::pair(entries[i]->x - 1, entries[i]->y + 0.25f));
        if (i == 0) continue;
        float end = entries[i - 1]->x - 1 + slot(entries[i - 1]);
        if (entries[i]->y == entries[i - 1]->y) {
            EXPECT_EQ(entries[i]->x - 1, end) << entries[i]->caption;
            continue;
        }
        // It would have run past 43, and starts again at the left, two units lower.
        ++rows;
        EXPECT_TRUE(entries[i]->x == 26.5f && entries[i]->y == entries[i - 1]->y + 2 &&
                    end + slot(entries[i]) > 43)
            << entries[i]->caption;
    }
    EXPECT_GE(rows, 3);
    EXPECT_EQ(yOf(sheet, "Dodge:"), entries.back()->y + 4) << "the combat row follows the inventory";
}

TEST_F(Sheet, ChoosingAWeaponOrNoArmorChangesWhatIsInHandAndWhatIsInTheBag) {
    Character& c = person("Mara Vell", {{"Dexterity", {3, 0}}});
    auto* pistol = new RangedWeapon("Harpoon Pistol", "Pistols", {3, 1}, 0, {3, 10, 25, 40}, 6);
    auto* hook = new MeleeWeapon("Boat Hook", "Clubs", {1, 0}, 0, 1, true, {});
    auto* coat = new Armor("Oilskin Coat", {0, 2}, {}, {1, 0});
    c.addItem(pistol), c.addItem(hook), c.addItem(coat), c.equip(hook), c.equip(coat);
    auto* sheet = open(c);
    EXPECT_THAT(bag(sheet), ElementsAre("Harpoon Pistol"));
    choose(sheet, 1, "Harpoon Pistol");
    EXPECT_EQ(c.weapon, pistol);
    EXPECT_THAT(bag(sheet), ElementsAre("Boat Hook"));
    choose(sheet, 2, "No Armor");
    EXPECT_EQ(std::pair(c.armor, countReason(c, "Armor")), std::pair(noArmor, 0));
    EXPECT_THAT(bag(sheet), ElementsAre("Boat Hook", "Oilskin Coat"));
    choose(sheet, 0, "Wounded Twice");
    EXPECT_EQ(std::pair(c.health, countReason(c, "Wound")), std::pair(2, 2));
}

TEST_F(Sheet, NewPenaltiesStunsTypedAndAChangeFromElsewhereShowAtTheNextDraw) {
    Character& c = person("Juno Marrow", {{"Dexterity", {2, 0}}});
    auto* sheet = open(c);
    clickOn(captioned<Button>(sheet, "New"));
    frame();
    clickAfterRebuild(captioned<Button>(sheet, "New"));
    frame();
    ASSERT_EQ(c.penalties.size(), 2u);
    for (Penalty* p : c.penalties)
        EXPECT_EQ(std::tuple(p->reason, p->dice, p->duration, p->applyTo),
                  std::tuple("New Penalty", DiceCode(), -1, "All"));
    EXPECT_EQ(fieldOf(sheet, &c.penalties.back()->duration)->getText(), "-1");
    clickOn(fieldOf(sheet, &c.stuns));
    type("2");
    // Typed, not taken: no stun penalty, and the state stays.
    EXPECT_EQ(std::tuple(c.stuns, countReason(c, "Stun"), c.health), std::tuple(2, 0, 0));
    clickOn(all<NumEdit>(sheet).at(0)); // the age
    type("41");
    c.takeDamage(5); // from the combat, say
    frame();
    EXPECT_EQ(all<SelectButton>(sheet).at(0)->button->caption, "Wounded");
    EXPECT_EQ(all<NumEdit>(sheet).at(0)->getText(), "0") << "a rebuild forgets the age";
}

TEST_F(Sheet, AClickOnASkillsOrAnAttributesNameOpensTheDiceWindowForIt) {
    Character& c = person("Mara Vell", {{"Dexterity", {3, 1}}, {"Dodge", {4, 0}}});
    c.characterPoints = 5;
    auto* sheet = open(c);
    for (auto [name, code] : {std::pair{"Dodge", DiceCode(4, 0)}, {"Dexterity", DiceCode(3, 1)}}) {
        clickOn(captioned(sheet, name));
        auto* roll = dynamic_cast<Roll*>(root->children.back());
        ASSERT_TRUE(roll) << name;
        EXPECT_EQ(std::tuple(roll->name, roll->code, roll->character, roll->pointsLeft),
                  std::tuple(std::string(name), code, &c, 2));
        type("14"); // what the dice showed at the table
        tap(platform::KEY_ENTER);
        EXPECT_EQ(roll->total, 14);
    }
}

TEST_F(Sheet, DroppedSkillsAndCatalogueItemsBecomeTheCharactersOwnAndAnItemMovesBetweenSheets) {
    Character& mara = person("Mara Vell", {{"Dexterity", {3, 1}}});
    Character& tobin = person("Tobin Greaves", {});
    auto* knife = new MeleeWeapon("Gutting Knife", "Blades", {0, 2}, 0, 0, false, {});
    mara.addItem(knife), mara.addItem(new Item("Depth Charge"));
    auto* pistol = catalogued(new RangedWeapon("Harpoon Pistol", "Pistols", {3, 1}, 0, {3, 10, 25, 40}, 6));
    auto* marasSheet = open(mara, 0, 0);
    auto* tobinsSheet = open(tobin, 50, 0);
    auto* skills = new SkillList(root);
    auto* items = new ItemList(root, "Item List");
    skills->x = 2, skills->y = 60, items->x = 70, items->y = 60;
    for (int time = 0; time < 2; ++time)
        dragOnto(entry(skills, dodge), marasSheet);
    // Learned once, where its attribute stands.
    ASSERT_EQ(names(mara.skills), (Names{"Dexterity", "Dodge"}));
    EXPECT_EQ(mara.skills.back()->level, DiceCode(3, 1));
    dragOnto(entry(items, pistol), marasSheet);
    auto* own = dynamic_cast<RangedWeapon*>(mara.inventory.back());
    ASSERT_TRUE(own && own != pistol);
    own->use();
    EXPECT_EQ(pistol->ammo, 6);
    frame();
    mara.weapon = knife; // in hand since this frame, by the combat say: the sheet still shows it in the bag
    dragOnto(entry(marasSheet, knife), tobinsSheet);
    EXPECT_THAT(tobin.inventory, ElementsAre(knife));
    EXPECT_EQ(std::pair(mara.inventory.size(), mara.weapon),
              std::pair(std::size_t(2), (Weapon*)unarmedWeapon));
    frame();
    EXPECT_TRUE(!entry(marasSheet, knife) && entry(tobinsSheet, knife));
}

TEST_F(Sheet, SaveWritesTheCharacterAsItStandsAndAFailedSaveSaysWhy) {
    std::string dir = (std::filesystem::temp_directory_path() / "hexfold-sheet-XXXXXX").string();
    ASSERT_NE(mkdtemp(dir.data()), nullptr);
    ASSERT_EQ(chdir(dir.c_str()), 0);
    Character& c = person("Iselde Quay", {{"Dexterity", {3, 2}}, {"Dodge", {4, 0}}, {"Perception", {2, 1}}});
    auto* suit = new Armor("Insulated Divesuit", {1, 0}, {1, 1}, {1, 0});
    c.addItem(suit), c.equip(suit), c.addItem(new Item("Tide Chart"));
    c.addPenalty(new Penalty("Cramp", {1, 0}, 3, "Dexterity"));
    c.characterPoints = 5, c.stuns = 1;
    clickOn(captioned<Button>(open(c), "Save"));
    EXPECT_TRUE(all<MessageBox>(root).empty()) << "a save that works says nothing";
    Character* back = loadCharacter("Iselde Quay", false);
    ASSERT_TRUE(back);
    EXPECT_EQ(std::tuple(names(back->skills), back->skills.back()->level, names(back->inventory),
                         back->armor->name),
              std::tuple(names(c.skills), DiceCode(2, 1), Names{"Insulated Divesuit", "Tide Chart"},
                         std::string("Insulated Divesuit")));
    EXPECT_EQ(std::tuple(countReason(*back, "Armor"), countReason(*back, "Cramp"), back->characterPoints,
                         back->stuns),
              std::tuple(1, 1, 5, 1));

    std::filesystem::create_directory("Nobody.chr"); // the file's place is taken
    clickAfterRebuild(captioned<Button>(open(person("Nobody", {}), 50), "Save"));
    ASSERT_EQ(all<MessageBox>(root).size(), 1u);
    EXPECT_EQ(all<MessageBox>(root)[0]->caption, "Not saved");
    EXPECT_THAT(all<MessageBox>(root)[0]->text->caption, ::testing::HasSubstr("Nobody.chr"));
    std::filesystem::remove_all(dir);
}

// Handlers that delete windows while they run: the sanitizer sees any touch of a dead window.
TEST_F(Sheet, HandlersThatDeleteWindowsTouchNothingOfThemAfterwards) {
    Character& c = person("Mara Vell", {{"Dexterity", {3, 0}}, {"Dodge", {4, 0}}});
    Character& hound = person("Reef Hound", {}, true);
    auto* chart = new Item("Tide Chart");
    c.addItem(chart), c.addItem(new Item("Flask"));
    auto* sheet = open(c);
    auto* items = new ItemList(root, "Item List");
    items->x = 50;
    // The item's editor dies inside the click of the "X", the "X" itself at the sheet's next draw.
    clickOn(entry(sheet, chart), 1);
    clickOn(all<ItemButton>(sheet).at(0));
    EXPECT_TRUE(all<EditWindow<Item>>(root).empty());
    frame();
    // Dropped on the item list, which keeps nothing, the last item goes.
    dragOnto(all<ListEntry<Item>>(sheet).at(0), items);
    frame();
    EXPECT_TRUE(c.inventory.empty() && all<ListEntry<Item>>(sheet).empty());
    clickAfterRebuild(all<SkillButton>(sheet).at(0));
    frame();
    EXPECT_EQ(names(c.skills), Names{"Dexterity"});
    // A list built anew inside the drop on it, while its origin hears afterwards that it was refused.
    auto* npcs = new NPCList(root);
    auto* characters = new CharacterList(root);
    npcs->y = 60, characters->x = 30, characters->y = 60;
    recorder.counted = characters;
    characters->acceptsDropHandler.bind(&recorder, &Recorder::taken);
    npcs->dropRefusedHandler.bind(&recorder, &Recorder::refused);
    dragOnto(entry(npcs, &hound), characters);
    EXPECT_THAT(recorder.log, ElementsAre("taken, 1", "refused, 2"));
    // An edit window closes inside its own right click.
    rightClickBody(sheet);
    EXPECT_TRUE(all<EditWindow<Character>>(root).empty() && c.observerCount == 0);
    frame();
}

TEST_F(Sheet, TheSampleCampaignsSheet) {
    clearModel();
    loadItems(), loadSkills(), loadCharacters();
    Character* mara = findCharacter("Mara Vell");
    ASSERT_TRUE(mara);
    auto* sheet = open(*mara, 28, 2);
    EXPECT_TRUE(all<SkillButton>(sheet).size() > 5 && sheet->y + sheet->height <= 100);
    guidePicture("character_sheet");
}

} // namespace
