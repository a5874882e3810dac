#include "app/popover/AppSections.h"

#include "core/model/MixerViewModel.h"

namespace orvanta {

std::string_view titleOf(AppSection section) noexcept {
    switch (section) {
    case AppSection::playing:
        return "Playing";
    case AppSection::recentlyActive:
        return "Recently Active";
    case AppSection::idle:
        break;
    }
    return "Idle";
}

AppSection sectionOf(const AudioApp& app, const PIDMap<Seconds>& lastActiveTime, Seconds now) {
    if (app.isPlaying)
        return AppSection::playing;
    const auto found = lastActiveTime.find(app.pid);
    const bool isRecent =
        found != lastActiveTime.end() && now - found->second < MixerViewModel::recentActivityWindow;
    return isRecent ? AppSection::recentlyActive : AppSection::idle;
}

} // namespace orvanta
