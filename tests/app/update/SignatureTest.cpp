#include "app/update/Signature.h"

#include "tests/app/update/support/Publisher.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <span>
#include <string>

namespace orvanta::test {
namespace {

std::span<const std::byte> bytesOf(const std::string& text) {
    return std::as_bytes(std::span(text));
}

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

TEST(Signature, NeedsAKeyThatIsOne) {
    const std::string key = Publisher().publicKey();
    EXPECT_TRUE(isPublicKey(key));
    for (const std::string& broken :
         {std::string(), std::string("no base64!"), key.substr(4), key + "AAAA"})
        EXPECT_FALSE(isPublicKey(broken)) << broken;
}

TEST(Signature, IsThatOfThePublishedExamples) {
    // RFC 8032, section 7.1, the second test: the one byte 0x72.
    EXPECT_TRUE(isSigned(bytesOf("r"),
                         "kqAJqfDUyrhyDoILX2QlQKKye1QWUD+Ps3YiI+vbadoI"
                         "WsHkPhWZbkWPNhPQ8R2MOHsurrQwKu6wDSkWErsMAA==",
                         "PUAXw+hDiVqStwqnTRt+vJyYLM8uxJaMwM1V8Sr0Zgw="));
}

} // namespace
} // namespace orvanta::test
