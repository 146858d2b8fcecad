// The campaign directory: which one the program works in, and the making of a new one as a copy of
// the sample campaign installed beside the program.
#pragma once

#include <filesystem>
#include <string>

struct CampaignDirectory {
    std::filesystem::path path; // where the program now works
    bool made = false;          // new, a copy of the sample
    std::string error;          // set when no directory could be made, used or entered: one line, for the user
};

// Chooses the campaign directory and changes into it: the directory given (null for none); else
// the current one if it holds a campaign (any of the data files); else "hexfold/campaign" under
// dataHome, or under home's ".local/share" when dataHome is unset, empty or relative. A directory
// that does not exist, or is empty, is first made a copy of the sample: whole or not at all; one
// that holds other files but no campaign is refused.
CampaignDirectory enterCampaignDirectory(const char* given, const char* dataHome, const char* home,
                                         const std::filesystem::path& sample);

// The sample campaign for a program at this path: share/hexfold/campaign beside the bin/ that
// holds it, whatever the prefix; in a build tree, the campaign/ that the build assembles.
std::filesystem::path sampleCampaignFor(const std::filesystem::path& program);
