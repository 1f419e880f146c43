// A TXT record is whatever somebody on the network says about a service.

#include "TxtRecord.h"

#include <cstdint>
#include <cstdlib>

namespace {

void require(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const txtrecord::Keys keys = txtrecord::parse({data, size});

    std::size_t bytes = 0;
    for (const auto& [key, value] : keys) {
        require(key.find('=') == std::string::npos);
        bytes += 1 + key.size() + 1 + value.size();
    }
    require(bytes <= size);

    // What was understood survives being said again.
    const std::string again = txtrecord::build(keys);
    require(size > txtrecord::recordLimit || again.size() == bytes);
    const auto* built = reinterpret_cast<const unsigned char*>(again.data());
    require(size > txtrecord::recordLimit || txtrecord::parse({built, again.size()}) == keys);
    return 0;
}
