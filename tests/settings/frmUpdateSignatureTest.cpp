#include "tests/settings/UpdateRun.h"
#include "update/catalogueSignature.h"

namespace velmorant {
namespace {

using builders::catalogueText;

class frmUpdateSignatureTest : public UpdateRun {
  protected:
    frmUpdateNeeds signedNeeds() {
        frmUpdateNeeds wanted = needs();
        wanted.publicKey = key.publicKey;
        return wanted;
    }

    const SigningKey key = makeSigningKey();
    const std::string text = catalogueText("2", {{"a.txt", "a", "1"}});
};

TEST_F(frmUpdateSignatureTest, takes_a_catalogue_that_is_signed) {
    serveCatalogue(text);
    serve("update/remote.rar.sig", signCatalogue(key.privatePem, text) + "\n");
    serve("a", "new");
    frmUpdate update(signedNeeds());
    run(update);
    EXPECT_EQ(folder.read("a.txt"), "new");
    EXPECT_EQ(folder.read("config.mp4"), text);
}

TEST_F(frmUpdateSignatureTest, refuses_a_catalogue_that_is_unsigned_or_signed_by_another) {
    serve("a", "new");
    serveCatalogue(text);
    frmUpdate update(signedNeeds());
    run(update);
    EXPECT_FALSE(folder.has("a.txt"));
    serve("update/remote.rar.sig", signCatalogue(makeSigningKey().privatePem, text));
    run(update);
    EXPECT_FALSE(folder.has("a.txt"));
    serve("update/remote.rar.sig", signCatalogue(key.privatePem, text + " "));
    run(update);
    EXPECT_FALSE(folder.has("a.txt"));
    EXPECT_FALSE(folder.has("config.mp4"));
}

} // namespace
} // namespace velmorant
