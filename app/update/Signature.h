#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace orvanta {

/// Whether the holder of the key has signed the content (Ed25519, RFC 8032). Key and signature are
/// in Base64, as feeds write them; one that is malformed has signed nothing.
[[nodiscard]] bool isSigned(std::span<const std::byte> content, std::string_view signature,
                            std::string_view publicKey);

/// Whether it is a key at all that somebody could hold.
[[nodiscard]] bool isPublicKey(std::string_view publicKey);

} // namespace orvanta
