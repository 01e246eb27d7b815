#include "update/catalogueSignature.h"

#include "common/StepError.h"

#include <gtest/gtest.h>

#include <string>

namespace velmorant {
namespace {

TEST(catalogueSignature, fits_its_catalogue_and_its_key_alone) {
    const SigningKey key = makeSigningKey();
    const std::string signature = signCatalogue(key.privatePem, "catalogue");
    EXPECT_EQ(checkSignature(key.publicKey, "catalogue", signature), SignatureVerdict::Valid);
    EXPECT_EQ(checkSignature(key.publicKey, "Catalogue", signature), SignatureVerdict::Invalid);
    EXPECT_EQ(checkSignature(makeSigningKey().publicKey, "catalogue", signature),
              SignatureVerdict::Invalid);
    EXPECT_EQ(publicKeyOf(key.privatePem), key.publicKey);
}

TEST(catalogueSignature, agrees_with_the_published_test_vector) {
    // RFC 8032, 7.1, test 2: one byte 0x72.
    const std::string publicKey = "PUAXw+hDiVqStwqnTRt+vJyYLM8uxJaMwM1V8Sr0Zgw=";
    const std::string signature = "kqAJqfDUyrhyDoILX2QlQKKye1QWUD+Ps3YiI+vbadoI"
                                  "WsHkPhWZbkWPNhPQ8R2MOHsurrQwKu6wDSkWErsMAA==";
    EXPECT_EQ(checkSignature(publicKey, "\x72", signature), SignatureVerdict::Valid);
    EXPECT_EQ(checkSignature(publicKey, "\x73", signature), SignatureVerdict::Invalid);
}

TEST(catalogueSignature, may_be_any_line_of_its_file) {
    const SigningKey key = makeSigningKey();
    const std::string lines = signCatalogue(key.privatePem, "last") + "\r\nnonsense\n\n" +
                              signCatalogue(key.privatePem, "next") + "\n";
    EXPECT_EQ(checkSignature(key.publicKey, "last", lines), SignatureVerdict::Valid);
    EXPECT_EQ(checkSignature(key.publicKey, "next", lines), SignatureVerdict::Valid);
    EXPECT_EQ(checkSignature(key.publicKey, "other", lines), SignatureVerdict::Invalid);
}

TEST(catalogueSignature, is_none_in_an_empty_or_broken_file) {
    const SigningKey key = makeSigningKey();
    const std::string signature = signCatalogue(key.privatePem, "x");
    for (const std::string& file : {std::string(), std::string("\n"), signature.substr(1),
                                    signature + "A", std::string(88, '='), std::string(88, '\0')})
        EXPECT_EQ(checkSignature(key.publicKey, "x", file), SignatureVerdict::Invalid);
}

TEST(catalogueSignature, names_what_is_no_key) {
    EXPECT_THROW(checkSignature("", "x", "y"), StepError);
    EXPECT_THROW(checkSignature("short", "x", "y"), StepError);
    EXPECT_THROW(signCatalogue("no key", "x"), StepError);
    EXPECT_THROW(publicKeyOf(""), StepError);
}

} // namespace
} // namespace velmorant
