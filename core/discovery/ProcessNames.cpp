#include "core/discovery/ProcessNames.h"

#include <algorithm>

namespace orvanta {
namespace {

std::string trimmed(const std::string& text) {
    constexpr const char* kBlanks = " \t";
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

} // namespace

const std::set<std::string, std::less<>>& excludedProcessNames() {
    static const std::set<std::string, std::less<>> names{"audioaccessoryd",
                                                          "audiomxd",
                                                          "avconferenced",
                                                          "callservicesd",
                                                          "corespeechd",
                                                          "heard",
                                                          "loginwindow",
                                                          "mediaanalysisd",
                                                          "mediaremoted",
                                                          "PerfPowerServices",
                                                          "systemsoundserverd",
                                                          "systemstats",
                                                          "universalaccessd",
                                                          "ContinuityCaptureAgent",
                                                          "LogiRightSight",
                                                          "assistantd",
                                                          "PowerChime",
                                                          "SiriNCService",
                                                          "Siri",
                                                          "Control Center",
                                                          "coreaudiod",
                                                          "audioclipd",
                                                          "WindowServer",
                                                          "Logi Options+",
                                                          "airplayd",
                                                          "bluetoothd",
                                                          "rapportd",
                                                          "sharingd",
                                                          "UserEventAgent",
                                                          "SystemUIServer",
                                                          "Finder",
                                                          "Dock",
                                                          "NotificationCenter",
                                                          "ScreenSaverEngine",
                                                          "ScreenSaverAgent",
                                                          "AMPDeviceDiscoveryAgent",
                                                          "AMPLibraryAgent",
                                                          "AMPArtworkAgent",
                                                          "AMPDevicesAgent",
                                                          "SpeechSynthesisServer",
                                                          "VoiceOver",
                                                          "AXVisualSupportAgent",
                                                          "accessibility_inspector",
                                                          "MTLCompilerService",
                                                          "TouchBarServer",
                                                          "coreautha",
                                                          "SecurityAgent",
                                                          "distnoted",
                                                          "usernoted",
                                                          "diagnosticd",
                                                          "symptomsd",
                                                          "Orvanta",
                                                          "OrvantaDesk",
                                                          "AudioMixerCLI"};
    return names;
}

bool hasHelperNameMarker(std::string_view name) {
    return std::any_of(helperNameMarkers.begin(), helperNameMarkers.end(),
                       [&](auto marker) { return name.find(marker) != std::string_view::npos; });
}

std::string withoutHelperNameMarkers(std::string name) {
    for (const std::string_view marker : helperNameMarkers)
        for (auto at = name.find(marker); at != std::string::npos; at = name.find(marker, at))
            name.erase(at, marker.size());
    return trimmed(name);
}

} // namespace orvanta
