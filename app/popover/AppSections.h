#pragma once

#include "core/discovery/AudioApp.h"
#include "core/model/PIDMap.h"
#include "core/platform/RunLoop.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace orvanta {

/// The parts of the panel's list, from top to bottom.
enum class AppSection : std::uint8_t { playing, recentlyActive, idle };

inline constexpr std::array kAppSections{AppSection::playing, AppSection::recentlyActive,
                                         AppSection::idle};

/// For people to read.
[[nodiscard]] std::string_view titleOf(AppSection section) noexcept;

/// Where an application stands. One that is silent counts as recently active for less than
/// `MixerViewModel::recentActivityWindow` after its last sound.
[[nodiscard]] AppSection sectionOf(const AudioApp& app, const PIDMap<Seconds>& lastActiveTime,
                                   Seconds now);

} // namespace orvanta
