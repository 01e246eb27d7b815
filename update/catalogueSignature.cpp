#include "update/catalogueSignature.h"

#include "common/StepError.h"
#include "common/textRules.h"

#include <array>
#include <cstddef>
#include <memory>
#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <optional>
#include <vector>

namespace velmorant {

namespace {

constexpr std::size_t keySize = 32;
constexpr std::size_t signatureSize = 64;

template <auto free>
struct Free {
    template <typename Object>
    void operator()(Object* object) const {
        free(object);
    }
};
using Key = std::unique_ptr<EVP_PKEY, Free<EVP_PKEY_free>>;
using Context = std::unique_ptr<EVP_MD_CTX, Free<EVP_MD_CTX_free>>;
using Memory = std::unique_ptr<BIO, Free<BIO_free>>;

const unsigned char* bytesOf(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

std::string toBase64(const unsigned char* bytes, std::size_t size) {
    std::vector<unsigned char> text((size + 2) / 3 * 4 + 1);
    const int length = EVP_EncodeBlock(text.data(), bytes, static_cast<int>(size));
    return {text.begin(), text.begin() + length};
}

/// Bytes of exactly that size.
std::optional<std::vector<unsigned char>> fromBase64(std::string_view text, std::size_t size) {
    if (text.size() != (size + 2) / 3 * 4)
        return std::nullopt;
    std::vector<unsigned char> bytes(text.size());
    if (EVP_DecodeBlock(bytes.data(), bytesOf(text), static_cast<int>(text.size())) < 0)
        return std::nullopt;
    bytes.resize(size);
    return bytes;
}

std::string_view withoutLineEnd(std::string_view line) {
    while (line.ends_with('\r') || line.ends_with(' '))
        line.remove_suffix(1);
    return line;
}

Key readPrivateKey(std::string_view pem) {
    const Memory memory(BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())));
    // An encrypted key would ask at the terminal; the empty answer makes it fail instead.
    char noPassword[] = "";
    Key key(memory ? PEM_read_bio_PrivateKey(memory.get(), nullptr, nullptr, noPassword) : nullptr);
    if (!key || EVP_PKEY_id(key.get()) != EVP_PKEY_ED25519)
        throw StepError("This is no Ed25519 private key in PEM form");
    return key;
}

std::string publicHalf(const Key& key) {
    std::array<unsigned char, keySize> bytes{};
    std::size_t size = bytes.size();
    if (EVP_PKEY_get_raw_public_key(key.get(), bytes.data(), &size) != 1)
        throw StepError("The key has no public half");
    return toBase64(bytes.data(), size);
}

} // namespace

SignatureVerdict checkSignature(std::string_view publicKey, std::string_view catalogue,
                                std::string_view signatureFile) {
    const auto raw = fromBase64(publicKey, keySize);
    const Key key(
        raw ? EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr, raw->data(), raw->size())
            : nullptr);
    if (!key)
        throw StepError("The update's public key is no Ed25519 key");
    for (const std::string& line : split(signatureFile, '\n')) {
        const auto signature = fromBase64(withoutLineEnd(line), signatureSize);
        const Context context(EVP_MD_CTX_new());
        if (signature && context &&
            EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, key.get()) == 1 &&
            EVP_DigestVerify(context.get(), signature->data(), signature->size(),
                             bytesOf(catalogue), catalogue.size()) == 1)
            return SignatureVerdict::Valid;
    }
    return SignatureVerdict::Invalid;
}

SigningKey makeSigningKey() {
    const Key key(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"));
    const Memory memory(BIO_new(BIO_s_mem()));
    if (!key || !memory ||
        PEM_write_bio_PKCS8PrivateKey(memory.get(), key.get(), nullptr, nullptr, 0, nullptr,
                                      nullptr) != 1)
        throw StepError("No key could be made");
    char* text = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &text);
    return {std::string(text, static_cast<std::size_t>(size)), publicHalf(key)};
}

std::string publicKeyOf(std::string_view privatePem) {
    return publicHalf(readPrivateKey(privatePem));
}

std::string signCatalogue(std::string_view privatePem, std::string_view catalogue) {
    const Key key = readPrivateKey(privatePem);
    const Context context(EVP_MD_CTX_new());
    std::array<unsigned char, signatureSize> signature{};
    std::size_t size = signature.size();
    if (!context || EVP_DigestSignInit(context.get(), nullptr, nullptr, nullptr, key.get()) != 1 ||
        EVP_DigestSign(context.get(), signature.data(), &size, bytesOf(catalogue),
                       catalogue.size()) != 1)
        throw StepError("The catalogue could not be signed");
    return toBase64(signature.data(), size);
}

} // namespace velmorant
