// Saves cut off at random moments: a child process saves over and over until it is killed with
// SIGKILL, and every file it leaves behind is the old version or the new one, whole, and loads.
#include <csignal>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "map/hex_map.h"
#include "model_test.h"
#include "rules/character_files.h"

namespace {
class TornSaves : public ModelFileTest {
  protected:
    // A hundred times: a child process saves without end, from what the last one left, and is killed
    // at a random moment; then `check` looks at what it left. A save that wrote the file in place
    // fails at once: the kill finds the file cut short, or empty.
    template <class Work, class Check> void killAtRandom(Work saveForever, Check check) {
        std::mt19937 random(0x70a2);
        for (int generation = 0; generation < 100 && !HasFailure(); ++generation) {
            int ready[2];
            ASSERT_EQ(pipe(ready), 0);
            pid_t child = fork();
            ASSERT_GE(child, 0);
            if (child == 0) {
                close(ready[0]);
                (void)!::write(ready[1], "!", 1);
                for (int round = 0;; ++round)
                    saveForever(generation, round);
            }
            close(ready[1]);
            char begun = 0;
            EXPECT_EQ(::read(ready[0], &begun, 1), 1);
            close(ready[0]);
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 4000));
            kill(child, SIGKILL);
            int status = 0;
            waitpid(child, &status, 0);
            ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "the child stopped by itself";
            check();
        }
    }

    // Files left by a save that was cut off: the program reads none of them.
    static bool leftOver(const std::string& name) { return name.rfind(".saving-", 0) == 0; }
};

// A character's file in one of two versions, each line a penalty.
void makeVersion(Character& c, int version) {
    c.characterPoints = version;
    while (!c.penalties.empty())
        c.removePenalty(c.penalties.front());
    for (int i = 0; i < 20; ++i)
        c.addPenalty(new Penalty("Version " + std::to_string(version), DiceCode(1, i), 2, "All"));
}

TEST_F(TornSaves, CharactersNewAndOldPlayerCharactersAndNpcs) {
    write("characters.idx", "");
    write("npcs.idx", "");
    // All alike but for their names, which the files do not hold: every file is one of two texts.
    auto member = [](const std::string& name, bool npc) -> Character& {
        return person(name, {{"Perception", DiceCode(3, 0)}}, npc);
    };
    Character &mara = member("Mara", false), &hound = member("Hound", true);
    std::string versions[2];
    for (int v : {1, 0}) {
        makeVersion(mara, v), makeVersion(hound, v);
        ASSERT_TRUE(saveCharacter(mara) && saveCharacter(hound));
        versions[v] = read("Mara.chr");
        ASSERT_EQ(read("Hound.npc"), versions[v]);
    }

    // Mara and the Hound saved again and again, and each round a new player character or NPC.
    auto saveForever = [&](int generation, int round) {
        bool npc = round % 3 == 0;
        Character& recruit = member(
            (npc ? "Raider " : "Recruit ") + std::to_string(generation) + "-" + std::to_string(round), npc);
        for (Character* c : {&mara, &hound, &recruit}) {
            makeVersion(*c, round % 2);
            saveCharacter(*c);
        }
        delete &recruit;
    };
    auto check = [&] {
        for (bool npc : {false, true}) {
            std::string index = read(npc ? "npcs.idx" : "characters.idx");
            ASSERT_TRUE(index.empty() || index.back() == '\n') << index;
            std::istringstream lines(index);
            for (std::string name; std::getline(lines, name);) {
                std::string text = read(name + (npc ? ".npc" : ".chr"));
                ASSERT_TRUE(text == versions[0] || text == versions[1]) << name << ":\n" << text;
                std::unique_ptr<Character> c(loadCharacter(name, npc));
                ASSERT_NE(c, nullptr);
                EXPECT_EQ(c->penalties.size(), 20u);
            }
        }
        for (const auto& entry : std::filesystem::directory_iterator(".")) {
            std::string name = entry.path().filename().string(), ext = entry.path().extension().string();
            if (ext == ".chr" || ext == ".npc")
                ASSERT_TRUE(read(name) == versions[0] || read(name) == versions[1]) << name;
            else
                ASSERT_TRUE(leftOver(name) || name == "characters.idx" || name == "npcs.idx") << name;
        }
    };
    killAtRandom(saveForever, check);
}

TEST_F(TornSaves, TheMap) {
    HexMap map(nullptr, 24, 24);
    std::string versions[2];
    auto makeVersion = [&](int version) {
        for (Cell* c : map.cells)
            c->setHeight(static_cast<float>(version) + 0.5f), c->difficulty = version;
    };
    for (int v : {0, 1}) {
        makeVersion(v);
        std::ostringstream text;
        map.write(text);
        versions[v] = text.str();
    }
    map.save();

    auto saveForever = [&](int, int round) {
        makeVersion(round % 2);
        map.save();
    };
    auto check = [&] {
        std::string text = read("qm2207.map6");
        ASSERT_TRUE(text == versions[0] || text == versions[1]) << text.size() << " bytes";
        std::unique_ptr<Map> read(loadMap(nullptr));
        ASSERT_NE(read, nullptr);
        EXPECT_EQ(read->cells.size(), map.cells.size());
        for (const auto& entry : std::filesystem::directory_iterator("."))
            ASSERT_TRUE(leftOver(entry.path().filename().string()) ||
                        entry.path().filename() == "qm2207.map6")
                << entry.path();
    };
    killAtRandom(saveForever, check);
}
} // namespace
