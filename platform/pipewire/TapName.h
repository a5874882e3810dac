#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace orvanta::pipewire {

/// Whose tap a node is. The name of every tap's node carries it, so that whoever starts later can
/// tell what a killed predecessor left behind from what belongs to a living one.
struct TapOwner {
    pid_t pid = 0;
    std::uint64_t startTime = 0;

    friend bool operator==(const TapOwner&, const TapOwner&) = default;
};

/// This process.
TapOwner currentTapOwner();

/// A node name that no other tap of any process has.
std::string makeTapName(const TapOwner& owner, std::uint32_t number);

/// Whether `name` is that of a tap's node, anybody's.
bool isTapName(std::string_view name);

/// Nothing for names that are not a tap's.
std::optional<TapOwner> tapOwner(std::string_view name);

bool isAlive(const TapOwner& owner);

} // namespace orvanta::pipewire
