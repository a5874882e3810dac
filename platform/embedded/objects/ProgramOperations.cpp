#include "platform/embedded/objects/ObjectSpace.h"

namespace orvanta::embedded {

AudioObjectID ObjectSpace::addProgram(const ProgramSettings& settings, Changes& changes) {
    auto program = std::make_unique<Program>();
    program->id = newID();
    program->settings = settings;
    program->playing = settings.playing;
    program->voice = std::make_shared<Voice>(settings.source);
    const AudioObjectID id = program->id;
    programs_.push_back(std::move(program));
    changes.replan = true;
    changes.notify(kAudioObjectSystemObject, kAudioHardwarePropertyProcessObjectList);
    return id;
}

bool ObjectSpace::removeProgram(AudioObjectID id, Changes& changes) {
    const auto removed =
        std::erase_if(programs_, [=](const auto& program) { return program->id == id; });
    if (removed == 0)
        return false;
    changes.replan = true;
    changes.gone.push_back(id);
    changes.notify(kAudioObjectSystemObject, kAudioHardwarePropertyProcessObjectList);
    return true;
}

bool ObjectSpace::setPlaying(AudioObjectID id, bool playing, Changes& changes) {
    Program* found = program(id);
    if (found == nullptr)
        return false;
    if (found->playing == playing)
        return true;
    found->playing = playing;
    changes.replan = true;
    changes.notify(id, kAudioProcessPropertyIsRunningOutput);
    if (!found->settings.recording)
        changes.notify(id, kAudioProcessPropertyIsRunning);
    return true;
}

bool ObjectSpace::startProgram(AudioObjectID id, Changes& changes) {
    const Program* found = program(id);
    return found != nullptr && setSource(id, found->settings.source, changes) &&
           setPlaying(id, true, changes);
}

bool ObjectSpace::setSource(AudioObjectID id, const Sound& source, Changes& changes) {
    Program* found = program(id);
    if (found == nullptr)
        return false;
    found->settings.source = source;
    found->voice = std::make_shared<Voice>(source);
    changes.replan = true;
    return true;
}

bool ObjectSpace::setRecording(AudioObjectID id, bool recording, Changes& changes) {
    Program* found = program(id);
    if (found == nullptr)
        return false;
    if (found->settings.recording == recording)
        return true;
    found->settings.recording = recording;
    if (!found->playing)
        changes.notify(id, kAudioProcessPropertyIsRunning);
    return true;
}

bool ObjectSpace::moveProgram(AudioObjectID id, std::optional<std::string> deviceUID,
                              Changes& changes) {
    Program* found = program(id);
    if (found == nullptr)
        return false;
    found->settings.device = std::move(deviceUID);
    changes.replan = true;
    return true;
}

} // namespace orvanta::embedded
