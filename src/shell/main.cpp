// The entry point: read the command line, settle in the campaign directory, build the application
// and run frames until the window closes.
#include <pwd.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "rules/character.h"
#include "rules/character_files.h"
#include "rules/faction.h"
#include "rules/item.h"
#include "rules/skill.h"
#include "rules/updatable.h"
#include "shell/campaign_directory.h"
#include "shell/hexfold.h"
#include "toolkit/frame_step.h"
#include "toolkit/graphics.h"

namespace {

const char usage[] =
    "Usage: hexfold [CAMPAIGN-DIRECTORY]\n"
    "       hexfold --help | --version\n"
    "\n"
    "Hexfold is the referee's tool for tactical combat in a role-playing game played with pools of\n"
    "six-sided dice. It reads and writes the files of one campaign directory:\n"
    "  - the one named on the command line;\n"
    "  - else the current directory, if it holds a campaign (any of items.dat, skills.dat,\n"
    "    characters.idx, npcs.idx, factions.dat, qm2207.map6);\n"
    "  - else $XDG_DATA_HOME/hexfold/campaign, by default ~/.local/share/hexfold/campaign.\n"
    "A campaign directory that does not exist yet, or is empty, starts as a copy of the sample\n"
    "campaign installed with the program.\n"
    "\n"
    "  -h, --help     show this text and end\n"
    "      --version  show the version and end\n";

int misused(const std::string& problem) {
    std::fprintf(stderr, "hexfold: %s (hexfold --help shows how to start it)\n", problem.c_str());
    return 2;
}

const char* homeDirectory() {
    if (const char* home = std::getenv("HOME")) return home;
    const passwd* user = getpwuid(getuid());
    return user ? user->pw_dir : nullptr;
}

// The installation test's hook: HEXFOLD_SAVE_AND_QUIT names a character, whom the program saves
// after its first frame as the sheet's "Save" button does, and then ends; the exit status says
// whether the save was made.
int saveAndQuit(const char* name) {
    Character* c = findCharacter(name);
    std::string failure = "no such character";
    if (c && saveCharacter(*c, &failure)) return 0;
    std::fprintf(stderr, "hexfold: %s not saved: %s\n", name, failure.c_str());
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    const char* given = nullptr;
    bool optionsEnd = false;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (!optionsEnd && (arg == "--help" || arg == "-h")) {
            std::fputs(usage, stdout);
            return 0;
        }
        if (!optionsEnd && arg == "--version") {
            std::printf("hexfold %s\n", HEXFOLD_VERSION);
            return 0;
        }
        if (!optionsEnd && arg == "--")
            optionsEnd = true;
        else if (!optionsEnd && arg.size() > 1 && arg[0] == '-')
            return misused("unknown option " + arg);
        else if (given)
            return misused("one campaign directory at most");
        else if (arg.empty())
            return misused("the campaign directory's name is empty");
        else
            given = argv[i];
    }

    std::error_code ec;
    std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", ec);
    CampaignDirectory campaign = enterCampaignDirectory(given, std::getenv("XDG_DATA_HOME"), homeDirectory(),
                                                        sampleCampaignFor(program));
    if (!campaign.error.empty()) {
        std::fprintf(stderr, "hexfold: %s\n", campaign.error.c_str());
        return 1;
    }
    std::printf("hexfold: campaign directory %s%s\n", campaign.path.c_str(),
                campaign.made ? " (new: a copy of the sample campaign)" : "");
    std::fflush(stdout);

    const char* saveThenQuit = std::getenv("HEXFOLD_SAVE_AND_QUIT");
    int status = 0;
    {
        Hexfold hexfold;
        // The reason was written to stderr when the window failed to open.
        if (!graphicsOpened())
            status = 1;
        else
            while (frameStep(&hexfold))
                if (saveThenQuit) {
                    status = saveAndQuit(saveThenQuit);
                    break;
                }
    }
    // Once the windows that point into the model are gone, the model goes: nothing is left for a
    // leak checker.
    clearModel();
    return status;
}
