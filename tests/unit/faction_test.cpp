// Factions: membership that moves a character between factions, the order of members, the shared
// initiative, and the reader of factions.dat.
#include "model_test.h"

namespace {
struct ChangeCounter : Observer {
    explicit ChangeCounter(Observed& o) { o.addObserver(*this); }
    void changed() override { ++changes; }
    int changes = 0;
};

Character* seer(const std::string& name, DiceCode perception, bool isNpc = false) {
    return &person(name, {{"Perception", perception}}, isNpc);
}
} // namespace

class Factions : public ModelFileTest {};

TEST_F(Factions, MembersMoveBetweenFactionsAndBothAnnounceIt) {
    Character *mara = seer("Mara", {3, 0}), *hound = seer("Hound", {2, 0}, true);
    Faction crew("Lantern Crew", 0.9f, 0.7f, 0.2f), gang("Gullwater Gang", 0.7f, 0.1f, 0.1f);
    ChangeCounter &crewWatch = *new ChangeCounter(crew), &gangWatch = *new ChangeCounter(gang);
    EXPECT_TRUE(crew.addMember(mara) && !crew.addMember(mara) && !crew.addMember(nullptr));
    EXPECT_TRUE(gang.addMember(mara) && gang.addMember(hound)) << "an NPC dropped onto the faction joins it";
    EXPECT_EQ(std::tuple(crewWatch.changes, gangWatch.changes, crew.members.size()), std::tuple(2, 2, 0ul));
    gang.removeMember(hound);
    crew.removeMember(mara);
    EXPECT_EQ(std::tuple(hound->faction, mara->faction, names(gang.members)),
              std::tuple(nullptr, &gang, Names{"Mara"}));
}

TEST_F(Factions, TheBestPerceptionAfterPenaltiesLeadsAndEqualsKeepTheirOrder) {
    Faction crew("Lantern Crew", 0.9f, 0.7f, 0.2f);
    Character *sharp = seer("Sharp", {3, 1}), *dazzled = seer("Dazzled", {4, 0});
    dazzled->addPenalty(new Penalty("Flash", DiceCode(1, 0), 3, "Perception"));
    crew.addMember(sharp);
    crew.addMember(dazzled);
    EXPECT_EQ(names(crew.members), (Names{"Sharp", "Dazzled"})) << "3D+1 beats 4D+0 less 1D";
    Names expected{"Keen"};
    for (int i = 0; i < 40; ++i) {
        expected.push_back("Equal " + std::to_string(i));
        crew.addMember(seer(expected.back(), {2, 2}));
    }
    crew.removeMember(dazzled);
    crew.removeMember(sharp);
    crew.addMember(seer("Keen", {2, 3}));
    EXPECT_EQ(names(crew.members), expected);
    // A faction keeps the first initiative that it is given in a round; a new one counts as rolled.
    Character &lead = *crew.members.front(), &last = *crew.members.back();
    lead.setInitiative(9);
    EXPECT_EQ(lead.getInitiative(), 0);
    lead.resetCombatState();
    last.setInitiative(9);
    last.setInitiative(4);
    EXPECT_EQ(std::tuple(lead.getInitiative(), lead.initiative, lead.actions), std::tuple(9, -1, noValue));
}

// Names that are no player character are passed over, a later block takes a member over, and the
// last line needs no line end.
TEST_F(Factions, LoadsBlocksOfPlayerCharactersByName) {
    seer("Mara Vell", {3, 0});
    seer("Reef Hound", {2, 0}, true);
    write("factions.dat", "[The crew]\r\nLantern Crew|0.9|0.75|.2\r\nMara Vell\r\nNobody\r\nReef Hound\r\n"
                          "[Last]\nDivers|x|0.5|0.5\nMara Vell");
    loadFactions();
    ASSERT_EQ(names(allFactions), (Names{"Lantern Crew", "Divers"}));
    EXPECT_EQ(std::tuple(allFactions.front()->colour[2], allFactions.back()->colour[0],
                         allFactions.front()->members.size(), names(allFactions.back()->members)),
              std::tuple(0.2f, 0.0f, 0ul, Names{"Mara Vell"}));
}
