#pragma once

#include <string>
#include <string_view>

namespace orvanta::pipewire {

/// The "name" out of the session manager's value for a default device, `{ "name": "…" }`. Empty
/// for anything that is not such an object.
std::string defaultSinkName(std::string_view json);

} // namespace orvanta::pipewire
