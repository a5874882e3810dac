#pragma once

#include "core/platform/Workspace.h"
#include "platform/linux/desktop/DesktopEntry.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orvanta::desktop {

/// Which application a process belongs to.
struct Membership {
    std::int32_t pid = 0;
    DesktopEntryRef entry; ///< null for an application known from its sound alone
    std::string name;
    std::string icon; ///< as IconThemes::file takes it; may be empty
    ActivationPolicy policy = ActivationPolicy::regular;
    /// The same for all processes of one application, and for no other.
    std::string identity;
    /// What the application is called besides, for when the name does not tell it from another.
    std::string shortLabel;
    std::string longLabel;
};

/// Applications of one name that the user may mix get their labels behind it, "Playback (radio)":
/// the short ones, or the long one where two share the short. Depends on who is there, not on who
/// came first.
void makeNamesDistinct(std::vector<Membership>& memberships);

} // namespace orvanta::desktop
