#include "app/automation/ListAudioAppsIntent.h"

#include "app/automation/OrvantaIntentBridge.h"

#include <fmt/format.h>

#include <vector>

namespace orvanta {
namespace {

std::vector<std::string> tappedNames() {
    std::vector<std::string> names;
    if (const auto model = OrvantaIntentBridge::sharedModel()) {
        for (const auto& [pid, name] : model->tappedAppNames())
            names.push_back(name);
    }
    return names;
}

} // namespace

std::string ListAudioAppsIntent::perform() {
    const std::vector<std::string> names = tappedNames();
    if (names.empty())
        return "No audio apps are currently playing.";
    return fmt::format("Playing: {}", fmt::join(names, ", "));
}

} // namespace orvanta
