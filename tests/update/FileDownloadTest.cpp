#include "update/FileDownload.h"

#include "tests/builders/ScratchFolder.h"
#include "tests/fakes/FakeHttpTransfer.h"
#include "update/Sha256.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace velmorant {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string url = "http://server.test/file";

class FileDownloadTest : public testing::Test {
  protected:
    DownloadRequest request(std::uint64_t largest = UINT64_MAX) const {
        return {.url = url, .path = ProgramPath::own("file"), .largest = largest};
    }
    /// The body with its length, without it, or with another one.
    void serve(const std::string& body) { transfer.answers[url] = transfer.body(body); }
    void serveUntold(const std::string& body) {
        transfer.answers[url] = {200, body, {}, false, false};
    }
    void serveTold(const std::string& body, const std::string& length) {
        transfer.answers[url] = {200, body, {{"content-length", length}}, false, false};
    }
    void run(const DownloadRequest& wanted) {
        lengths.clear();
        written.clear();
        failures.clear();
        complete = 0;
        download.start(wanted);
        transfer.answer();
        tree.publish();
    }

    builders::ScratchFolder folder;
    ProgramTree tree{folder.path()};
    fakes::FakeHttpTransfer transfer;
    std::vector<std::int64_t> lengths;
    std::vector<std::int64_t> written;
    std::vector<DownloadFailure> failures;
    int complete = 0;
    FileDownload download{transfer,
                          tree,
                          {[this](std::int64_t length) { lengths.push_back(length); },
                           [this](std::int64_t bytes) { written.push_back(bytes); },
                           [this] { ++complete; },
                           [this](const DownloadFailure& one) { failures.push_back(one); }}};
};

TEST_F(FileDownloadTest, tells_length_progress_and_the_end) {
    serve(std::string(1500, 'x'));
    run(request());
    EXPECT_THAT(lengths, ElementsAre(1500));
    EXPECT_THAT(written, ElementsAre(1024, 1500));
    EXPECT_EQ(complete, 1);
    EXPECT_THAT(failures, IsEmpty());
    EXPECT_FALSE(download.running());
    EXPECT_EQ(folder.read("file"), std::string(1500, 'x'));
}

TEST_F(FileDownloadTest, refuses_a_body_longer_than_it_may_be_whether_that_was_told_or_not) {
    serve(std::string(10, 'x'));
    run(request(10));
    EXPECT_EQ(complete, 1);
    serveUntold(std::string(10, 'y'));
    run(request(10));
    EXPECT_EQ(complete, 1);
    EXPECT_EQ(folder.read("file"), std::string(10, 'y'));

    serve(std::string(11, 'z'));
    run(request(10));
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_THAT(failures[0].reason, HasSubstr("larger than it can be"));
    EXPECT_THAT(lengths, IsEmpty());
    EXPECT_THAT(written, IsEmpty());
    serveUntold(std::string(2000, 'z'));
    run(request(1500));
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_THAT(failures[0].reason, HasSubstr("larger than it can be"));
    EXPECT_THAT(written, ElementsAre(1024));
    EXPECT_EQ(complete, 0);
    EXPECT_EQ(folder.contents().at("file"), std::string(10, 'y'));
    EXPECT_EQ(folder.contents().size(), 1U);
}

TEST_F(FileDownloadTest, refuses_a_body_of_another_length_than_was_told) {
    serveTold("four", "5");
    run(request());
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_EQ(failures[0].reason, url + ": the file has 4 of 5 bytes");
    for (const char* length : {"4 bytes", "-4", "x", "99999999999999999999"}) {
        serveTold("four", length);
        run(request());
        ASSERT_EQ(failures.size(), 1U) << length;
        EXPECT_THAT(failures[0].reason, HasSubstr("no sensible length")) << length;
    }
    serveTold("four", "4");
    run(request());
    EXPECT_EQ(complete, 1);
}

TEST_F(FileDownloadTest, reads_at_most_256_chunks_between_two_rounds_of_the_event_loop) {
    serve(std::string(256 * 1024, 'x'));
    run(request());
    EXPECT_EQ(complete, 1);
    const int events = transfer.dataEvents;
    serve(std::string(256 * 1024 + 1, 'x'));
    run(request());
    EXPECT_EQ(complete, 1);
    EXPECT_EQ(events, 1);
    EXPECT_EQ(transfer.dataEvents, events + 2);
}

TEST_F(FileDownloadTest, tells_which_answer_was_a_failure_and_which_was_none) {
    transfer.answers[url] = {0, "", {}, true, false};
    run(request());
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_EQ(failures[0].fault, DownloadFault::NotConnected);
    EXPECT_EQ(failures[0].reason, url + ": refused");
    transfer.answers[url] = {1, "", {}, true, false};
    run(request());
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_EQ(failures[0].fault, DownloadFault::Other);
    EXPECT_EQ(failures[0].reason, url + ": 1 refused");
    for (const int code : {199, 201, 206, 404}) {
        transfer.answers[url] = {code, "text", {}, false, false};
        run(request());
        ASSERT_EQ(failures.size(), 1U) << code;
        EXPECT_EQ(failures[0].fault, DownloadFault::Other);
        EXPECT_EQ(failures[0].reason,
                  url + ": the server answers " + std::to_string(code) + " answered");
    }
    EXPECT_TRUE(folder.contents().empty());
}

TEST_F(FileDownloadTest, compares_the_digest_without_regard_to_case) {
    serve("new");
    DownloadRequest wanted = request();
    wanted.sha256 = Sha256::of("new");
    for (char& letter : wanted.sha256)
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    run(wanted);
    EXPECT_EQ(complete, 1);
    wanted.sha256 = Sha256::of("old");
    run(wanted);
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_THAT(failures[0].reason, HasSubstr("not the one of the catalogue"));
}

TEST_F(FileDownloadTest, lets_a_new_program_run_and_leaves_an_old_files_rights) {
    const auto runs = [this](const std::string& body) {
        std::filesystem::remove(folder.path("file"));
        serve(body);
        run(request());
        const auto rights = std::filesystem::status(folder.path("file")).permissions();
        return (rights & std::filesystem::perms::owner_exec) != std::filesystem::perms::none;
    };
    EXPECT_TRUE(runs("#!/bin/sh\n"));
    EXPECT_TRUE(runs("\x7f"
                     "ELF"));
    EXPECT_FALSE(runs("text"));
    EXPECT_FALSE(runs(std::string(1024, 'x') + "#!/bin/sh\n"));
    serve("#!/bin/sh\n");
    run(request());
    EXPECT_EQ(std::filesystem::status(folder.path("file")).permissions() &
                  std::filesystem::perms::owner_exec,
              std::filesystem::perms::none);
}

TEST_F(FileDownloadTest, tells_nothing_more_once_it_was_cancelled) {
    serve("new");
    download.start(request());
    EXPECT_TRUE(download.running());
    download.cancel();
    EXPECT_FALSE(download.running());
    EXPECT_EQ(transfer.cancels, 1);
    download.cancel();
    EXPECT_EQ(transfer.cancels, 1);
    EXPECT_FALSE(transfer.answer());
    EXPECT_EQ(complete, 0);
    EXPECT_THAT(failures, IsEmpty());
}

TEST_F(FileDownloadTest, may_be_cancelled_by_who_hears_of_its_progress) {
    FileDownload* running = nullptr;
    int told = 0;
    FileDownload closing(transfer, tree,
                         {{},
                          [&](std::int64_t) {
                              ++told;
                              running->cancel();
                          },
                          [this] { ++complete; },
                          [this](const DownloadFailure& one) { failures.push_back(one); }});
    running = &closing;
    serve(std::string(5000, 'x'));
    closing.start(request());
    transfer.answer();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(complete, 0);
    EXPECT_THAT(failures, IsEmpty());
    tree.publish();
    EXPECT_TRUE(folder.contents().empty());
}

TEST_F(FileDownloadTest, ends_what_is_under_way_when_another_one_starts) {
    serve("new");
    download.start(request());
    run({.url = url, .path = ProgramPath::own("other")});
    EXPECT_EQ(transfer.cancels, 1);
    EXPECT_EQ(complete, 1);
    EXPECT_FALSE(folder.has("file"));
    EXPECT_EQ(folder.read("other"), "new");
}

} // namespace
} // namespace velmorant
