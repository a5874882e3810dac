#pragma once

#include <string>
#include <string_view>

namespace orvanta::desktop {

/// The application's id in a sandbox's file ".flatpak-info"; empty where it tells none.
[[nodiscard]] std::string flatpakIDInInfo(std::string_view text);

} // namespace orvanta::desktop
