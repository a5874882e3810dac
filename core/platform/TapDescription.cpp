#include "core/platform/TapDescription.h"

#include <array>
#include <random>

namespace orvanta {
namespace {

/// A random (version 4) UUID, RFC 4122.
std::string randomUUID() {
    std::array<unsigned char, 16> bytes{};
    std::random_device random;
    for (auto& byte : bytes)
        byte = static_cast<unsigned char>(random() & 0xFFU);
    bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0FU) | 0x40U);
    bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3FU) | 0x80U);

    constexpr const char* digits = "0123456789ABCDEF";
    std::string text;
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        if (index == 4 || index == 6 || index == 8 || index == 10)
            text += '-';
        text += digits[bytes[index] >> 4U];
        text += digits[bytes[index] & 0x0FU];
    }
    return text;
}

} // namespace

CATapDescription CATapDescription::stereoMixdownOfProcesses(std::vector<AudioObjectID> processes) {
    CATapDescription description;
    description.processes_ = std::move(processes);
    description.uuid_ = randomUUID();
    return description;
}

} // namespace orvanta
