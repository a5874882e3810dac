#include "app/shell/GlobalMuteKey.h"

#include <utility>

namespace orvanta {
namespace {

/// What is not a modifier's own bit depends on the device.
constexpr std::uint64_t kDeviceDependentFlags = 0xFFFF;

bool isMuteKey(const KeyDownEvent& event) {
    const std::uint64_t modifiers = event.modifierFlags & ~kDeviceDependentFlags;
    return modifiers == (NSEventModifierFlagCommand | NSEventModifierFlagShift) &&
           event.charactersIgnoringModifiers == "m";
}

} // namespace

void installGlobalMuteKey(KeyMonitor& monitor, RunLoop& mainRunLoop,
                          std::weak_ptr<MixerViewModel> model) {
    monitor.addGlobalMonitor([&mainRunLoop, model = std::move(model)](const KeyDownEvent& event) {
        if (model.expired() || !isMuteKey(event))
            return;
        mainRunLoop.post([model] {
            if (const auto mixer = model.lock())
                mixer->toggleMuteAll();
        });
    });
}

} // namespace orvanta
