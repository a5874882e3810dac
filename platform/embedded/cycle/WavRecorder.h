#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace orvanta::embedded {

/// Writes what a device plays to a WAV file of 32-bit float samples. Writes from within the cycle,
/// through the cache of the operating system: meant for tests and for listening, not for machines
/// that must not miss a cycle.
class WavRecorder {
public:
    /// Null when the file cannot be made. An existing one is overwritten.
    static std::shared_ptr<WavRecorder> open(const std::string& path, std::uint32_t channels,
                                             double sampleRate);

    WavRecorder(const WavRecorder&) = delete;
    WavRecorder& operator=(const WavRecorder&) = delete;
    ~WavRecorder();

    /// Finishes the file, as the end of the recorder would. Not while another thread writes.
    void close();

    /// Whole frames. What a full disk does not take is lost, and what comes after `close`.
    void write(std::span<const float> interleaved);

private:
    struct File;

    explicit WavRecorder(std::unique_ptr<File> file);

    std::unique_ptr<File> file_;
};

} // namespace orvanta::embedded
