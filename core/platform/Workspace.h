#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace orvanta {

/// A picture the core passes on without looking at it.
class Icon {
public:
    Icon() = default;
    Icon(const Icon&) = delete;
    Icon& operator=(const Icon&) = delete;
    virtual ~Icon() = default;

    /// Equal keys mean the same picture.
    [[nodiscard]] virtual std::string cacheKey() const = 0;
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

    /// Nothing for a process that is no application.
    [[nodiscard]] virtual std::optional<RunningApplication>
    runningApplication(std::int32_t pid) const = 0;

    /// Icon of an installed application; null when it is not installed or has none.
    [[nodiscard]] virtual IconRef
    iconForBundleIdentifier(const std::string& bundleIdentifier) const = 0;
};

} // namespace orvanta
