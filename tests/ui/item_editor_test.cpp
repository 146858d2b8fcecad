// The item editor for each class of item: its rows and height, and fields that write straight into
// the item. All five are shot side by side as build/screenshots/item_editor.png.
#include <gmock/gmock.h>

#include "catalogue_screen.h"
#include "editors/item_editor.h"
#include "toolkit/button.h"
#include "toolkit/edit.h"

using ::testing::ElementsAreArray;

namespace {

class ItemEditor : public CatalogueScreen {
  protected:
    static std::vector<std::string> captions(Window* in) {
        std::vector<std::string> found;
        for (auto* l : all<Label>(in))
            found.push_back(l->caption);
        return found;
    }
};

TEST_F(ItemEditor, EachClassHasItsOwnRowsAndEveryFieldWritesIntoTheItem) {
    auto* pistol = new RangedWeapon("Harpoon Pistol", "Pistols", {3, 1}, 0, {3, 10, 25, 40}, 6);
    auto* hook = new MeleeWeapon("Boat Hook", "Clubs", {1, 0}, 0, 3, false, {4, 0});
    struct Case {
        Item* item;
        float height;
        int numberFields;
        std::vector<std::string> labels;
    } cases[] = {
        {new Item("Medpack"), 7.5f, 1, {"Price:"}},
        {new Armor("Oilskin Coat", {0, 2}, {}, {1, 0}),
         13.5f,
         7,
         {"Price:", "Physical:", "D+", "Energy:", "D+", "Penalty:", "D+"}},
        // A grenade is a weapon, but has only its own rows.
        {new Grenade("Static Bomb", "Thrown Weapons", {4, 3, 2, 1}, {2, 4, 6, 10}, {3, 7, 12, 20}, 1),
         17.5f,
         13,
         {"Price:", "Type: ", "Damage type: Energy", "Damage:", "Radius:", "Range:"}},
        {pistol,
         17.5f,
         9,
         {"Price:", "Type: ", "Damage:", "D+", "Damage type: Physical", "Range:", "Ammo:", "/"}},
        {hook,
         17.5f,
         5,
         {"Price:", "Type: ", "Damage:", "D+", "Max. damage:", "D+", "Damage type: Physical",
          "Difficulty: Difficult"}},
    };
    float x = 0;
    for (Case& c : cases) {
        allItems.push_back(c.item);
        auto* editor = new EditWindow<Item>(root, c.item);
        editor->x = x, editor->y = c.item == hook ? 30 : 8;
        x = c.item == pistol ? 0 : x + 24;
        frame();
        EXPECT_EQ(std::tuple(editor->caption, editor->width, editor->height),
                  std::tuple(std::string("Edit Item"), 21.0f, c.height))
            << c.item->name;
        EXPECT_EQ(all<DirectNumEdit>(editor).size(), std::size_t(c.numberFields)) << c.item->name;
        EXPECT_THAT(captions(editor), ElementsAreArray(c.labels)) << c.item->name;
    }
    auto* pistolEditor = all<EditWindow<Item>>(root).at(3);
    auto numbers = all<DirectNumEdit>(pistolEditor);
    clickOn(numbers.at(7)); // the ammunition
    type("2");
    clickOn(all<DirectEdit>(pistolEditor).at(0)); // the name
    type(" Mk");
    clickOn(all<DirectSwitch>(all<EditWindow<Item>>(root).at(4)).at(0));
    EXPECT_EQ(std::tuple(pistol->ammo, pistol->name, hook->addStrength),
              std::tuple(62, std::string("Harpoon Pistol Mk"), true));
    moveTo(50, 90);
    screenshot("item_editor");
}

} // namespace
