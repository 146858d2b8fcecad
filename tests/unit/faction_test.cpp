// Factions: membership that moves a character between factions, the order of members, and
// the reader of factions.dat.
#include "model_test.h"

#include <gtest/gtest.h>

namespace {
struct ChangeCounter : Observer {
    explicit ChangeCounter(Observed& o) { o.addObserver(*this); }
    void changed() override { ++changes; }
    int changes = 0;
};

Character* withPerception(const std::string& name, DiceCode perception, bool isNpc = false) {
    auto* c = new Character(isNpc);
    c->name = name;
    c->addSkill(new Skill("Perception", perception));
    return c;
}

std::vector<std::string> names(const Faction& f) {
    std::vector<std::string> result;
    for (const Character* c : f.members)
        result.push_back(c->name);
    return result;
}
} // namespace

class Factions : public ModelFileTest {};

TEST_F(Factions, MembersMoveBetweenFactionsAndBothAnnounceIt) {
    Character* mara = withPerception("Mara", DiceCode(3, 0));
    Character* hound = withPerception("Reef Hound", DiceCode(2, 0), true);
    Faction crew("Lantern Crew", 0.9f, 0.7f, 0.2f), gang("Gullwater Gang", 0.7f, 0.1f, 0.1f);
    auto* crewWatch = new ChangeCounter(crew);
    auto* gangWatch = new ChangeCounter(gang);

    EXPECT_TRUE(crew.addMember(mara));
    EXPECT_FALSE(crew.addMember(mara));
    EXPECT_FALSE(crew.addMember(nullptr));
    EXPECT_EQ(crewWatch->changes, 1);
    EXPECT_TRUE(gang.addMember(mara));
    EXPECT_TRUE(gang.addMember(hound)) << "an NPC dropped on the faction joins it";
    EXPECT_EQ(crewWatch->changes, 2);
    EXPECT_EQ(gangWatch->changes, 2);
    EXPECT_TRUE(crew.members.empty());
    EXPECT_EQ(mara->faction, &gang);

    gang.removeMember(hound);
    crew.removeMember(mara);
    EXPECT_EQ(hound->faction, nullptr);
    EXPECT_EQ(mara->faction, &gang) << "removing a character that is no member changes nothing";
    EXPECT_EQ(names(gang), (std::vector<std::string>{"Mara"}));
    delete crewWatch;
    delete gangWatch;
}

TEST_F(Factions, TheMemberWithTheBestPerceptionAfterPenaltiesLeadsAndEqualsKeepTheirOrder) {
    Faction crew("Lantern Crew", 0.9f, 0.7f, 0.2f);
    Character* sharp = withPerception("Sharp", DiceCode(2, 2));
    Character* dazzled = withPerception("Dazzled", DiceCode(4, 0));
    dazzled->addPenalty(new Penalty("Flash", DiceCode(1, 0), 3, "Perception"));
    crew.addMember(sharp);
    crew.addMember(dazzled);
    EXPECT_EQ(names(crew), (std::vector<std::string>{"Dazzled", "Sharp"}));
    dazzled->addPenalty(new Penalty("Flash", DiceCode(1, 0), 3, "All"));
    crew.sortMembers();
    EXPECT_EQ(names(crew), (std::vector<std::string>{"Sharp", "Dazzled"}));

    Faction crowd("Crowd", 0, 0, 0);
    std::vector<std::string> expected;
    for (int i = 0; i < 40; ++i) {
        expected.push_back("Equal " + std::to_string(i));
        crowd.addMember(withPerception(expected.back(), DiceCode(2, 0)));
    }
    crowd.addMember(withPerception("Keen", DiceCode(2, 1)));
    expected.insert(expected.begin(), "Keen");
    EXPECT_EQ(names(crowd), expected);
}

TEST_F(Factions, LoadsBlocksOfPlayerCharactersByName) {
    withPerception("Mara Vell", DiceCode(3, 0));
    withPerception("Tobin Greaves", DiceCode(4, 0));
    withPerception("Reef Hound", DiceCode(2, 0), true);
    write("factions.dat", "[The crew]\r\nLantern Crew|0.9|0.75|.2\r\nMara Vell\r\nNobody\r\nTobin Greaves\r\n"
                          "[Gang]\nGullwater Gang|1|0.1|x\nReef Hound\n[Empty]\nWardens|0.2|0.4|0.8\n"
                          "[Last]\nDivers|0|0.5|0.5\nMara Vell");
    loadFactions();
    ASSERT_EQ(allFactions.size(), 4u);
    Faction* crew = allFactions.front();
    EXPECT_EQ(crew->name, "Lantern Crew");
    EXPECT_FLOAT_EQ(crew->colour[1], 0.75f);
    EXPECT_FLOAT_EQ(crew->colour[2], 0.2f);
    EXPECT_EQ(names(*crew), (std::vector<std::string>{"Tobin Greaves"}));
    Faction* gang = *std::next(allFactions.begin());
    EXPECT_TRUE(gang->members.empty()) << "an NPC cannot be a member by file";
    EXPECT_FLOAT_EQ(gang->colour[0], 1.0f);
    EXPECT_EQ(gang->colour[2], 0.0f);
    EXPECT_EQ(names(*allFactions.back()), (std::vector<std::string>{"Mara Vell"}))
        << "last line without its end";
    EXPECT_EQ(gang->initiative, 0);
}

TEST_F(Factions, MalformedFilesGiveWhatTheyCanAndDeathFreesTheMembers) {
    write("factions.dat", "[Only a header]\n");
    loadFactions();
    EXPECT_TRUE(allFactions.empty());
    write("factions.dat", "garbage|||\n\n\n");
    loadFactions();
    ASSERT_EQ(allFactions.size(), 1u);
    EXPECT_EQ(allFactions.front()->name, "");

    Character* mara = withPerception("Mara", DiceCode(3, 0));
    allFactions.front()->addMember(mara);
    clearFactions();
    EXPECT_EQ(mara->faction, nullptr);
}
