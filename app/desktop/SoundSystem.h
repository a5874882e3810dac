#pragma once

#include "core/platform/AudioHardware.h"
#include "core/platform/ProcessTable.h"
#include "core/platform/Workspace.h"

namespace orvanta {

/// One audio server with the process table and the workspace that go with it.
class SoundSystem {
public:
    SoundSystem() = default;
    SoundSystem(const SoundSystem&) = delete;
    SoundSystem& operator=(const SoundSystem&) = delete;
    virtual ~SoundSystem() = default;

    // Each the same object at every call, for as long as the system lives.
    [[nodiscard]] virtual AudioHardware& hardware() = 0;
    [[nodiscard]] virtual ProcessTable& processes() = 0;
    [[nodiscard]] virtual Workspace& workspace() = 0;
};

} // namespace orvanta
