#include "support/PlayerProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>

namespace {

std::string readWhole(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

std::string commandOutput(const std::string& command) {
    std::string result;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        return result;
    }
    char buffer[256];
    while (fgets(buffer, sizeof buffer, pipe) != nullptr) {
        result += buffer;
    }
    pclose(pipe);
    return result;
}

} // namespace

std::vector<std::string> splitLines(const std::string& text) {
    std::vector<std::string> lines;
    std::string line;
    std::istringstream in(text);
    while (std::getline(in, line)) {
        lines.push_back(line);
    }
    return lines;
}

PlayerProcess::PlayerProcess(std::string workingDirectory, std::vector<std::string> arguments,
                             std::vector<std::string> environment)
    : pid(-1), directory(std::move(workingDirectory)), finished(false) {
    stdoutFile = directory + "/player.stdout";
    stderrFile = directory + "/player.stderr";
    pid = fork();
    if (pid == 0) {
        if (chdir(directory.c_str()) != 0) {
            _exit(126);
        }
        int out = open(stdoutFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        int err = open(stderrFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        dup2(out, STDOUT_FILENO);
        dup2(err, STDERR_FILENO);
        for (const std::string& assignment : environment) {
            putenv(const_cast<char*>(assignment.c_str()));
        }
        if (getenv("SDL_AUDIODRIVER") == nullptr) {
            setenv("SDL_AUDIODRIVER", "dummy", 1);
        }
        std::vector<char*> argv;
        std::string player = KVL_PLAYER;
        argv.push_back(player.data());
        for (std::string& argument : arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        execv(player.c_str(), argv.data());
        _exit(127);
    }
}

PlayerProcess::~PlayerProcess() {
    if (!finished && pid > 0) {
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
    }
}

bool PlayerProcess::waitForWindow(double seconds) {
    auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (std::chrono::steady_clock::now() < deadline) {
        std::string found = commandOutput("xdotool search --onlyvisible --pid " +
                                          std::to_string(pid) + " 2>/dev/null");
        if (!found.empty()) {
            window = splitLines(found).front();
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return false;
}

bool PlayerProcess::pressKey(const std::string& key) {
    if (window.empty()) {
        return false;
    }
    // Focus changes can be refused while the server is busy with other test
    // windows; try again a few times before giving up.
    std::string focus = "xdotool windowfocus --sync " + window + " >/dev/null 2>&1";
    std::string press = "xdotool key " + key + " >/dev/null 2>&1";
    for (int attempt = 0; attempt < 10; attempt++) {
        if (std::system(focus.c_str()) == 0 && std::system(press.c_str()) == 0) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
    return false;
}

int PlayerProcess::waitForExit(double seconds) {
    auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    int status = 0;
    while (std::chrono::steady_clock::now() < deadline) {
        pid_t done = waitpid(pid, &status, WNOHANG);
        if (done == pid) {
            finished = true;
            return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    finished = true;
    return -1;
}

std::string PlayerProcess::output() const {
    return readWhole(stdoutFile);
}

std::vector<std::string> PlayerProcess::outputLines() const {
    return splitLines(output());
}

std::string PlayerProcess::errorOutput() const {
    return readWhole(stderrFile);
}

PlayerRun runToEnd(const std::string& workingDirectory, std::vector<std::string> arguments,
                   double seconds, std::vector<std::string> environment) {
    PlayerProcess player(workingDirectory, std::move(arguments), std::move(environment));
    PlayerRun run;
    run.code = player.waitForExit(seconds);
    run.lines = player.outputLines();
    run.errors = player.errorOutput();
    return run;
}

int runPlayer(const std::string& workingDirectory, const std::vector<std::string>& arguments,
              std::vector<std::string>* lines, double seconds,
              std::vector<std::string> environment) {
    PlayerRun run = runToEnd(workingDirectory, arguments, seconds, std::move(environment));
    if (lines != nullptr) {
        *lines = run.lines;
    }
    return run.code;
}
