#include "app/desktop/makeIntentService.h"

#include "app/automation/ListAudioAppsIntent.h"
#include "app/automation/OrvantaShortcuts.h"
#include "app/automation/SetVolumeIntent.h"
#include "app/automation/ToggleMuteIntent.h"
#include "platform/qt/automation/IntentInterface.h"

#include <string_view>
#include <utility>
#include <vector>

namespace orvanta {
namespace {

constexpr std::string_view kApplicationName = "Orvanta";

std::string methodOf(AppIntent intent) {
    switch (intent) {
    case AppIntent::setVolume:
        return intents::kSetVolume.data();
    case AppIntent::toggleMute:
        return intents::kToggleMute.data();
    case AppIntent::listAudioApps:
        break;
    }
    return intents::kListAudioApps.data();
}

std::string wordOf(IntentControlStyle style) {
    switch (style) {
    case IntentControlStyle::field:
        return "field";
    case IntentControlStyle::slider:
        return "slider";
    case IntentControlStyle::stepper:
        break;
    }
    return "stepper";
}

IntentArgument argumentOf(const IntentParameter& parameter) {
    return {.name = std::string(parameter.name),
            .title = std::string(parameter.title),
            .description = std::string(parameter.description),
            .defaultValue = parameter.defaultValue,
            .controlStyle = wordOf(parameter.controlStyle)};
}

IntentShortcut onBus(const AppShortcut& shortcut) {
    IntentShortcut record{.method = methodOf(shortcut.intent),
                          .title = std::string(shortcut.title),
                          .phrases = {},
                          .shortTitle = std::string(shortcut.shortTitle),
                          .symbol = std::string(shortcut.systemImageName),
                          .argument = std::nullopt};
    for (const std::string_view phrase : shortcut.phrases)
        record.phrases.push_back(OrvantaShortcuts::spoken(phrase, kApplicationName));
    if (shortcut.parameter)
        record.argument = argumentOf(*shortcut.parameter);
    return record;
}

std::vector<IntentShortcut> shortcuts() {
    std::vector<IntentShortcut> records;
    for (const AppShortcut& shortcut : OrvantaShortcuts::appShortcuts())
        records.push_back(onBus(shortcut));
    return records;
}

std::string setVolume(std::optional<std::int64_t> volume) {
    SetVolumeIntent intent;
    if (volume)
        intent.volume = *volume;
    return intent.perform();
}

} // namespace

std::unique_ptr<IntentService> makeIntentService(QDBusConnection sessionBus,
                                                 const std::string& domain, SystemLog& log) {
    return std::make_unique<IntentService>(
        std::move(sessionBus), QString::fromStdString(domain), log,
        IntentService::Intents{.setVolume = &setVolume,
                               .toggleMute = &ToggleMuteIntent::perform,
                               .listAudioApps = &ListAudioAppsIntent::perform,
                               .shortcuts = shortcuts()});
}

} // namespace orvanta
