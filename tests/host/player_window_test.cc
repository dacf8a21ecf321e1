// One smoke run of the windowed player on a virtual display (xvfb-run):
// the drawing area becomes the port, idle ticks flow, and SIGTERM ends the
// session cleanly (hide, cleanup) like closing the window.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "run_player.h"

namespace {

// A virtual X display for the test's life: Xvfb picks a free display
// number and reports it (-displayfd).
class VirtualDisplay {
  public:
    // The server's messages go to errorPath.
    explicit VirtualDisplay(const std::string& errorPath) : errors(errorPath) {
        int report[2];
        if (pipe(report) != 0) return;
        pid = fork();
        if (pid == 0) {
            close(report[0]);
            std::string fd = std::to_string(report[1]);
            if (!std::freopen(errorPath.c_str(), "w", stderr)) _exit(126);
            execlp("Xvfb", "Xvfb", "-displayfd", fd.c_str(), "-screen", "0", "800x600x24",
                   "-nolisten", "tcp", static_cast<char*>(nullptr));
            _exit(127);
        }
        close(report[1]);
        // The number and its newline come in two writes; closing the pipe
        // between them would kill the server.
        std::string text;
        char c;
        while (read(report[0], &c, 1) == 1 && c != '\n')
            text += c;
        close(report[0]);
        if (!text.empty()) name = ":" + text;
    }
    ~VirtualDisplay() {
        if (pid <= 0) return;
        ::kill(pid, SIGTERM);
        waitpid(pid, nullptr, 0);
    }
    std::string name; // empty when no display started
    std::string errors;

  private:
    pid_t pid = -1;
};

TEST(PlayerWindow, AreaIsThePortTicksFlowAndSigtermCleansUp) {
    TempHome home;
    VirtualDisplay display(home.path() + "/xvfb.txt");
    if (display.name.empty()) GTEST_SKIP() << "no Xvfb: " << readText(display.errors);
    const std::string log = home.path() + "/window.log";
    const std::string library = home.path() + "/missing.xml";
    const std::string errors = home.path() + "/stderr.txt";
    pid_t pid = fork();
    if (pid == 0) {
        setenv("DISPLAY", display.name.c_str(), 1);
        setenv("NO_AT_BRIDGE", "1", 1);
        if (!std::freopen(errors.c_str(), "w", stderr)) _exit(126);
        execl(PLAYER_BINARY, PLAYER_BINARY, "--log", log.c_str(), "--library", library.c_str(),
              "--size", "640x400", FAKE_PLUGIN, static_cast<char*>(nullptr));
        _exit(127);
    }
    ASSERT_GT(pid, 0);
    auto ticks = [](const std::vector<std::string>& lines) {
        return linesStarting(lines, "handler null").size() >= 3;
    };
    // Up to 30 s for three ticks, then SIGTERM and up to 10 s to end.
    int status = -1;
    bool exited = false;
    for (int waited = 0; !exited && !ticks(readLogLines(log)) && waited < 600; ++waited) {
        exited = waitpid(pid, &status, WNOHANG) == pid;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    if (!exited) ::kill(pid, SIGTERM);
    for (int waited = 0; !exited; ++waited) {
        exited = waitpid(pid, &status, WNOHANG) == pid;
        if (waited == 200) ::kill(pid, SIGKILL);
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    std::vector<std::string> lines = readLogLines(log);

    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0)
        << readText(errors) << "Xvfb on " << display.name << ": " << readText(display.errors);
    ASSERT_TRUE(ticks(lines));
    EXPECT_THAT(lines, ::testing::Contains("player: No tracks: cannot read " + library));
    EXPECT_THAT(lines[0], ::testing::StartsWith("entry init version 9.20 headless 0 "));
    // The area spans the window's width; the player bar takes some height.
    std::vector<std::string> shows = linesStarting(lines, "handler show");
    ASSERT_EQ(shows.size(), 1u);
    int bottom = 0, right = 0, width = 0, height = 0;
    ASSERT_EQ(std::sscanf(shows[0].c_str(), "handler show 0 0 %d %d port %dx%d", &bottom, &right,
                          &width, &height),
              4)
        << shows[0];
    EXPECT_EQ(right, 640);
    EXPECT_EQ(width, 640);
    EXPECT_EQ(height, bottom);
    EXPECT_GT(height, 300);
    EXPECT_LT(height, 400);
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(std::vector<std::string>(lines.end() - 3, lines.end()),
              (std::vector<std::string>{"handler hide", "handler clr ", "entry clr "}));
}

} // namespace
