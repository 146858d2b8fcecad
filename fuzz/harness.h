// The bodies of the fuzz harnesses, one per reader of the program's files. Each writes its input
// into the working directory under the name that the program reads, reads it with the program's own
// reader, and then uses what was read, so that a value that reads but breaks a later rule is found
// too. The libFuzzer programs and the replay of the kept inputs in the tests call the same bodies.
#pragma once

#include <string_view>

struct Harness {
    const char* name; // also the directory of its kept inputs, tests/data/fuzz/<name>
    void (*run)(std::string_view input);
};

extern const Harness harnesses[];
extern const int harnessCount;
// Null for a name that no harness has.
const Harness* findHarness(std::string_view name);

// Fills the working directory with the sample campaign that the harnesses read beside their input.
void prepareDirectory();
