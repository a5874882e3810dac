#pragma once

#include "core/model/MixerViewModel.h"
#include "core/platform/KeyMonitor.h"
#include "core/platform/RunLoop.h"

#include <memory>

namespace orvanta {

/// Mutes everything, or ends that, by command-shift-M while another program has the keyboard.
/// Watches until the monitor's end; holds the model weakly, and toggles outside the event's
/// handling. Both ports must outlive the monitor's last event.
void installGlobalMuteKey(KeyMonitor& monitor, RunLoop& mainRunLoop,
                          std::weak_ptr<MixerViewModel> model);

} // namespace orvanta
