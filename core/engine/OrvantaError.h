#pragma once

#include "core/platform/OSStatus.h"

#include <cstdint>
#include <exception>
#include <string>
#include <variant>

namespace orvanta {

/// What can go wrong with taps, in words for people. The engine itself answers failures with false
/// or nothing and throws none of these: they are for whoever turns such a result into a message.
class OrvantaError : public std::exception {
public:
    struct TapNotFound {
        std::int32_t pid = 0;
        friend bool operator==(const TapNotFound&, const TapNotFound&) = default;
    };

    struct TapCreationFailed {
        std::int32_t pid = 0;
        OSStatus status = noErr;
        friend bool operator==(const TapCreationFailed&, const TapCreationFailed&) = default;
    };

    struct DeviceCreationFailed {
        OSStatus status = noErr;
        friend bool operator==(const DeviceCreationFailed&, const DeviceCreationFailed&) = default;
    };

    struct PipelineFailed {
        OSStatus status = noErr;
        friend bool operator==(const PipelineFailed&, const PipelineFailed&) = default;
    };

    struct DeviceNotFound {
        std::string uid;
        friend bool operator==(const DeviceNotFound&, const DeviceNotFound&) = default;
    };

    struct RecordingFileCreationFailed {
        std::string path;
        friend bool operator==(const RecordingFileCreationFailed&,
                               const RecordingFileCreationFailed&) = default;
    };

    struct AudioSystemError {
        std::string operation;
        OSStatus status = noErr;
        friend bool operator==(const AudioSystemError&, const AudioSystemError&) = default;
    };

    struct NoDefaultDevice {
        friend bool operator==(const NoDefaultDevice&, const NoDefaultDevice&) = default;
    };

    using Case = std::variant<TapNotFound, TapCreationFailed, DeviceCreationFailed, PipelineFailed,
                              DeviceNotFound, RecordingFileCreationFailed, AudioSystemError,
                              NoDefaultDevice>;

    static OrvantaError tapNotFound(std::int32_t pid);
    static OrvantaError tapCreationFailed(std::int32_t pid, OSStatus status);
    static OrvantaError deviceCreationFailed(OSStatus status);
    static OrvantaError pipelineFailed(OSStatus status);
    static OrvantaError deviceNotFound(std::string uid);
    static OrvantaError recordingFileCreationFailed(std::string path);
    static OrvantaError audioSystemError(std::string operation, OSStatus status);
    static OrvantaError noDefaultDevice();

    [[nodiscard]] const std::string& errorDescription() const noexcept { return description_; }

    [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

    /// Which case it is, and with what.
    [[nodiscard]] const Case& payload() const noexcept { return case_; }

    friend bool operator==(const OrvantaError& a, const OrvantaError& b) {
        return a.case_ == b.case_;
    }

private:
    OrvantaError(Case which, std::string description);

    Case case_;
    std::string description_;
};

} // namespace orvanta
