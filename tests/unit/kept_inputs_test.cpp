// Every input kept for the fuzz harnesses (the seeds, and each input that ever crashed, hung or ran
// away with memory) fed through the same harness bodies under this build's sanitizers.
#include <algorithm>
#include <filesystem>
#include <vector>

#include "harness.h"
#include "temp_dir.h"

// Under AddressSanitizer no allocation in these tests may pass the readers' limit of 256 MiB, so that
// an input that once ran away with memory fails here as it did in its fuzzer. ASAN_OPTIONS, when
// set, adds to this rather than replacing it.
extern "C" const char* __asan_default_options() {
    return "max_allocation_size_mb=256";
}

namespace {
const std::filesystem::path kept = std::filesystem::path(HEXFOLD_TEST_DATA) / "fuzz";

class KeptInputs : public TempDirTest, public ::testing::WithParamInterface<const Harness*> {};

TEST_P(KeptInputs, ReadWithoutFault) {
    prepareDirectory();
    std::vector<std::filesystem::path> inputs;
    for (const auto& entry : std::filesystem::directory_iterator(kept / GetParam()->name))
        inputs.push_back(entry.path());
    std::sort(inputs.begin(), inputs.end());
    ASSERT_FALSE(inputs.empty());
    for (const auto& input : inputs) {
        SCOPED_TRACE(input.filename().string());
        GetParam()->run(read(input));
    }
}

std::vector<const Harness*> all() {
    std::vector<const Harness*> list;
    for (int i = 0; i < harnessCount; ++i)
        list.push_back(&harnesses[i]);
    return list;
}
INSTANTIATE_TEST_SUITE_P(Harnesses, KeptInputs, ::testing::ValuesIn(all()),
                         [](const auto& info) { return std::string(info.param->name); });

TEST(KeptInputs, EveryDirectoryBelongsToAHarness) {
    for (const auto& entry : std::filesystem::directory_iterator(kept))
        EXPECT_NE(findHarness(entry.path().filename().string()), nullptr) << entry.path();
}
} // namespace
