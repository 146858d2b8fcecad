// Factions: membership that moves a character between factions, the order of members, and
// the reader of factions.dat.
#include "model_test.h"

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
    Character *mara = withPerception("Mara", DiceCode(3, 0)),
              *hound = withPerception("Hound", DiceCode(2, 0), true);
    Faction crew("Lantern Crew", 0.9f, 0.7f, 0.2f), gang("Gullwater Gang", 0.7f, 0.1f, 0.1f);
    ChangeCounter& crewWatch = *new ChangeCounter(crew);
    ChangeCounter& gangWatch = *new ChangeCounter(gang);
    EXPECT_TRUE(crew.addMember(mara));
    EXPECT_FALSE(crew.addMember(mara));
    EXPECT_FALSE(crew.addMember(nullptr));
    EXPECT_TRUE(gang.addMember(mara));
    EXPECT_TRUE(gang.addMember(hound)) << "an NPC dropped onto the faction joins it";
    EXPECT_EQ(std::pair(crewWatch.changes, gangWatch.changes), std::pair(2, 2));
    EXPECT_TRUE(crew.members.empty());
    gang.removeMember(hound);
    crew.removeMember(mara);
    EXPECT_EQ(hound->faction, nullptr);
    EXPECT_EQ(mara->faction, &gang);
    EXPECT_EQ(names(gang), (std::vector<std::string>{"Mara"}));
}

TEST_F(Factions, TheBestPerceptionAfterPenaltiesLeadsAndEqualsKeepTheirOrder) {
    Faction crew("Lantern Crew", 0.9f, 0.7f, 0.2f);
    Character *sharp = withPerception("Sharp", DiceCode(2, 2)),
              *dazzled = withPerception("Dazzled", DiceCode(4, 0));
    dazzled->addPenalty(new Penalty("Flash", DiceCode(1, 0), 3, "Perception"));
    crew.addMember(sharp);
    crew.addMember(dazzled);
    EXPECT_EQ(names(crew), (std::vector<std::string>{"Dazzled", "Sharp"})) << "3D+0 beats 2D+2";
    std::vector<std::string> expected{"Keen"};
    for (int i = 0; i < 40; ++i) {
        expected.push_back("Equal " + std::to_string(i));
        crew.addMember(withPerception(expected.back(), DiceCode(2, 2)));
    }
    crew.removeMember(dazzled);
    crew.removeMember(sharp);
    crew.addMember(withPerception("Keen", DiceCode(2, 3)));
    EXPECT_EQ(names(crew), expected);
}

TEST_F(Factions, LoadsBlocksOfPlayerCharactersByName) {
    withPerception("Mara Vell", DiceCode(3, 0));
    withPerception("Tobin Greaves", DiceCode(4, 0));
    withPerception("Reef Hound", DiceCode(2, 0), true);
    write("factions.dat", "[The crew]\r\nLantern Crew|0.9|0.75|.2\r\nMara Vell\r\nNobody\r\nTobin Greaves\r\n"
                          "[Gang]\nGullwater Gang|1|0.1|x\nReef Hound\n[Last]\nDivers|0|0.5|0.5\nMara Vell");
    loadFactions();
    ASSERT_EQ(allFactions.size(), 3u);
    Faction *crew = allFactions.front(), *gang = *std::next(allFactions.begin());
    EXPECT_EQ(crew->name, "Lantern Crew");
    EXPECT_EQ(std::tuple(crew->colour[0], crew->colour[1], crew->colour[2]), std::tuple(0.9f, 0.75f, 0.2f));
    EXPECT_EQ(names(*crew), (std::vector<std::string>{"Tobin Greaves"})) << "Mara moved on to the divers";
    EXPECT_TRUE(gang->members.empty()) << "an NPC cannot be a member by file";
    EXPECT_EQ(std::pair(gang->colour[2], gang->initiative), std::pair(0.0f, 0));
    EXPECT_EQ(names(*allFactions.back()), (std::vector<std::string>{"Mara Vell"}))
        << "last line without its end";
    clearFactions();
    EXPECT_EQ(findCharacter("Mara Vell")->faction, nullptr);
}
