#pragma once

#include "core/platform/AudioObject.h"

#include <string>
#include <vector>

namespace orvanta {

/// What becomes of a process's own output while a tap on it exists.
enum class CATapMuteBehavior : std::int32_t {
    unmuted = 0,
    muted = 1,
    mutedWhenTapped = 2,
};

inline constexpr CATapMuteBehavior CATapMuted = CATapMuteBehavior::muted;

/// Asks for a tap that delivers a stereo mix of the named processes' output.
class CATapDescription {
public:
    /// Draws a fresh UUID; not muted and not private until told so.
    static CATapDescription stereoMixdownOfProcesses(std::vector<AudioObjectID> processes);

    void setName(std::string name) { name_ = std::move(name); }

    void setMuteBehavior(CATapMuteBehavior behavior) { muteBehavior_ = behavior; }

    void setPrivate(bool isPrivate) { isPrivate_ = isPrivate; }

    [[nodiscard]] const std::vector<AudioObjectID>& processes() const { return processes_; }

    [[nodiscard]] const std::string& name() const { return name_; }

    [[nodiscard]] CATapMuteBehavior muteBehavior() const { return muteBehavior_; }

    [[nodiscard]] bool isPrivate() const { return isPrivate_; }

    /// In the form "8-4-4-4-12", upper-case hexadecimal digits.
    [[nodiscard]] const std::string& UUID() const { return uuid_; }

private:
    CATapDescription() = default;

    std::vector<AudioObjectID> processes_;
    std::string name_;
    CATapMuteBehavior muteBehavior_ = CATapMuteBehavior::unmuted;
    bool isPrivate_ = false;
    std::string uuid_;
};

} // namespace orvanta
