#include "tests/e2e/support/Footprint.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <malloc.h>
#include <unistd.h>

namespace orvanta::test {

namespace {

constexpr std::size_t kibi = 1024;

std::size_t residentSize() {
    std::ifstream file("/proc/self/statm");
    std::size_t size = 0;
    std::size_t resident = 0;
    file >> size >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

} // namespace

Footprint Footprint::now() {
    // What is free at the ends of the heaps is not held by anybody.
    malloc_trim(0);
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    const struct mallinfo2 heap = mallinfo2();
    return {.descriptors = static_cast<std::size_t>(std::distance(begin(descriptors), {})),
            .heapBytes = heap.uordblks + heap.hblkhd,
            .residentBytes = residentSize()};
}

std::string openDescriptors() {
    std::string text;
    for (const auto& descriptor : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code isGone;
        text += std::filesystem::read_symlink(descriptor, isGone).string() + "\n";
    }
    return text;
}

std::ostream& operator<<(std::ostream& stream, const Footprint& footprint) {
    return stream << footprint.descriptors << " descriptors, " << footprint.heapBytes / kibi
                  << " KiB in use, " << footprint.residentBytes / kibi << " KiB resident";
}

} // namespace orvanta::test
