#include "platform/linux/applications/Membership.h"

#include <map>
#include <set>
#include <utility>

namespace orvanta::desktop {

void makeNamesDistinct(std::vector<Membership>& memberships) {
    using Identities = std::set<std::string>;
    std::map<std::string, Identities> ofName;
    std::map<std::pair<std::string, std::string>, Identities> ofNameAndLabel;
    for (const Membership& member : memberships) {
        if (member.policy != ActivationPolicy::regular)
            continue;
        ofName[member.name].insert(member.identity);
        ofNameAndLabel[{member.name, member.shortLabel}].insert(member.identity);
    }
    for (Membership& member : memberships) {
        if (member.policy != ActivationPolicy::regular || ofName[member.name].size() < 2)
            continue;
        const bool isShortEnough = ofNameAndLabel[{member.name, member.shortLabel}].size() < 2;
        member.name += " (" + (isShortEnough ? member.shortLabel : member.longLabel) + ")";
    }
}

} // namespace orvanta::desktop
