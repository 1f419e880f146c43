#include "Process.h"

#include <cstdlib>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <fcntl.h>

namespace {

constexpr int patienceMs = 60'000;

double secondsOf(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

std::vector<char*> pointersTo(std::vector<std::string>& strings) {
    std::vector<char*> pointers;
    pointers.reserve(strings.size() + 1);
    for (std::string& string : strings)
        pointers.push_back(string.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// The environment of this process, with changes.
std::vector<std::string> environmentWith(const std::vector<std::string>& changes) {
    std::vector<std::string> variables = changes;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string inherited = *variable;
        const std::string name = inherited.substr(0, inherited.find('=') + 1);
        bool isChanged = false;
        for (const std::string& change : changes)
            isChanged = isChanged || change.starts_with(name);
        if (!isChanged)
            variables.push_back(inherited);
    }
    return variables;
}

} // namespace

double now() {
    return secondsOf(CLOCK_MONOTONIC);
}

void pauseFor(double seconds) {
    timespec time{};
    time.tv_sec = static_cast<time_t>(seconds);
    time.tv_nsec = static_cast<long>((seconds - static_cast<double>(time.tv_sec)) * 1e9);
    nanosleep(&time, nullptr);
}

Process::Process(const std::vector<std::string>& command,
                 const std::vector<std::string>& environment) {
    int pipe[2] = {-1, -1};
    if (pipe2(pipe, O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    m_output = pipe[0];
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipe[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::vector<std::string> arguments = command;
    std::vector<std::string> variables = environmentWith(environment);
    const int error = posix_spawnp(&m_id, command.front().c_str(), &actions, nullptr,
                                   pointersTo(arguments).data(), pointersTo(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    close(pipe[1]);
    if (error != 0) {
        close(m_output);
        throw std::runtime_error("cannot start " + command.front());
    }
}

Process::~Process() {
    kill(m_id, SIGTERM);
    waitpid(m_id, nullptr, 0);
    close(m_output);
}

std::string Process::readLine() {
    for (;;) {
        if (const auto end = m_read.find('\n'); end != std::string::npos) {
            std::string line = m_read.substr(0, end);
            m_read.erase(0, end + 1);
            return line;
        }
        pollfd readable{m_output, POLLIN, 0};
        char bytes[4096];
        if (poll(&readable, 1, patienceMs) <= 0)
            return {};
        const ssize_t count = read(m_output, bytes, sizeof bytes);
        if (count <= 0)
            return {};
        m_read.append(bytes, static_cast<std::size_t>(count));
    }
}

double Process::processorSeconds() const {
    clockid_t clock{};
    return clock_getcpuclockid(m_id, &clock) == 0 ? secondsOf(clock) : 0;
}

double Process::firstThreadSeconds() const {
    const std::string id = std::to_string(m_id);
    std::ifstream file("/proc/" + id + "/task/" + id + "/schedstat");
    double nanoseconds = 0;
    file >> nanoseconds;
    return nanoseconds * 1e-9;
}

double Process::fromFile(const char* name, const std::string& field) const {
    std::ifstream file("/proc/" + std::to_string(m_id) + "/" + name);
    double value = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(field + ":"))
            value = std::strtod(line.c_str() + field.size() + 1, nullptr);
    }
    return value;
}

double Process::privateKiB() const {
    return fromFile("smaps_rollup", "Private_Clean") + fromFile("smaps_rollup", "Private_Dirty");
}

double Process::residentKiB() const {
    return fromFile("status", "VmRSS");
}

int Process::threads() const {
    return static_cast<int>(fromFile("status", "Threads"));
}
