// Runs one of the build's programs as a process in the working directory and gives back how it
// ended and what it wrote.
#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

extern char** environ;

struct ProcessResult {
    int status; // the exit status, or minus the signal that ended the process
    std::string out, err;
};

// `environment` holds NAME=VALUE lines, or names alone to remove; the rest is this process's.
inline ProcessResult runProcess(std::vector<std::string> args,
                                const std::vector<std::string>& environment = {}) {
    auto nameOf = [](const std::string& v) { return v.substr(0, v.find('=')); };
    std::vector<std::string> variables;
    for (char** v = environ; *v; ++v)
        if (std::none_of(environment.begin(), environment.end(),
                         [&](const std::string& e) { return nameOf(e) == nameOf(*v); }))
            variables.push_back(*v);
    for (const std::string& e : environment)
        if (e.find('=') != std::string::npos) variables.push_back(e);

    auto pointers = [](std::vector<std::string>& strings) {
        std::vector<char*> p;
        for (std::string& s : strings)
            p.push_back(s.data());
        p.push_back(nullptr);
        return p;
    };
    std::vector<char*> argv = pointers(args), envp = pointers(variables);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "process-out.txt", O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, 2, "process-err.txt", O_WRONLY | O_CREAT | O_TRUNC, 0644);
    pid_t pid = 0;
    int status = 0;
    if (posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), envp.data()) != 0) status = 127 << 8;
    posix_spawn_file_actions_destroy(&actions);
    if (pid) waitpid(pid, &status, 0);
    auto read = [](const char* name) {
        return (std::ostringstream() << std::ifstream(name, std::ios::binary).rdbuf()).str();
    };
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), read("process-out.txt"),
            read("process-err.txt")};
}
