// The edit-window framework through its two small windows: the skill editor, which changes nothing,
// and the faction editor, whose members come and go by drops and by its "X" buttons.
#include <gmock/gmock.h>

#include "catalogue_screen.h"
#include "editors/delete_button.h"
#include "editors/edit_window.h"
#include "editors/list_window.h"
#include "toolkit/edit.h"

namespace {

using EditWindows = CatalogueScreen;
using MemberButton = DeleteButton<Faction, Character>;

TEST_F(EditWindows, TheSkillEditorShowsACatalogueEntryAndKeepsWhatIsTypedToItself) {
    skill("Dexterity");
    Skill* dodge = skill("Dodge", "Dexterity");
    dodge->duration = 3;
    auto* editor = new EditWindow<Skill>(root, dodge);
    editor->x = editor->y = 10;
    frame();
    auto fields = all<DirectEdit>(editor);
    ASSERT_EQ(fields.size(), 3u);
    EXPECT_EQ(fields[0]->getText() + "|" + fields[1]->getText() + "|" + fields[2]->getText(),
              "Dodge|Dexterity|3");
    EXPECT_EQ(std::pair(editor->width, editor->height), std::pair(22.5f, 10.0f));
    clickOn(fields[0]);
    type("x");
    clickOn(fields[1], 1); // a right click on a field does not close the window
    EXPECT_EQ(std::tuple(fields[0]->getText(), dodge->name),
              std::tuple(std::string("Dodgex"), std::string("Dodge")));
    rightClickBody(editor);
    EXPECT_EQ(std::pair(all<EditWindow<Skill>>(root).size(), dodge->observerCount),
              std::pair(std::size_t(0), 0));
}

TEST_F(EditWindows, AFactionWindowTakesDroppedCharactersAndAMemberLeavesByItsButtonOrForAnotherFaction) {
    Character *mara = &person("Mara Vell", {}), *tobin = &person("Tobin Greaves", {});
    Character *iselde = &person("Iselde Quay", {}), *juno = &person("Juno Marrow", {});
    auto* crew = new Faction("Lantern Crew", 1, 1, 0);
    crew->addMember(mara), crew->addMember(tobin);
    auto* divers = new Faction("Drift Divers", 0, 0, 1);
    divers->addMember(iselde);
    auto* crewWindow = new EditWindow<Faction>(root, crew, "Faction: Lantern Crew");
    auto* diversWindow = new EditWindow<Faction>(root, divers, "Faction: Drift Divers");
    auto* characters = new CharacterList(root);
    crewWindow->x = 2, crewWindow->y = 10, diversWindow->x = 40, diversWindow->y = 10, characters->y = 50;
    frame();
    auto* first = all<MemberButton>(crewWindow).at(0);
    EXPECT_EQ(std::tuple(first->x, first->y, entry(crewWindow, mara)->x, entry(crewWindow, mara)->y,
                         crewWindow->height),
              std::tuple(0.5f, 3.75f, 2.5f, 3.5f, 7.5f));

    dragOnto(entry(characters, juno), crewWindow);
    dragOnto(entry(diversWindow, iselde), crewWindow);
    frame();
    // Both windows follow: the one the member left, too.
    EXPECT_EQ(
        std::tuple(crew->members.size(), crewWindow->height, divers->members.size(), diversWindow->height),
        std::tuple(std::size_t(4), 11.5f, std::size_t(0), 3.5f));
    ListEntry<Character>* maraEntry = entry(crewWindow, mara);
    Rect from = screenRect(maraEntry);
    moveOnto(maraEntry), press();
    movePixels(toPixelX(from.centreX()) + 4, toPixelY(from.centreY()));
    EXPECT_EQ(maraEntry->alpha, 0.5f) << "faded on its way";
    Rect own = screenRect(crewWindow);
    moveTo(own.x + own.w - 0.5f, own.y + own.h - 0.3f), release();
    EXPECT_EQ(std::pair(maraEntry->alpha, mara->faction), std::pair(1.0f, crew))
        << "its own window refuses it";
    dragOnto(entry(crewWindow, tobin), characters);
    EXPECT_EQ(tobin->faction, crew) << "the character list takes nothing";
    clickOn(all<MemberButton>(crewWindow).at(1));
    frame();
    EXPECT_TRUE(!tobin->faction && crew->members.size() == 3 && allCharacters.size() == 4 &&
                !entry(crewWindow, tobin));
    delete divers;
    EXPECT_EQ(all<EditWindow<Faction>>(root).size(), 1u) << "the window dies with its faction";
}

} // namespace
