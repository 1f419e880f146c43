#include "ReleaseIndex.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view index(reinterpret_cast<const char*>(data), size);
    const auto release = release_index::find(index, "apps_linux64");
    if (!release)
        return 0;
    // What is found was there, and the numbers in it never make two versions newer than each other.
    if (index.find(release->version) == std::string_view::npos || release->fileName.empty())
        std::abort();
    const auto forth = release_index::compare("2013.2", release->version);
    const auto back = release_index::compare(release->version, "2013.2");
    using release_index::Comparison;
    if ((forth == Comparison::Same) != (back == Comparison::Same))
        std::abort();
    (void)release_index::staysInFolder(release->fileName);
    return 0;
}
