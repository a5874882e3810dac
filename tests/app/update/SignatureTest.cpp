#include "app/update/Signature.h"

#include <gtest/gtest.h>

#include <array>
#include <sodium.h>
#include <string>
#include <vector>

namespace orvanta {
namespace {

std::span<const std::byte> bytesOf(const std::string& text) {
    return std::as_bytes(std::span(text));
}

template <std::size_t size>
std::string base64(const std::array<unsigned char, size>& bytes) {
    std::string text(sodium_base64_ENCODED_LEN(size, sodium_base64_VARIANT_ORIGINAL), '\0');
    sodium_bin2base64(text.data(), text.size(), bytes.data(), size, sodium_base64_VARIANT_ORIGINAL);
    text.pop_back();
    return text;
}

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
    std::array<unsigned char, crypto_sign_PUBLICKEYBYTES> publicKey_{};
    std::array<unsigned char, crypto_sign_SECRETKEYBYTES> secretKey_{};
};

const std::string kContent = "the program, version 2";

TEST(Signature, IsAcceptedFromTheHolderOfTheKey) {
    const Publisher publisher;
    EXPECT_TRUE(
        isSigned(bytesOf(kContent), publisher.signatureOf(kContent), publisher.publicKey()));
    EXPECT_TRUE(isSigned({}, publisher.signatureOf(""), publisher.publicKey()));
}

TEST(Signature, HoldsForTheVeryContentOnly) {
    const Publisher publisher;
    const std::string signature = publisher.signatureOf(kContent);
    for (std::size_t at = 0; at < kContent.size(); ++at) {
        std::string changed = kContent;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        EXPECT_FALSE(isSigned(bytesOf(changed), signature, publisher.publicKey()));
    }
    EXPECT_FALSE(isSigned(bytesOf(kContent + "!"), signature, publisher.publicKey()));
    EXPECT_FALSE(isSigned({}, signature, publisher.publicKey()));
}

TEST(Signature, IsRefusedFromAnybodyElse) {
    const Publisher publisher;
    const Publisher stranger;
    EXPECT_FALSE(
        isSigned(bytesOf(kContent), stranger.signatureOf(kContent), publisher.publicKey()));
}

TEST(Signature, IsRefusedWhenItOrTheKeyIsMalformed) {
    const Publisher publisher;
    const std::string signature = publisher.signatureOf(kContent);
    const std::string key = publisher.publicKey();
    for (const std::string& broken :
         {std::string(), std::string("no base64!"), signature.substr(4), signature + "AAAA"})
        EXPECT_FALSE(isSigned(bytesOf(kContent), broken, key)) << broken;
    for (const std::string& broken :
         {std::string(), std::string("no base64!"), key.substr(4), key + "AAAA"})
        EXPECT_FALSE(isSigned(bytesOf(kContent), signature, broken)) << broken;
}

TEST(Signature, IsThatOfThePublishedExamples) {
    // RFC 8032, section 7.1, the second test: the one byte 0x72.
    EXPECT_TRUE(isSigned(bytesOf("r"),
                         "kqAJqfDUyrhyDoILX2QlQKKye1QWUD+Ps3YiI+vbadoI"
                         "WsHkPhWZbkWPNhPQ8R2MOHsurrQwKu6wDSkWErsMAA==",
                         "PUAXw+hDiVqStwqnTRt+vJyYLM8uxJaMwM1V8Sr0Zgw="));
}

} // namespace
} // namespace orvanta
