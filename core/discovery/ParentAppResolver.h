#pragma once

#include "core/discovery/NameOrder.h"
#include "core/platform/ProcessTable.h"
#include "core/platform/Workspace.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orvanta {

/// The application to which a process is counted.
struct ResolvedIdentity {
    std::string name;
    std::optional<std::string> bundleIdentifier;
    IconRef icon;
};

/// Finds the application behind a helper process. One thread at a time.
class ParentAppResolver {
public:
    /// All three must outlive it.
    ParentAppResolver(const ProcessTable& processTable, const Workspace& workspace,
                      const NameOrder& nameOrder);

    /// Goes up the process tree first, then by the helper's own name through `apps`. Nothing when
    /// no application can be told.
    std::optional<ResolvedIdentity> resolveParentApp(std::int32_t pid, const std::string& name,
                                                     const std::vector<RunningApplication>& apps);

private:
    [[nodiscard]] std::optional<RunningApplication> findInProcessTree(std::int32_t pid) const;
    [[nodiscard]] const RunningApplication*
    findByName(const std::string& name, const std::vector<RunningApplication>& apps) const;
    ResolvedIdentity resolvedIdentity(const RunningApplication& app);
    IconRef iconOfBundle(const std::string& bundleIdentifier);

    const ProcessTable& processTable_;
    const Workspace& workspace_;
    const NameOrder& nameOrder_;
    /// By bundle identifier: a browser can own dozens of helpers. Never cleared.
    std::map<std::string, IconRef> iconCache_;
};

} // namespace orvanta
