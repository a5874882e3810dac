#include "platform/embedded/ServeCall.h"

namespace orvanta {

using embedded::Changes;
using embedded::ProgramSettings;
using embedded::ProgramState;
using embedded::Sound;

AudioObjectID EmbeddedAudioServer::addProgram(const ProgramSettings& settings) {
    return script([&](Changes& changes) { return objects_.addProgram(settings, changes); });
}

bool EmbeddedAudioServer::startProgram(AudioObjectID program) {
    return script([&](Changes& changes) { return objects_.startProgram(program, changes); });
}

bool EmbeddedAudioServer::pauseProgram(AudioObjectID program) {
    return script([&](Changes& changes) { return objects_.setPlaying(program, false, changes); });
}

bool EmbeddedAudioServer::resumeProgram(AudioObjectID program) {
    return script([&](Changes& changes) { return objects_.setPlaying(program, true, changes); });
}

bool EmbeddedAudioServer::exitProgram(AudioObjectID program) {
    return script([&](Changes& changes) { return objects_.removeProgram(program, changes); });
}

bool EmbeddedAudioServer::setSource(AudioObjectID program, const Sound& source) {
    return script([&](Changes& changes) { return objects_.setSource(program, source, changes); });
}

bool EmbeddedAudioServer::setRecording(AudioObjectID program, bool recording) {
    return script(
        [&](Changes& changes) { return objects_.setRecording(program, recording, changes); });
}

bool EmbeddedAudioServer::moveProgram(AudioObjectID program, std::optional<std::string> deviceUID) {
    return script([&](Changes& changes) {
        return objects_.moveProgram(program, std::move(deviceUID), changes);
    });
}

std::vector<ProgramState> EmbeddedAudioServer::programs() const {
    const std::scoped_lock guard(mutex_);
    std::vector<ProgramState> states;
    for (const auto& program : objects_.programs())
        states.push_back({program->id, program->settings, program->playing});
    return states;
}

} // namespace orvanta
