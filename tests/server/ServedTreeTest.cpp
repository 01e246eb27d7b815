#include "server/catalogue/ServedTree.h"

#include "common/StepError.h"
#include "server/catalogue/CatalogueMaker.h"
#include "tests/builders/ScratchFolder.h"
#include "update/Catalogue.h"
#include "update/Sha256.h"
#include "update/catalogueSignature.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

namespace velmorant {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ServedTreeTest : public testing::Test {
  protected:
    ServedTreeTest() {
        release.write("Velmorant DVR Tools", "program 1");
        release.write("movsupport/Parse", "extractor");
        release.write("skin/main/1.mp4", "skin");
    }

    PublishReport publish(const std::string& version, const std::string& key = {}) {
        return publishRelease({release.path(), served.path(), version, "Velmorant DVR Tools", key});
    }
    Catalogue catalogue() const { return Catalogue(served.read("update/remote.rar")); }

    builders::ScratchFolder release;
    builders::ScratchFolder served;
};

TEST_F(ServedTreeTest, names_every_file_with_the_main_program_last) {
    EXPECT_EQ(publish("R1").files, 3U);
    EXPECT_EQ(catalogue().mainVersion(), "R1");
    EXPECT_EQ(catalogue().entryCount(), 3);
    EXPECT_EQ(catalogue().entry(0).local, "movsupport\\Parse");
    EXPECT_EQ(catalogue().entry(0).sha256, Sha256::of("extractor"));
    EXPECT_EQ(served.read(catalogue().entry(0).remote), "extractor");
    EXPECT_EQ(catalogue().entry(1).local, "skin\\main\\1.mp4");
    EXPECT_EQ(catalogue().entry(2).local, "Velmorant DVR Tools");
    EXPECT_THAT(checkServedTree(served.path(), ""), IsEmpty());
}

TEST_F(ServedTreeTest, changes_the_version_of_a_changed_file_alone) {
    publish("R1");
    const Catalogue before = catalogue();
    release.write("skin/main/1.mp4", "skin 2");
    EXPECT_EQ(publish("R2").newFiles, 1U);
    EXPECT_EQ(catalogue().entry(0).version, before.entry(0).version);
    EXPECT_NE(catalogue().entry(1).version, before.entry(1).version);
    EXPECT_EQ(catalogue().entry(2).version, before.entry(2).version);
}

TEST_F(ServedTreeTest, keeps_the_numbers_of_the_previous_catalogue) {
    publish("R1");
    release.write("added.txt", "a");
    release.write("zebra.txt", "z");
    publish("R2");
    EXPECT_EQ(catalogue().entry(0).local, "movsupport\\Parse");
    EXPECT_EQ(catalogue().entry(1).local, "skin\\main\\1.mp4");
    EXPECT_EQ(catalogue().entry(2).local, "added.txt");
    EXPECT_EQ(catalogue().entry(3).local, "zebra.txt");
    EXPECT_EQ(catalogue().entry(4).local, "Velmorant DVR Tools");

    std::filesystem::remove(release.path("movsupport/Parse"));
    publish("R3");
    EXPECT_EQ(catalogue().entryCount(), 4);
    EXPECT_EQ(catalogue().entry(0).local, "zebra.txt");
    EXPECT_EQ(catalogue().entry(1).local, "skin\\main\\1.mp4");
    EXPECT_EQ(catalogue().entry(3).local, "Velmorant DVR Tools");
    EXPECT_THAT(checkServedTree(served.path(), ""), IsEmpty());
}

TEST_F(ServedTreeTest, gives_equal_contents_of_two_names_two_versions) {
    release.write("a.txt", "same");
    release.write("b.txt", "same");
    publish("R1");
    std::set<std::string> versions;
    for (int i = 0; i < 5; ++i)
        versions.insert(catalogue().entry(i).version);
    EXPECT_EQ(versions.size(), 5U);
}

TEST_F(ServedTreeTest, keeps_what_an_older_catalogue_names) {
    publish("R1");
    const std::string old = catalogue().entry(1).remote;
    release.write("skin/main/1.mp4", "skin 2");
    publish("R2");
    EXPECT_EQ(served.read(old), "skin");
}

TEST_F(ServedTreeTest, leaves_out_what_running_the_program_has_made) {
    release.write("config.mp4", "x");
    release.write("flow.xml", "x");
    release.write("update/remote.mp4", "x");
    EXPECT_EQ(publish("R1").files, 3U);
}

TEST_F(ServedTreeTest, signs_for_the_previous_catalogue_too) {
    const SigningKey key = makeSigningKey();
    publish("R1", key.privatePem);
    const std::string first = served.read("update/remote.rar");
    EXPECT_THAT(checkServedTree(served.path(), key.publicKey), IsEmpty());
    publish("R2", key.privatePem);
    EXPECT_THAT(checkServedTree(served.path(), key.publicKey), IsEmpty());
    const std::string signature = served.read("update/remote.rar.sig");
    EXPECT_EQ(checkSignature(key.publicKey, first, signature), SignatureVerdict::Valid);
    EXPECT_THAT(checkServedTree(served.path(), makeSigningKey().publicKey),
                ElementsAre(HasSubstr("does not fit")));
}

TEST_F(ServedTreeTest, finds_what_is_wrong_with_a_served_tree) {
    publish("R1");
    served.write(catalogue().entry(0).remote, "changed");
    std::filesystem::remove(served.path(catalogue().entry(1).remote));
    EXPECT_THAT(checkServedTree(served.path(), makeSigningKey().publicKey),
                ElementsAre(HasSubstr("NO0: "), HasSubstr("NO1: "), HasSubstr("is missing")));
    served.write("update/remote.rar", "[config]\nmainv=1\nmainall=0\n[NO0]\nLOCAL=x\n");
    EXPECT_THAT(checkServedTree(served.path(), ""), ElementsAre(HasSubstr("more entries")));
    served.write("update/remote.rar", "nothing");
    EXPECT_EQ(checkServedTree(served.path(), "").size(), 2U);
    std::filesystem::remove(served.path("update/remote.rar"));
    EXPECT_THAT(checkServedTree(served.path(), ""), ElementsAre(HasSubstr("missing")));
}

TEST_F(ServedTreeTest, refuses_a_release_that_clients_would_refuse) {
    const auto errorOf = [this](const std::string& name) {
        release.write(name, "x");
        std::string error = "none";
        try {
            publish("R1");
        } catch (const StepError& thrown) {
            error = thrown.what();
        }
        std::filesystem::remove(release.path(name));
        return error;
    };
    EXPECT_THAT(errorOf("REC0001.MP4"), HasSubstr("REC0001.MP4"));
    EXPECT_THAT(errorOf("nul.txt"), HasSubstr("device"));
    EXPECT_THAT(errorOf("a\\b"), HasSubstr("backslash"));
    EXPECT_THAT(errorOf("MOVSUPPORT/parse"), HasSubstr("one file"));
    EXPECT_FALSE(served.has("update/remote.rar"));
    std::filesystem::create_symlink("/etc/hostname", release.path("link"));
    EXPECT_THROW(publish("R1"), StepError);
    std::filesystem::remove(release.path("link"));
    std::filesystem::remove(release.path("Velmorant DVR Tools"));
    EXPECT_THROW(publish("R1"), StepError);
}

} // namespace
} // namespace velmorant
