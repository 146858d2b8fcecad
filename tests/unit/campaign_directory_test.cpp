// Where the program settles: the campaign directory chosen from the command line, the current
// directory and the user's data directory; a new one made whole from the sample or not at all; and
// the command line as the program answers it before any window opens.
#include "shell/campaign_directory.h"

#include <algorithm>
#include <optional>

#include "process.h"
#include "temp_dir.h"

namespace fs = std::filesystem;

namespace {
class CampaignDirectoryTest : public TempDirTest {
  protected:
    void SetUp() override {
        TempDirTest::SetUp();
        fs::create_directory("sample");
        write("sample/items.dat", "sample items\n");
        write("sample/verdana.glf", "font");
    }
    // Enters from `from`, a directory made under the temporary one.
    CampaignDirectory enter(const char* given, const char* dataHome = nullptr, const char* home = nullptr,
                            const fs::path& from = "start") {
        fs::create_directories(dir / from);
        fs::current_path(dir / from);
        return enterCampaignDirectory(given, dataHome, home, dir / "sample");
    }
};
} // namespace

TEST_F(CampaignDirectoryTest, ComesFromTheCommandLineElseACampaignHereElseTheUsersDataDirectory) {
    const std::string d = dir.string();
    struct Case {
        std::optional<std::string> given, dataHome, home;
        bool campaignHere;
        std::string expected; // under the temporary directory
        bool made;
    } cases[] = {
        {"mine", d + "/data0", d + "/home0", true, "start0/mine", true},
        {d + "/deep/er/own/", std::nullopt, std::nullopt, false, "deep/er/own", true},
        {std::nullopt, d + "/data2", d + "/home2", true, "start2", false},
        {std::nullopt, d + "/data3", d + "/home3", false, "data3/hexfold/campaign", true},
        {std::nullopt, "data4", d + "/home4", false, "home4/.local/share/hexfold/campaign", true},
        {std::nullopt, "", d + "/home5", false, "home5/.local/share/hexfold/campaign", true},
    };
    int i = 0;
    for (const Case& c : cases) {
        fs::path from = "start" + std::to_string(i++);
        fs::create_directories(dir / from);
        if (c.campaignHere) write((dir / from / "npcs.idx").string(), "");
        auto text = [](const std::optional<std::string>& s) { return s ? s->c_str() : nullptr; };
        CampaignDirectory result = enter(text(c.given), text(c.dataHome), text(c.home), from);
        EXPECT_EQ(std::tuple(result.path, result.made, result.error),
                  std::tuple(dir / c.expected, c.made, ""))
            << c.expected;
        EXPECT_EQ(fs::current_path(), dir / c.expected);
        EXPECT_EQ(read("items.dat"), c.made ? "sample items\n" : "") << c.expected;
    }
    EXPECT_EQ(enter(nullptr).error,
              "cannot tell where the campaign directory goes: neither XDG_DATA_HOME nor HOME is set");
}

TEST_F(CampaignDirectoryTest, AnExistingCampaignIsKeptAsItIsAndAnEmptyDirectoryFilled) {
    fs::create_directories("start/kept");
    write("start/kept/items.dat", "mine\n");
    fs::create_directories("start/empty");
    CampaignDirectory kept = enter("kept");
    EXPECT_EQ(std::tuple(kept.made, read("items.dat"), fs::exists("verdana.glf")),
              std::tuple(false, "mine\n", false));
    CampaignDirectory filled = enter("empty");
    EXPECT_EQ(std::tuple(filled.made, read("items.dat"), read("verdana.glf")),
              std::tuple(true, "sample items\n", "font"));
}

TEST_F(CampaignDirectoryTest, WhatCannotBeMadeOrEnteredIsToldInOneLineAndLeavesNothingBehind) {
    fs::create_directories("start");
    write("start/file", "");
    fs::create_directories("start/others");
    write("start/others/notes.txt", "");
    const std::string at = (dir / "start").string();
    // The copy breaks off at a file that cannot be read.
    fs::create_symlink("nowhere", "sample/unreadable");
    const std::pair<const char*, std::string> cases[] = {
        {"file/campaign", "cannot make the campaign directory " + at + "/file/campaign: Not a directory"},
        {"file", "cannot enter the campaign directory " + at + "/file: Not a directory"},
        {"new", "cannot make the campaign directory " + at + "/new: No such file or directory"},
        {"others", at + "/others holds no campaign (none of items.dat, skills.dat, characters.idx, npcs.idx, "
                        "factions.dat, qm2207.map6): name a new or empty directory to start one"},
    };
    for (const auto& [given, error] : cases) {
        CampaignDirectory result = enter(given);
        EXPECT_EQ(std::tuple(result.error, result.path, result.made), std::tuple(error, fs::path(), false));
        EXPECT_EQ(fs::current_path(), dir / "start");
    }
    // Installed with the prefix that is the user's data directory's parent, the sample is no campaign
    // to play in.
    fs::create_directories(dir / "data/hexfold");
    fs::create_directory_symlink(dir / "sample", dir / "data/hexfold/campaign");
    EXPECT_EQ(enter(nullptr, (dir / "data").c_str()).error,
              "cannot use " + (dir / "data/hexfold/campaign").string() +
                  " as your campaign: the sample campaign is installed there (install Hexfold under another "
                  "prefix, or set XDG_DATA_HOME elsewhere)");
    // Started in the sample itself, as scripts/run starts in the build's, it is played as chosen.
    EXPECT_EQ(enter(nullptr, (dir / "data").c_str(), nullptr, "sample").path, dir / "sample");
    fs::remove_all(dir / "sample");
    EXPECT_EQ(enter("new").error, "cannot make the campaign directory " + at +
                                      "/new: there is no sample campaign at " + (dir / "sample").string());
    // Nothing half-made: the start directory holds only what the test put there.
    std::vector<std::string> left;
    for (const auto& entry : fs::recursive_directory_iterator(dir / "start"))
        left.push_back(entry.path().lexically_relative(dir / "start").string());
    std::sort(left.begin(), left.end());
    EXPECT_EQ(left, (std::vector<std::string>{"file", "others", "others/notes.txt"}));
}

TEST_F(CampaignDirectoryTest, TheSampleLiesBesideTheProgramInstalledOrBuilt) {
    for (const char* made : {"usr/share/hexfold/campaign", "usr/campaign", "build/campaign"})
        fs::create_directories(made);
    const std::pair<const char*, const char*> cases[] = {
        {"usr/bin/hexfold", "usr/share/hexfold/campaign"}, // installed, before a campaign/ beside bin/
        {"build/src/hexfold", "build/campaign"},           // the build tree
        {"opt/bin/hexfold", "opt/share/hexfold/campaign"}, // neither: named where it should be
    };
    for (const auto& [program, sample] : cases)
        EXPECT_EQ(sampleCampaignFor(dir / program), dir / sample) << program;
}

TEST_F(CampaignDirectoryTest, TheProgramAnswersItsCommandLineAndSaysWhereItWorks) {
    write("file", "");
    const std::string at = dir.string(), hint = " (hexfold --help shows how to start it)\n";
    // No display: the program must answer all of these before it tries to open a window.
    const std::vector<std::string> environment = {"DISPLAY", "WAYLAND_DISPLAY", "XDG_DATA_HOME",
                                                  "HEXFOLD_SAVE_AND_QUIT", "HOME=" + at + "/home"};
    const struct {
        std::vector<std::string> args;
        int status;
        std::string out, err; // the beginnings of what it writes
    } cases[] = {
        {{"--help"}, 0, "Usage: hexfold [CAMPAIGN-DIRECTORY]\n", ""},
        {{"-h"}, 0, "Usage: hexfold [CAMPAIGN-DIRECTORY]\n", ""},
        {{"--version"}, 0, "hexfold " HEXFOLD_VERSION "\n", ""},
        {{"--bogus"}, 2, "", "hexfold: unknown option --bogus" + hint},
        {{"one", "two"}, 2, "", "hexfold: one campaign directory at most" + hint},
        {{""}, 2, "", "hexfold: the campaign directory's name is empty" + hint},
        {{"file/campaign"},
         1,
         "",
         "hexfold: cannot make the campaign directory " + at + "/file/campaign: Not a directory\n"},
        {{"--", "-new"},
         1,
         "hexfold: campaign directory " + at + "/-new (new: a copy of the sample campaign)\n",
         "hexfold: cannot open a 1024x768 OpenGL window"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> args = c.args;
        args.insert(args.begin(), HEXFOLD_PROGRAM);
        ProcessResult result = runProcess(args, environment);
        EXPECT_EQ(
            std::tuple(result.status, result.out.substr(0, c.out.size()), result.err.substr(0, c.err.size())),
            std::tuple(c.status, c.out, c.err))
            << c.args[0];
        EXPECT_LE(std::count(result.err.begin(), result.err.end(), '\n'), 1) << c.args[0];
    }
    // The new campaign is the build's sample; no answer above made one in the home directory.
    EXPECT_TRUE(fs::exists("-new/verdana.glf") && fs::exists("-new/characters.idx"));
    EXPECT_FALSE(fs::exists("home"));
}
