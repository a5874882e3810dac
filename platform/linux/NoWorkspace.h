#pragma once

#include "core/platform/Workspace.h"

namespace orvanta {

/// A desktop that knows no application: for programs that run without one.
class NoWorkspace final : public Workspace {
public:
    [[nodiscard]] std::optional<RunningApplication>
    runningApplication(std::int32_t pid) const override;
    [[nodiscard]] IconRef
    iconForBundleIdentifier(const std::string& bundleIdentifier) const override;
};

} // namespace orvanta
