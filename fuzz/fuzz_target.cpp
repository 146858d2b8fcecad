// The libFuzzer entry of one harness: the build makes one program per harness, naming it in
// HEXFOLD_HARNESS. Each process reads and writes in a temporary directory of its own.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

#include "harness.h"

namespace {
std::string directory;

void removeDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(directory, ignored);
}
} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    // The fuzzer reads the inputs, corpora and artifact places named on the command line only after
    // this, from the working directory that the harness moves to: they are made absolute first.
    static std::vector<std::string> absolute;
    absolute.reserve(static_cast<std::size_t>(*argc));
    for (int i = 1; i < *argc; ++i) {
        std::string arg = (*argv)[i];
        std::size_t value = 0;
        for (const char* flag : {"-artifact_prefix=", "-exact_artifact_path=", "-dict="})
            if (arg.rfind(flag, 0) == 0) value = arg.find('=') + 1;
        if (arg.empty() || (value == 0 && arg.front() == '-') || value == arg.size()) continue;
        // A prefix that ends in a slash names a directory, and keeps its slash.
        absolute.push_back(arg.substr(0, value) + std::filesystem::absolute(arg.substr(value)).string());
        (*argv)[i] = absolute.back().data();
    }
    std::string pattern = (std::filesystem::temp_directory_path() / "hexfold-fuzz-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr || chdir(pattern.c_str()) != 0) {
        std::perror("hexfold fuzz: no working directory");
        std::exit(1);
    }
    directory = pattern;
    std::atexit(removeDirectory);
    prepareDirectory();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Harness* harness = findHarness(HEXFOLD_HARNESS);
    harness->run(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
