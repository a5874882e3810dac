#pragma once

#include <string>
#include <string_view>

namespace orvanta::crash {

/// The URL by which a mail program begins a mail. In subject and body every byte but letters,
/// digits and "-._~" is percent-encoded.
[[nodiscard]] std::string mailURL(std::string_view address, std::string_view subject,
                                  std::string_view body);

} // namespace orvanta::crash
