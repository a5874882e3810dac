#include "app/update/Signature.h"

#include <array>
#include <optional>
#include <sodium.h>

namespace orvanta {
namespace {

/// Exactly so many bytes.
template <std::size_t size>
std::optional<std::array<unsigned char, size>> decoded(std::string_view base64) {
    std::array<unsigned char, size> bytes{};
    std::size_t length = 0;
    const int status =
        sodium_base642bin(bytes.data(), bytes.size(), base64.data(), base64.size(), " \r\n\t",
                          &length, nullptr, sodium_base64_VARIANT_ORIGINAL);
    return status == 0 && length == size ? std::optional(bytes) : std::nullopt;
}

} // namespace

bool isSigned(std::span<const std::byte> content, std::string_view signature,
              std::string_view publicKey) {
    const auto signatureBytes = decoded<crypto_sign_BYTES>(signature);
    const auto keyBytes = decoded<crypto_sign_PUBLICKEYBYTES>(publicKey);
    if (!signatureBytes || !keyBytes || sodium_init() < 0)
        return false;
    // The library's bytes are another type of the same thing.
    const auto* const bytes =
        static_cast<const unsigned char*>(static_cast<const void*>(content.data()));
    return crypto_sign_verify_detached(signatureBytes->data(), bytes, content.size(),
                                       keyBytes->data()) == 0;
}

bool isPublicKey(std::string_view publicKey) {
    return decoded<crypto_sign_PUBLICKEYBYTES>(publicKey).has_value();
}

} // namespace orvanta
