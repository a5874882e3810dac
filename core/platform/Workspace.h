#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvanta {

/// A picture that the core passes on without looking at it; views draw its file.
class Icon {
public:
    Icon() = default;
    Icon(const Icon&) = delete;
    Icon& operator=(const Icon&) = delete;
    virtual ~Icon() = default;

    /// Equal keys mean the same picture.
    [[nodiscard]] virtual std::string cacheKey() const = 0;

    /// The file that looks best in a square of so many pixels; nothing where there is none.
    [[nodiscard]] virtual std::optional<std::filesystem::path> imageFile(int /*pixels*/) const {
        return std::nullopt;
    }
};

using IconRef = std::shared_ptr<const Icon>;

/// How an application shows itself: only `regular` ones are the user's to mix.
enum class ActivationPolicy : std::int32_t { regular = 0, accessory = 1, prohibited = 2 };

struct RunningApplication {
    std::int32_t processIdentifier = 0;
    std::optional<std::string> localizedName = std::nullopt;
    std::optional<std::string> bundleIdentifier = std::nullopt;
    ActivationPolicy activationPolicy = ActivationPolicy::regular;
    IconRef icon = nullptr;
};

/// The desktop: which applications run and what they look like.
class Workspace {
public:
    Workspace() = default;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    virtual ~Workspace() = default;

    /// All running applications, a process each, in the desktop's own order.
    [[nodiscard]] virtual std::vector<RunningApplication> runningApplications() const = 0;

    /// Nothing for a process that is no application.
    [[nodiscard]] virtual std::optional<RunningApplication>
    runningApplication(std::int32_t pid) const = 0;

    /// URLForApplicationWithBundleIdentifier: the file or folder that stands for the application
    /// where it is installed; nothing where it is not.
    [[nodiscard]] virtual std::optional<std::filesystem::path>
    urlForApplication(const std::string& bundleIdentifier) const = 0;

    /// Icon of what `urlForApplication` has answered; null when it has none.
    [[nodiscard]] virtual IconRef iconForFile(const std::filesystem::path& file) const = 0;
};

} // namespace orvanta
