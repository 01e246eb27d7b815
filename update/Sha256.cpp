#include "update/Sha256.h"

#include "common/StepError.h"

#include <array>
#include <openssl/evp.h>

namespace velmorant {

struct Sha256::State {
    State() : context(EVP_MD_CTX_new()) {
        if (context == nullptr || EVP_DigestInit_ex(context, EVP_sha256(), nullptr) != 1) {
            EVP_MD_CTX_free(context);
            throw StepError("SHA-256 is not available");
        }
    }
    ~State() { EVP_MD_CTX_free(context); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    EVP_MD_CTX* context;
};

Sha256::Sha256() : m_state(std::make_unique<State>()) {}
Sha256::~Sha256() = default;
Sha256::Sha256(Sha256&&) noexcept = default;
Sha256& Sha256::operator=(Sha256&&) noexcept = default;

void Sha256::add(std::span<const std::byte> bytes) {
    if (EVP_DigestUpdate(m_state->context, bytes.data(), bytes.size()) != 1)
        throw StepError("SHA-256 could not be computed");
}

std::string Sha256::hexDigits() {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int size = 0;
    if (EVP_DigestFinal_ex(m_state->context, digest.data(), &size) != 1)
        throw StepError("SHA-256 could not be computed");
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (unsigned int i = 0; i < size; ++i) {
        text += digits[digest[i] >> 4U];
        text += digits[digest[i] & 0xfU];
    }
    return text;
}

std::string Sha256::of(std::string_view bytes) {
    Sha256 digest;
    digest.add(std::as_bytes(std::span(bytes.data(), bytes.size())));
    return digest.hexDigits();
}

} // namespace velmorant
