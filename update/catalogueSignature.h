#pragma once

#include <string>
#include <string_view>

namespace velmorant {

/// Detached signatures of catalogues: Ed25519 over the catalogue's bytes.
///
/// A public key is the base64 text of its 32 bytes. A signature file has one signature per line,
/// the base64 text of its 64 bytes; the catalogue is signed when any of them fits. More than one
/// line lets a server change its catalogue without a moment in which the two files disagree.

enum class SignatureVerdict { Valid, Invalid };

/// Throws StepError for a text that is no public key.
SignatureVerdict checkSignature(std::string_view publicKey, std::string_view catalogue,
                                std::string_view signatureFile);

struct SigningKey {
    std::string privatePem; ///< PKCS#8 text
    std::string publicKey;
};

SigningKey makeSigningKey();
/// The public half of a private key in PEM text. Throws StepError for another text or kind of key.
std::string publicKeyOf(std::string_view privatePem);
/// One line of a signature file, without its end. Throws StepError as publicKeyOf().
std::string signCatalogue(std::string_view privatePem, std::string_view catalogue);

} // namespace velmorant
