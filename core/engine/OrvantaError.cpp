#include "core/engine/OrvantaError.h"

#include <fmt/format.h>

#include <utility>

namespace orvanta {

OrvantaError::OrvantaError(Case which, std::string description)
    : case_(std::move(which)), description_(std::move(description)) {}

OrvantaError OrvantaError::tapNotFound(std::int32_t pid) {
    return {TapNotFound{pid}, fmt::format("No active tap for PID {}", pid)};
}

OrvantaError OrvantaError::tapCreationFailed(std::int32_t pid, OSStatus status) {
    return {TapCreationFailed{pid, status},
            fmt::format("Failed to set up audio capture for PID {} (OSStatus {})", pid, status)};
}

OrvantaError OrvantaError::deviceCreationFailed(OSStatus status) {
    return {DeviceCreationFailed{status},
            fmt::format("Failed to create audio device (OSStatus {})", status)};
}

OrvantaError OrvantaError::pipelineFailed(OSStatus status) {
    return {PipelineFailed{status},
            fmt::format("Audio pipeline setup failed (OSStatus {})", status)};
}

OrvantaError OrvantaError::deviceNotFound(std::string uid) {
    std::string text = "Output device not found: " + uid;
    return {DeviceNotFound{std::move(uid)}, std::move(text)};
}

OrvantaError OrvantaError::recordingFileCreationFailed(std::string path) {
    std::string text = "Could not create recording file at " + path;
    return {RecordingFileCreationFailed{std::move(path)}, std::move(text)};
}

OrvantaError OrvantaError::audioSystemError(std::string operation, OSStatus status) {
    std::string text = fmt::format("{} failed (OSStatus {})", operation, status);
    return {AudioSystemError{std::move(operation), status}, std::move(text)};
}

OrvantaError OrvantaError::noDefaultDevice() {
    return {NoDefaultDevice{}, "Could not determine default output device"};
}

} // namespace orvanta
