#include "tests/support/model/ModelRig.h"

#include <utility>

namespace orvanta::test {

ModelRig::ModelRig() {
    server.addDevice({.uid = "speakers", .name = "Speakers"});
    devices->devices = {{.id = 1, .uid = "speakers", .name = "Speakers", .isDefault = true}};
    devices->defaultUID = "speakers";
    tapping->listener = settings->listener = [this](const std::string& call) {
        order.push_back(call);
    };
}

ModelRig::~ModelRig() {
    model.reset();
    HotkeyManager::releaseCurrent();
}

void ModelRig::startPassive() {
    model =
        MixerViewModel::create(platformWith(server), {tapping, discovery, devices, settings}, true);
}

void ModelRig::startRunning() {
    model = MixerViewModel::create(platformWith(server), {tapping, discovery, devices, settings});
}

AudioApp ModelRig::app(std::int32_t pid, const std::string& name,
                       std::optional<std::string> bundleIdentifier, bool isPlaying) const {
    return {
        workspace, static_cast<AudioObjectID>(pid + 1000), pid, name, std::move(bundleIdentifier),
        isPlaying};
}

void ModelRig::list(std::int32_t pid, const std::string& name,
                    std::optional<std::string> bundleIdentifier, bool isPlaying) {
    discovery->apps.push_back(app(pid, name, std::move(bundleIdentifier), isPlaying));
}

void ModelRig::unlist(std::int32_t pid) {
    std::erase_if(discovery->apps, [pid](const AudioApp& each) { return each.pid == pid; });
}

void ModelRig::tap(std::int32_t pid, const std::string& name,
                   std::optional<std::string> bundleIdentifier) {
    list(pid, name, std::move(bundleIdentifier));
    refresh();
    model->toggleTap(discovery->apps.back());
    forget();
}

void ModelRig::forget() {
    tapping->calls.clear();
    settings->calls.clear();
    order.clear();
    log.clear();
}

AppSettings ModelRig::stored(const std::string& key) const {
    const auto found = settings->records.find(key);
    return found == settings->records.end() ? defaultRecord() : found->second;
}

AppSettings ModelRig::defaultRecord() {
    return {.volume = 1.0F,
            .isMuted = false,
            .isTapped = true,
            .balance = 0.0F,
            .limiterEnabled = false,
            .normalizationEnabled = false,
            .stereoWidth = 1.0F,
            .crossfeedAmount = 0.0F};
}

} // namespace orvanta::test
