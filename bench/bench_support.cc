#include "bench_support.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>

extern char** environ;

ProcessRun runProcess(const std::vector<std::string>& args,
                      const std::vector<std::string>& environment, const char* output) {
    ProcessRun run;
    std::vector<std::string> argStore(args);
    std::vector<char*> argv;
    for (std::string& a : argStore) argv.push_back(&a[0]);
    argv.push_back(nullptr);
    std::vector<std::string> envStore(environment);
    std::vector<char*> envp;
    for (std::string& e : envStore) envp.push_back(&e[0]);
    for (char** e = environ; *e; ++e) {
        bool replaced = false;
        for (const std::string& mine : environment)
            if (mine.compare(0, mine.find('=') + 1, *e, 0, mine.find('=') + 1) == 0) replaced = true;
        if (!replaced) envp.push_back(*e);
    }
    envp.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, output, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    auto start = std::chrono::steady_clock::now();
    pid_t child = 0;
    int failed = posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    if (failed != 0) {
        fprintf(stderr, "cannot start %s: %s\n", argv[0], strerror(failed));
        return run;
    }
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child) return run;
    run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    run.peakMegabytes = usage.ru_maxrss / 1024.0;
    run.ok = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    if (!run.ok) fprintf(stderr, "%s failed (status %d)\n", argv[0], status);
    return run;
}

double median(std::vector<double> values) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

bool reportGoal(const char* what, bool met) {
    printf("  goal: %s ... %s\n", what, met ? "met" : "MISSED");
    return met;
}
