#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvanta::desktop {

/// The keys under which a text for one of these locales may stand, best first: "de_AT.UTF-8@euro"
/// looks for "de_AT@euro", "de_AT", "de@euro", "de". "C" and "POSIX" look for none.
[[nodiscard]] std::vector<std::string> localeKeys(const std::vector<std::string>& locales);

} // namespace orvanta::desktop
