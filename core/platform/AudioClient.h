#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvanta {

/// What a process that makes sound tells the audio server of itself. Any text may be empty.
struct AudioClient {
    std::int32_t pid = 0;
    std::string name;          ///< for people to read
    std::string applicationID; ///< reverse-domain, or the name of a desktop entry
    std::string iconName;      ///< in the icon theme
    std::string binary;        ///< name of the executable file
};

/// The audio server's knowledge of the programs behind its process objects: what lets a desktop
/// recognise a program that it has not started itself. Safe from all threads.
class AudioClients {
public:
    AudioClients() = default;
    AudioClients(const AudioClients&) = delete;
    AudioClients& operator=(const AudioClients&) = delete;
    virtual ~AudioClients() = default;

    /// One record for each process that has played, in the order of the process objects.
    [[nodiscard]] virtual std::vector<AudioClient> audioClients() const = 0;

    /// Nothing for a process that has not.
    [[nodiscard]] virtual std::optional<AudioClient> audioClient(std::int32_t pid) const = 0;
};

} // namespace orvanta
