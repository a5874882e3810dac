#pragma once

#include <gtest/gtest.h>

#include <array>
#include <sodium.h>
#include <string>
#include <vector>

namespace orvanta::test {

/// Somebody who signs.
class Publisher {
public:
    Publisher() {
        EXPECT_GE(sodium_init(), 0);
        crypto_sign_keypair(publicKey_.data(), secretKey_.data());
    }

    [[nodiscard]] std::string publicKey() const { return base64(publicKey_); }

    [[nodiscard]] std::string signatureOf(const std::string& content) const {
        std::array<unsigned char, crypto_sign_BYTES> signature{};
        const std::vector<unsigned char> bytes(content.begin(), content.end());
        crypto_sign_detached(signature.data(), nullptr, bytes.data(), bytes.size(),
                             secretKey_.data());
        return base64(signature);
    }

private:
    template <std::size_t size>
    static std::string base64(const std::array<unsigned char, size>& bytes) {
        std::string text(sodium_base64_ENCODED_LEN(size, sodium_base64_VARIANT_ORIGINAL), '\0');
        sodium_bin2base64(text.data(), text.size(), bytes.data(), size,
                          sodium_base64_VARIANT_ORIGINAL);
        text.pop_back();
        return text;
    }

    std::array<unsigned char, crypto_sign_PUBLICKEYBYTES> publicKey_{};
    std::array<unsigned char, crypto_sign_SECRETKEYBYTES> secretKey_{};
};

} // namespace orvanta::test
