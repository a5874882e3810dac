#pragma once

#include <cstddef>
#include <ostream>
#include <string>

namespace orvanta::test {

/// What this process holds.
struct Footprint {
    std::size_t descriptors = 0;
    std::size_t heapBytes = 0;
    std::size_t residentBytes = 0;

    static Footprint now();
};

/// What this process's descriptors are, one a line.
std::string openDescriptors();

std::ostream& operator<<(std::ostream& stream, const Footprint& footprint);

} // namespace orvanta::test
