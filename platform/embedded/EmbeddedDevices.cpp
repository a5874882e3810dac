#include "platform/embedded/ServeCall.h"

namespace orvanta {

using embedded::Changes;
using embedded::Device;
using embedded::DeviceSettings;
using embedded::Tape;
using embedded::WavRecorder;

AudioObjectID EmbeddedAudioServer::addDevice(const DeviceSettings& settings) {
    return script([&](Changes& changes) { return objects_.addDevice(settings, nowNs(), changes); });
}

bool EmbeddedAudioServer::removeDevice(AudioObjectID device) {
    return script([&](Changes& changes) { return objects_.removeDevice(device, changes); });
}

bool EmbeddedAudioServer::renameDevice(AudioObjectID device, const std::string& name) {
    return script([&](Changes& changes) { return objects_.renameDevice(device, name, changes); });
}

bool EmbeddedAudioServer::setDefaultOutput(AudioObjectID device) {
    return script([&](Changes& changes) { return objects_.setDefaultOutput(device, changes); });
}

AudioObjectID EmbeddedAudioServer::defaultOutput() const {
    const std::scoped_lock guard(mutex_);
    return objects_.defaultOutput();
}

bool EmbeddedAudioServer::setVolume(AudioObjectID device, AudioObjectPropertyElement element,
                                    float scalar) {
    return script([&](Changes& changes) {
        return objects_.setVolume(device, element, scalar, changes) == noErr;
    });
}

bool EmbeddedAudioServer::setSampleRate(AudioObjectID device, double sampleRate) {
    return script([&](Changes& changes) {
        return objects_.setSampleRate(device, sampleRate, changes) == noErr;
    });
}

AudioObjectID EmbeddedAudioServer::findDevice(const std::string& uid) const {
    const std::scoped_lock guard(mutex_);
    const Device* device = objects_.device(uid);
    return device != nullptr ? device->id : kAudioObjectUnknown;
}

std::vector<float> EmbeddedAudioServer::played(AudioObjectID device) const {
    std::shared_ptr<const Tape> tape;
    {
        const std::scoped_lock guard(mutex_);
        tape = objects_.tape(device);
    }
    return tape ? tape->contents() : std::vector<float>();
}

std::vector<float> EmbeddedAudioServer::played(AudioObjectID device, std::uint32_t channel) const {
    std::shared_ptr<const Tape> tape;
    {
        const std::scoped_lock guard(mutex_);
        tape = objects_.tape(device);
    }
    if (!tape || channel >= tape->channels())
        return {};
    const std::vector<float> all = tape->contents();
    std::vector<float> one;
    for (std::size_t index = channel; index < all.size(); index += tape->channels())
        one.push_back(all[index]);
    return one;
}

void EmbeddedAudioServer::clearPlayed(AudioObjectID device) {
    script([&](Changes& changes) { return objects_.clearTape(device, changes); });
}

bool EmbeddedAudioServer::startRecording(AudioObjectID device, const std::string& path) {
    std::uint32_t channels = 0;
    double sampleRate = 0;
    {
        const std::scoped_lock guard(mutex_);
        const Device* found = objects_.device(device);
        if (found == nullptr)
            return false;
        channels = found->settings.channels;
        sampleRate = found->sampleRate;
    }
    auto recorder = WavRecorder::open(path, channels, sampleRate);
    if (!recorder)
        return false;
    return script(
        [&](Changes& changes) { return objects_.setRecorder(device, recorder, changes); });
}

void EmbeddedAudioServer::stopRecording(AudioObjectID device) {
    script([&](Changes& changes) { return objects_.setRecorder(device, nullptr, changes); });
}

std::uint64_t EmbeddedAudioServer::cycles(AudioObjectID device) const {
    const std::scoped_lock guard(mutex_);
    const Device* found = objects_.device(device);
    return found != nullptr ? found->io->cycles.load() : 0;
}

} // namespace orvanta
