#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

/// A program that a benchmark runs and measures; ended with this object. Linux only.
class Process {
public:
    /// Starts `command` with additional environment variables ("NAME=value"); what it prints can be
    /// read here, what it complains about is dropped.
    explicit Process(const std::vector<std::string>& command,
                     const std::vector<std::string>& environment = {});
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    pid_t id() const { return m_id; }
    /// The next line that it prints, or nothing after a minute or when it has ended.
    std::string readLine();

    /// Processor time that all its threads have used, in seconds.
    double processorSeconds() const;
    /// Processor time that its first thread has used, in seconds.
    double firstThreadSeconds() const;
    /// Memory that is there because of this process alone, in KiB.
    double privateKiB() const;
    /// All its memory that is in use, also what it shares with others, in KiB.
    double residentKiB() const;
    int threads() const;

private:
    double fromFile(const char* file, const std::string& field) const;

    pid_t m_id = -1;
    int m_output = -1;
    std::string m_read;
};

/// Monotonic seconds, the same in every process.
double now();
/// Sleeps.
void pauseFor(double seconds);
