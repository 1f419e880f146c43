#include "Home.h"

#include "Display.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

Home::Home() {
    char path[] = "/tmp/benchXXXXXX";
    if (mkdtemp(path) == nullptr)
        throw std::runtime_error("no folder");
    m_path = path;
}

Home::~Home() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::vector<std::string> Home::environment(const Display& display) const {
    return {display.variable(), "HOME=" + m_path, "XDG_CONFIG_HOME=" + m_path,
            "XDG_RUNTIME_DIR=" + m_path, "QT_QPA_PLATFORM=xcb"};
}
