#include "app/automation/OrvantaShortcuts.h"

#include "app/automation/ListAudioAppsIntent.h"
#include "app/automation/SetVolumeIntent.h"
#include "app/automation/ToggleMuteIntent.h"

#include <array>

namespace orvanta {
namespace {

constexpr std::array<std::string_view, 2> kSetVolumePhrases{
    "Set {application name} volume to {volume}", "Change {application name} volume"};
constexpr std::array<std::string_view, 3> kToggleMutePhrases{
    "Mute {application name}", "Unmute {application name}", "Toggle {application name} mute"};
constexpr std::array<std::string_view, 2> kListAudioAppsPhrases{
    "List {application name} audio apps", "Show {application name} playing apps"};

constexpr std::array kAppShortcuts{
    AppShortcut{.intent = AppIntent::setVolume,
                .title = SetVolumeIntent::title,
                .phrases = kSetVolumePhrases,
                .shortTitle = "Set Volume",
                .systemImageName = "speaker.wave.2.fill",
                .parameter = SetVolumeIntent::volumeParameter},
    AppShortcut{.intent = AppIntent::toggleMute,
                .title = ToggleMuteIntent::title,
                .phrases = kToggleMutePhrases,
                .shortTitle = "Toggle Mute",
                .systemImageName = "speaker.slash.fill",
                .parameter = std::nullopt},
    AppShortcut{.intent = AppIntent::listAudioApps,
                .title = ListAudioAppsIntent::title,
                .phrases = kListAudioAppsPhrases,
                .shortTitle = "List Audio Apps",
                .systemImageName = "music.note.list",
                .parameter = std::nullopt},
};

} // namespace

std::span<const AppShortcut> OrvantaShortcuts::appShortcuts() noexcept {
    return kAppShortcuts;
}

std::string OrvantaShortcuts::spoken(std::string_view phrase, std::string_view applicationName) {
    std::string words(phrase);
    if (const std::size_t place = words.find(applicationNameToken); place != std::string::npos)
        words.replace(place, applicationNameToken.size(), applicationName);
    return words;
}

} // namespace orvanta
