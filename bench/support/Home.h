#pragma once

#include <string>
#include <vector>

class Display;

/// A home folder that is nobody's, for programs that a benchmark runs; removed with this object.
class Home {
public:
    Home();
    ~Home();
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;

    const std::string& path() const { return m_path; }
    /// The environment of a program that shows its windows on `display`.
    std::vector<std::string> environment(const Display& display) const;

private:
    std::string m_path;
};
