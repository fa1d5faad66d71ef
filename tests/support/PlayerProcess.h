#ifndef KVL_PLAYERPROCESS_H
#define KVL_PLAYERPROCESS_H

#include <sys/types.h>

#include <string>
#include <vector>

// Runs the built player as a separate process in a given working directory,
// collects what it writes, and sends it real key presses through the X
// server (xdotool), the way a viewer would.
class PlayerProcess {
public:
    PlayerProcess(std::string workingDirectory, std::vector<std::string> arguments,
                  std::vector<std::string> environment = {});
    ~PlayerProcess();

    // Waits until the player has mapped its window; false after the timeout.
    bool waitForWindow(double seconds);
    // Gives the window the keyboard focus and presses one key (xdotool names:
    // "space", "Escape").
    bool pressKey(const std::string& key);
    // Waits for the process to end; the exit code, or -1 on a timeout (the
    // process is then killed) or a crash.
    int waitForExit(double seconds);

    std::string output() const;
    std::vector<std::string> outputLines() const;
    std::string errorOutput() const;

private:
    pid_t pid;
    std::string directory;
    std::string stdoutFile;
    std::string stderrFile;
    std::string window;
    bool finished;
};

// What a run of the player to its end left behind.
struct PlayerRun {
    // The exit code, -1 on a timeout or a crash.
    int code = -1;
    std::vector<std::string> lines;
    std::string errors;
};

PlayerRun runToEnd(const std::string& workingDirectory, std::vector<std::string> arguments = {},
                   double seconds = 60.0, std::vector<std::string> environment = {});

// Runs the player to its end and returns its exit code (-1 on a timeout).
int runPlayer(const std::string& workingDirectory, const std::vector<std::string>& arguments,
              std::vector<std::string>* lines, double seconds = 120.0,
              std::vector<std::string> environment = {});

std::vector<std::string> splitLines(const std::string& text);

#endif
