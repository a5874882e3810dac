#pragma once

#include "app/demo/IconTile.h"
#include "platform/embedded/sounds/Combinations.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orvanta::demo {

/// What the process of a program uses, as the system would measure it.
struct ProcessUse {
    std::uint64_t megabytes;
    std::int32_t threads;
    /// Of one core, while it plays; a twentieth of that while it does not.
    double processorShare;
};

/// A program that plays in the demo.
struct DemoProgram {
    std::int32_t pid;
    std::string name;
    std::string bundleIdentifier;
    IconTile tile;
    embedded::Sound sound;
    /// When it plays, counted from the start of the demo.
    embedded::Turns turns;
    ProcessUse use;
};

/// All of them, of six kinds. Their peaks lie between -12 and -3 dBFS, where meters have something
/// to show and room above it. Who looks at the panel finds one in each of its sections, from the
/// tenth second on and for the first five minutes.
[[nodiscard]] std::vector<DemoProgram> demoPrograms();

} // namespace orvanta::demo
