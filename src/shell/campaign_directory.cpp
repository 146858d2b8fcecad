// The campaign directory: the choice among the command line, the current directory and the user's
// data directory, and the copy of the sample that a new campaign starts as.
#include "shell/campaign_directory.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

namespace fs = std::filesystem;

namespace {

// The files that make a directory a campaign: any one of them will do, so that a referee's
// directory holding only characters so far is taken as well.
const char* const campaignFiles[] = {"items.dat", "skills.dat",   "characters.idx",
                                     "npcs.idx",  "factions.dat", "qm2207.map6"};

bool holdsCampaign(const fs::path& dir) {
    std::error_code ec;
    for (const char* name : campaignFiles)
        if (fs::exists(dir / name, ec)) return true;
    return false;
}

std::string reason(const std::error_code& ec) {
    return ec.message();
}

// Copies the sample into a fresh directory beside `dir`, which then takes its name, so that a
// copy broken off half-way leaves nothing behind. An empty directory is replaced by the rename.
std::string copySample(const fs::path& dir, const fs::path& sample) {
    std::error_code ec;
    if (!fs::is_directory(sample, ec)) return "there is no sample campaign at " + sample.string();
    fs::create_directories(dir.parent_path(), ec);
    if (ec) return reason(ec);
    // Appended in turn: g++ 12 at -O3 warns, wrongly, of an overlap in "." + std::string.
    std::string hidden = ".";
    hidden += dir.filename().string();
    hidden += ".new-XXXXXX";
    std::string pattern = (dir.parent_path() / hidden).string();
    if (!mkdtemp(pattern.data())) return std::strerror(errno);
    fs::path fresh = pattern;
    // mkdtemp keeps the directory to its owner; a campaign gets what a plain mkdir would give.
    mode_t mask = umask(0);
    umask(mask);
    fs::permissions(fresh, static_cast<fs::perms>(0777 & ~mask), ec);
    if (!ec) fs::copy(sample, fresh, fs::copy_options::recursive, ec);
    if (!ec) fs::rename(fresh, dir, ec);
    if (ec) {
        std::error_code ignored;
        fs::remove_all(fresh, ignored);
        return reason(ec);
    }
    return "";
}

} // namespace

CampaignDirectory enterCampaignDirectory(const char* given, const char* dataHome, const char* home,
                                         const fs::path& sample) {
    CampaignDirectory result;
    std::error_code ec;
    fs::path dir;
    bool chosen = given || holdsCampaign(".");
    if (given)
        dir = given;
    else if (chosen)
        dir = ".";
    else if (dataHome && dataHome[0] == '/')
        dir = fs::path(dataHome) / "hexfold" / "campaign";
    else if (home && home[0])
        dir = fs::path(home) / ".local" / "share" / "hexfold" / "campaign";
    else {
        result.error = "cannot tell where the campaign directory goes: neither XDG_DATA_HOME nor HOME is set";
        return result;
    }
    dir = fs::absolute(dir, ec).lexically_normal();
    // "/a/b/" names the directory b: the copy's name is taken from the last component.
    if (!dir.has_filename()) dir = dir.parent_path();
    // Installed with the prefix ~/.local, the sample lies where the user's own campaign goes: played
    // there, the next installation would overwrite the saved characters. A sample that the referee
    // chose, by naming it or by starting in it (the build's own, by scripts/run), is played as chosen.
    if (!chosen && fs::equivalent(dir, sample, ec)) {
        result.error = "cannot use " + dir.string() +
                       " as your campaign: the sample campaign is installed there (install Hexfold under "
                       "another prefix, or set XDG_DATA_HOME elsewhere)";
        return result;
    }

    fs::file_status status = fs::status(dir, ec);
    if (!fs::exists(status) || (fs::is_directory(status) && fs::is_empty(dir, ec))) {
        std::string failure = copySample(dir, sample);
        if (!failure.empty()) {
            result.error = "cannot make the campaign directory " + dir.string() + ": " + failure;
            return result;
        }
        result.made = true;
    } else if (fs::is_directory(status) && !holdsCampaign(dir)) {
        // Someone's other files: a mistyped name would otherwise open a program with empty lists
        // and no font, and a save would scatter campaign files among them.
        std::string names;
        for (const char* name : campaignFiles)
            names += std::string(names.empty() ? "" : ", ") + name;
        result.error = dir.string() + " holds no campaign (none of " + names +
                       "): name a new or empty directory to start one";
        return result;
    }
    if (chdir(dir.c_str()) != 0) {
        result.error = "cannot enter the campaign directory " + dir.string() + ": " + std::strerror(errno);
        return result;
    }
    result.path = fs::current_path(ec);
    if (ec) result.path = dir;
    return result;
}

fs::path sampleCampaignFor(const fs::path& program) {
    fs::path bin = program.parent_path();
    fs::path installed = bin.parent_path() / "share" / "hexfold" / "campaign";
    fs::path built = bin.parent_path() / "campaign";
    std::error_code ec;
    return !fs::is_directory(installed, ec) && fs::is_directory(built, ec) ? built : installed;
}
