#include "tests/settings/UpdateRun.h"

namespace velmorant {
namespace {

using builders::catalogueText;

struct Fault {
    const char* name;
    fakes::FakeHttpTransfer::Answer answer;
};

class frmUpdateFaultTest : public UpdateRun, public testing::WithParamInterface<Fault> {};

TEST_P(frmUpdateFaultTest, leaves_the_old_file_and_the_old_catalogue_and_closes_silently) {
    folder.write("config.mp4", catalogueText("1", {}));
    folder.write("a.txt", "old");
    folder.write("b.txt", "old");
    serveCatalogue(catalogueText("2", {{"b.txt", "b", "1"}, {"a.txt", "a", "1"}}));
    serve("b", "new");
    transfer.answers[base + "a"] = GetParam().answer;
    frmUpdate update(needs());
    run(update);
    EXPECT_EQ(folder.read("a.txt"), "old");
    EXPECT_EQ(folder.read("b.txt"), "new");
    EXPECT_EQ(folder.read("config.mp4"), catalogueText("1", {}));
    EXPECT_FALSE(folder.has("a.txt.part~"));
    EXPECT_EQ(window.closes, 1);
    EXPECT_TRUE(messageBox.shown.empty());

    serve("a", "new");
    run(update);
    EXPECT_EQ(folder.read("a.txt"), "new");
    EXPECT_EQ(Catalogue(folder.read("config.mp4")).mainVersion(), "2");
}

INSTANTIATE_TEST_SUITE_P(
    answers, frmUpdateFaultTest,
    testing::Values(Fault{"refused", {0, "", {}, true, false}},
                    Fault{"missing", {404, "gone", {{"Content-Length", "4"}}, false, false}},
                    Fault{"broken_server", {500, "", {}, false, false}},
                    Fault{"ends_early", {200, "ne", {{"Content-Length", "3"}}, false, false}},
                    Fault{"too_long", {200, "newer", {{"Content-Length", "3"}}, false, false}},
                    Fault{"breaks", {200, "ne", {{"Content-Length", "3"}}, false, true}},
                    Fault{"breaks_without_length", {200, "ne", {}, false, true}},
                    Fault{"senseless_length",
                          {200, "new", {{"Content-Length", "-3"}}, false, false}}),
    [](const auto& parameter) { return parameter.param.name; });

} // namespace
} // namespace velmorant
