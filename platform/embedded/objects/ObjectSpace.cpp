#include "platform/embedded/objects/ObjectSpace.h"

#include <algorithm>

namespace orvanta::embedded {

namespace {

template <typename Object, typename Matches>
Object* find(const std::vector<std::unique_ptr<Object>>& objects, Matches matches) {
    const auto found = std::find_if(objects.begin(), objects.end(),
                                    [&](const auto& object) { return matches(*object); });
    return found == objects.end() ? nullptr : found->get();
}

template <typename Object>
Object* findID(const std::vector<std::unique_ptr<Object>>& objects, AudioObjectID id) {
    return find(objects, [=](const Object& object) { return object.id == id; });
}

} // namespace

std::vector<AudioObjectID> ObjectSpace::newIDs(std::size_t count) {
    std::vector<AudioObjectID> ids(count);
    std::generate(ids.begin(), ids.end(), [this] { return newID(); });
    return ids;
}

bool ObjectSpace::contains(AudioObjectID object) const {
    return object == kAudioObjectSystemObject || device(object) != nullptr ||
           aggregate(object) != nullptr || program(object) != nullptr || tap(object) != nullptr;
}

Device* ObjectSpace::device(AudioObjectID id) {
    return findID(devices_, id);
}

const Device* ObjectSpace::device(AudioObjectID id) const {
    return findID(devices_, id);
}

const Device* ObjectSpace::device(const std::string& uid) const {
    return find(devices_, [&](const Device& device) { return device.settings.uid == uid; });
}

Aggregate* ObjectSpace::aggregate(AudioObjectID id) {
    return findID(aggregates_, id);
}

const Aggregate* ObjectSpace::aggregate(AudioObjectID id) const {
    return findID(aggregates_, id);
}

Program* ObjectSpace::program(AudioObjectID id) {
    return findID(programs_, id);
}

const Program* ObjectSpace::program(AudioObjectID id) const {
    return findID(programs_, id);
}

const Tap* ObjectSpace::tap(AudioObjectID id) const {
    return findID(taps_, id);
}

const Tap* ObjectSpace::tap(const std::string& uuid) const {
    return find(taps_, [&](const Tap& tap) { return tap.description.UUID() == uuid; });
}

DeviceRecord* ObjectSpace::anyDevice(AudioObjectID id) {
    if (Device* found = device(id); found != nullptr)
        return found;
    return aggregate(id);
}

std::vector<AudioObjectID> ObjectSpace::activeSubDevices(const Aggregate& aggregate) const {
    std::vector<AudioObjectID> active;
    for (const std::string& uid : aggregate.description.subDevices) {
        if (const Device* found = device(uid); found != nullptr)
            active.push_back(found->id);
    }
    return active;
}

const Device* ObjectSpace::mainDevice(const Aggregate& aggregate) const {
    const auto active = activeSubDevices(aggregate);
    if (active.empty())
        return nullptr;
    const Device* master = device(aggregate.description.master);
    const bool masterPlays =
        master != nullptr && std::find(active.begin(), active.end(), master->id) != active.end();
    return device(masterPlays ? master->id : active.front());
}

const Device* ObjectSpace::homeDevice(const Program& program) const {
    if (program.settings.device) {
        if (const Device* chosen = device(*program.settings.device);
            chosen != nullptr && chosen->settings.channels > 0)
            return chosen;
    }
    return device(defaultOutput_);
}

double ObjectSpace::tapSampleRate(const Tap& tap) const {
    if (settings_.tapSampleRate)
        return *settings_.tapSampleRate;
    const Device* home = device(defaultOutput_);
    for (const AudioObjectID process : tap.description.processes()) {
        if (const Program* tapped = program(process); tapped != nullptr) {
            home = homeDevice(*tapped);
            break;
        }
    }
    return home != nullptr ? home->sampleRate : kFallbackSampleRate;
}

AudioObjectID ObjectSpace::firstPlayingDevice() const {
    const Device* found =
        find(devices_, [](const Device& device) { return device.settings.channels > 0; });
    return found != nullptr ? found->id : kAudioObjectUnknown;
}

void ObjectSpace::noteSubDevicesChanged(const std::string& uid, Changes& changes) const {
    for (const auto& aggregate : aggregates_) {
        const auto& subDevices = aggregate->description.subDevices;
        if (std::find(subDevices.begin(), subDevices.end(), uid) != subDevices.end())
            changes.notify(aggregate->id, kAudioAggregateDevicePropertyActiveSubDeviceList);
    }
}

} // namespace orvanta::embedded
