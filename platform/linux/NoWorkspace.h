#pragma once

#include "core/platform/Workspace.h"

namespace orvanta {

/// A desktop that knows no application: for programs that run without one.
class NoWorkspace final : public Workspace {
public:
    [[nodiscard]] std::vector<RunningApplication> runningApplications() const override;
    [[nodiscard]] std::optional<RunningApplication>
    runningApplication(std::int32_t pid) const override;
    [[nodiscard]] std::optional<std::filesystem::path>
    urlForApplication(const std::string& bundleIdentifier) const override;
    [[nodiscard]] IconRef iconForFile(const std::filesystem::path& file) const override;
};

} // namespace orvanta
