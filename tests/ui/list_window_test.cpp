// The list windows with the real pointer: entries and sizes, the skill tree's columns, balloons byte
// for byte, drops between lists, and right clicks on entries and bodies.
#include <gmock/gmock.h>

#include "catalogue_screen.h"
#include "editors/item_editor.h"
#include "editors/list_window.h"
#include "toolkit/font.h"

using ::testing::ElementsAre;

namespace {

// Where an entry stands in its list, and whether it can be dragged.
using Place = std::tuple<std::string, float, float, bool>;

class ListWindows : public CatalogueScreen {
  protected:
    template <class L, class... A> L* open(float x, float y, A... caption) {
        L* list = new L(root, caption...);
        list->x = x, list->y = y;
        return list;
    }
    template <class T> static std::vector<Place> places(Window* list) {
        std::vector<Place> found;
        for (auto* e : all<ListEntry<T>>(list))
            found.emplace_back(e->caption, e->x, e->y, e->dragDrop);
        return found;
    }
};

TEST_F(ListWindows, EntriesTouchEachOtherAsWideAsTheirNamesAndAnEmptyListIsItsTitleBar) {
    person("Mara Vell", {}), person("Tobin Greaves", {}), person("Reef Hound", {}, true);
    auto* characters = open<CharacterList>(2, 5);
    EXPECT_THAT(places<Character>(characters),
                ElementsAre(Place{"Mara Vell", 0.5f, 3.5f, true}, Place{"Tobin Greaves", 0.5f, 5.5f, true}));
    auto* mara = all<ListEntry<Character>>(characters).at(0);
    EXPECT_EQ(std::tuple(mara->width, mara->height, characters->width, characters->height),
              std::tuple(measureText("Mara Vell", 1.5f) + 0.75f, 2.0f, 21.0f, 7.6f));
    auto* hound = all<ListEntry<Character>>(open<NPCList>(30, 5)).at(0);
    EXPECT_EQ(hound->caption + "|" + hound->value, "Reef Hound (npc)|Reef Hound");
    auto* items = open<ItemList>(60, 5, std::string("Item List"));
    EXPECT_EQ(std::tuple(items->caption, items->height, items->children.size()),
              std::tuple(std::string("Item List"), 3.6f, std::size_t(0)));
}

TEST_F(ListWindows, SkillsStandInThreeColumnsUnderTheirAttributesWhichCannotBeDragged) {
    for (const char* attribute :
         {"Dexterity", "Strength", "Perception", "Knowledge", "Mechanical", "Technical"})
        skill(attribute);
    for (auto [name, parent] : {std::pair{"Dodge", "Dexterity"},
                                {"Lifting", "Strength"},
                                {"Blades", "Dexterity"},
                                {"Quickdraw", "Blades"},
                                {"Search", "Perception"},
                                {"Orphan", "Nowhere"},
                                {"Climbing", "Strength"},
                                {"Swimming", "Strength"},
                                {"Sensors", "Mechanical"}})
        skill(name, parent);
    auto* list = open<SkillList>(2, 5);
    // A skill whose parent is a skill, or lies outside the catalogue, is not shown.
    EXPECT_THAT(places<Skill>(list),
                ElementsAre(Place{"Dexterity", 0.5f, 3.5f, false}, Place{"Dodge", 3, 5.5f, true},
                            Place{"Blades", 3, 7.5f, true}, Place{"Strength", 21.5f, 3.5f, false},
                            Place{"Lifting", 24, 5.5f, true}, Place{"Climbing", 24, 7.5f, true},
                            Place{"Swimming", 24, 9.5f, true}, Place{"Perception", 0.5f, 11.5f, false},
                            Place{"Search", 3, 13.5f, true}, Place{"Knowledge", 42.5f, 3.5f, false},
                            Place{"Mechanical", 21.5f, 13.5f, false}, Place{"Sensors", 24, 15.5f, true},
                            Place{"Technical", 42.5f, 7.5f, false}));
    // The middle column, longer than the others, does not count.
    EXPECT_EQ(std::pair(list->width, list->height), std::pair(63.0f, 15.6f));
}

TEST_F(ListWindows, BalloonsSayWhatEachThingIsByteForByte) {
    catalogued(new Grenade("Pressure Charge", "Thrown Weapons", {DiceCode(5, 2), 4, 3, 2}, {1, 3, 5, 8},
                           {3, 7, 12, 20}, 0))
        ->price = 150;
    auto* pistol = catalogued(new RangedWeapon("Harpoon Pistol", "Pistols", {3, 1}, 0, {3, 10, 25, 40}, 6));
    pistol->price = 450, pistol->ammo = 4;
    catalogued(new MeleeWeapon("Boat Hook", "Clubs", {1, 0}, 1, 1, true, {5, 0}))->price = 30;
    catalogued(new Armor("Oilskin Coat", {1, 1}, {0, 2}, {1, 0}))->price = 80;
    catalogued(new Item("Medpack"))->price = 100;
    std::vector<std::string> seen;
    for (auto* e : all<ListEntry<Item>>(open<ItemList>(2, 5, std::string("Item List"))))
        moveOnto(e), seen.push_back(balloonText());
    // A grenade shows the dice of its blast only, and its weapon part once.
    EXPECT_THAT(seen,
                ElementsAre("Pressure Charge\nPrice: 150\n\nSkill: Thrown Weapons\nDamage: 5D/4D/3D/2D\n"
                            "Radius: 1/3/5/8\nRange: 3/7/12/20\nDamage type: Physical",
                            "Harpoon Pistol\nPrice: 450\n\nSkill: Pistols\nDamage: 3D+1\nDamage type: "
                            "Physical\nAmmo: 4/6\nRanges: 0-3 / 10 / 25 / 40",
                            "Boat Hook\nPrice: 30\n\nSkill: Clubs\nDamage: 1D+0+STR (5D+0)\nDamage type: "
                            "Energy\nDifficulty: Easy",
                            "Oilskin Coat\nPrice: 80\n\nPhysical: 1D+1\nEnergy: 0D+2\nPenalty: 1D+0",
                            "Medpack\nPrice: 100\n"));

    auto* crew = new Faction("Lantern Crew", 1, 1, 0);
    crew->initiative = 7;
    crew->addMember(&person("Mara Vell", {})), crew->addMember(&person("Tobin Greaves", {}));
    skill("Dexterity");
    moveOnto(open<FactionList>(30, 5, std::string("Faction List"))->children.at(0));
    EXPECT_EQ(balloonText(), "Lantern Crew  Init: 7\n\nMara Vell\nTobin Greaves");
    // A character's and a skill's balloons are empty, and each replaces the balloon before.
    moveOnto(open<CharacterList>(55, 5)->children.at(0));
    EXPECT_EQ(std::pair(balloonText(), balloonWindow->width), std::pair(std::string(), 1.0f));
    moveOnto(open<SkillList>(2, 40)->children.at(0));
    EXPECT_EQ(balloonText(), "");
}

TEST_F(ListWindows, CharactersCrossBetweenTheListsAsCopiesKeyedByNameAndNoListTakesItsOwnEntry) {
    Character& hound = person("Reef Hound", {{"Dexterity", {2, 0}}}, true);
    hound.addItem(new MeleeWeapon("Gutting Knife", "Blades", {0, 2}, 0, 0, false, {}));
    Character& mara = person("Mara Vell", {});
    auto* npcs = open<NPCList>(2, 5);
    auto* characters = open<CharacterList>(30, 5);
    auto* others = open<CharacterList>(60, 5); // a second one, to drop a player character from
    for (int time = 0; time < 2; ++time)
        dragOnto(entry(npcs, &hound), characters);
    ASSERT_EQ(names(allCharacters), (Names{"Mara Vell", "Reef Hound"})) << "the second drop finds the name";
    Character* copy = allCharacters.back();
    EXPECT_TRUE(!copy->isNpc && copy->skills.size() == 1 && copy->inventory.size() == 1 &&
                copy->inventory.front() != hound.inventory.front() && names(allNpcs) == Names{"Reef Hound"});
    EXPECT_TRUE(entry(characters, copy)) << "the list that took the copy is built anew";
    dragOnto(entry(others, &mara), characters);
    EXPECT_EQ(allCharacters.size(), 2u) << "a player character dropped on the character list";
    dragOnto(entry(characters, &mara), npcs);
    EXPECT_EQ(entry(npcs, allNpcs.back())->caption, "Mara Vell (npc)");

    // An item dropped back on its own list is refused; on another list of items, taken.
    auto* items = open<ItemList>(2, 40, std::string("Item List"));
    auto* second = open<ItemList>(40, 40, std::string("Item List"));
    items->dropAcceptedHandler.bind(&recorder, &Recorder::accepted);
    items->dropRefusedHandler.bind(&recorder, &Recorder::refused);
    items->acceptsDropHandler.bind(&recorder, &Recorder::taken);
    second->acceptsDropHandler.bind(&recorder, &Recorder::taken);
    catalogued(new Item("Medpack"));
    items->rebuild();
    dragOnto(items->children.at(0), items);
    dragOnto(items->children.at(0), second);
    EXPECT_THAT(recorder.log, ElementsAre("refused", "taken", "accepted"));
}

TEST_F(ListWindows, ARightClickOnAnEntryRaisesItsOpenEditorOrOpensOneAndOnTheBodyClosesTheList) {
    auto* medpack = catalogued(new Item("Medpack"));
    new Faction("Drift Divers", 0, 0, 1);
    auto* items = open<ItemList>(2, 40, std::string("Item List"));
    auto* factions = open<FactionList>(40, 40, std::string("Faction List"));
    clickOn(entry(items, medpack), 1);
    auto* editor = all<EditWindow<Item>>(root).at(0);
    EXPECT_EQ(editor->object, medpack);
    clickOn(factions->children.at(0), 1);
    EXPECT_EQ(static_cast<Dialogue*>(root->children.back())->caption, "Faction: Drift Divers");
    clickOn(entry(items, medpack), 1);
    EXPECT_EQ(std::pair(all<EditWindow<Item>>(root).size(), root->children.back()),
              std::pair(std::size_t(1), static_cast<Window*>(editor)));
    items->closeHandler.bind(&recorder, &Recorder::closed);
    rightClickBody(items);
    EXPECT_TRUE(recorder.log.size() == 1 && all<ItemList>(root).empty());
}

} // namespace
