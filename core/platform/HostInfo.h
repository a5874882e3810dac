#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace orvanta {

/// What a program knows of itself and of the machine it runs on.
struct HostInfo {
    /// NSHomeDirectory.
    std::filesystem::path homeDirectory;
    /// CFBundleShortVersionString: the version that people are told.
    std::optional<std::string> shortVersion = std::nullopt;
    /// CFBundleVersion: the build.
    std::optional<std::string> bundleVersion = std::nullopt;
    /// Name and version of the operating system as its maker writes them.
    std::string operatingSystemVersion{};
};

} // namespace orvanta
