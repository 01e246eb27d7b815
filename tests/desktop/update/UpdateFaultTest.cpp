#include "tests/builders/CatalogueBuilder.h"
#include "tests/desktop/HttpServer.h"
#include "tests/desktop/update/DesktopUpdate.h"
#include "update/Sha256.h"

#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <memory>
#include <string>
#include <sys/resource.h>

namespace velmorant {
namespace {

using builders::catalogueText;
using testing::HasSubstr;

/// A server that answers "faulty" as the test says, and everything else well.
class UpdateFaultTest : public testing::Test {
  protected:
    using Answer = std::function<HttpServer::After(QTcpSocket&)>;

    UpdateFaultTest()
        : server([this](const HttpRequest& request, QTcpSocket& socket) {
              return serve(request, socket);
          }),
          desktop(server.address("/").toStdString()) {
        desktop.folder.write("faulty.txt", "old");
        desktop.folder.write("config.mp4", catalogueText("1", {}));
    }

    HttpServer::After serve(const HttpRequest& request, QTcpSocket& socket) {
        if (request.target == "/faulty" && answer)
            return answer(socket);
        const std::string text = request.target == "/update/remote.rar" ? catalogue() : "new";
        socket.write(HttpServer::response(QByteArray::fromStdString(text), "text/plain"));
        return HttpServer::After::Close;
    }
    std::string catalogue() const {
        return catalogueText("2",
                             {{"first.txt", "first", "1"}, {"faulty.txt", "faulty", "1", digest}});
    }

    static Answer bytes(const QByteArray& text) {
        return [text](QTcpSocket& socket) {
            socket.write(text);
            return HttpServer::After::Close;
        };
    }
    void expectRefused() {
        ASSERT_TRUE(desktop.runToEnd());
        EXPECT_EQ(desktop.folder.read("first.txt"), "new");
        EXPECT_EQ(desktop.folder.read("faulty.txt"), "old");
        EXPECT_EQ(desktop.folder.read("config.mp4"), catalogueText("1", {}));
        EXPECT_FALSE(desktop.folder.has("faulty.txt.part~"));
        expectNextRunFinishes();
    }
    void expectNextRunFinishes() {
        answer = {};
        ASSERT_TRUE(desktop.runToEnd());
        EXPECT_EQ(desktop.folder.read("faulty.txt"), "new");
        EXPECT_EQ(desktop.folder.read("config.mp4"), catalogue());
    }
    void expectTaken(const std::string& content) {
        ASSERT_TRUE(desktop.runToEnd());
        EXPECT_TRUE(desktop.folder.read("faulty.txt") == content);
        EXPECT_EQ(desktop.folder.read("config.mp4"), catalogue());
    }

    Answer answer;
    std::string digest;
    HttpServer server;
    DesktopUpdate desktop;
};

TEST_F(UpdateFaultTest, a_status_that_is_an_error) {
    answer = bytes(HttpServer::response("no", "text/plain", {}, "404 Not Found"));
    expectRefused();
    answer = {};
}

TEST_F(UpdateFaultTest, a_server_in_trouble) {
    answer = bytes(HttpServer::response("no", "text/plain", {}, "500 Internal Server Error"));
    expectRefused();
}

TEST_F(UpdateFaultTest, a_body_shorter_than_its_length) {
    answer = bytes("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf");
    expectRefused();
}

TEST_F(UpdateFaultTest, a_body_longer_than_its_length_counts_as_long_as_it_says) {
    answer = bytes("HTTP/1.1 200 OK\r\nContent-Length: 3\r\nConnection: close\r\n\r\nnewest");
    expectTaken("new");
}

TEST_F(UpdateFaultTest, a_body_longer_than_its_length_with_another_digest) {
    digest = Sha256::of("new");
    answer = bytes("HTTP/1.1 200 OK\r\nContent-Length: 3\r\nConnection: close\r\n\r\noldest");
    expectRefused();
}

TEST_F(UpdateFaultTest, a_body_without_a_length_is_read_to_its_end) {
    answer = bytes("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + QByteArray(100000, 'z'));
    expectTaken(std::string(100000, 'z'));
}

TEST_F(UpdateFaultTest, a_body_in_pieces) {
    answer = bytes("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                   "3\r\nnew\r\n5\r\n text\r\n0\r\n\r\n");
    expectTaken("new text");
}

TEST_F(UpdateFaultTest, a_body_in_pieces_without_the_last_one) {
    answer = bytes("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nnew\r\n5\r\n te");
    expectRefused();
}

TEST_F(UpdateFaultTest, a_redirection_on_the_same_server) {
    answer = bytes(HttpServer::response("", "text/plain", "Location: /elsewhere\r\n", "302 Found"));
    expectTaken("new");
}

TEST_F(UpdateFaultTest, a_redirection_to_another_server) {
    HttpServer other([](const HttpRequest&, QTcpSocket& socket) {
        socket.write(HttpServer::response("bad", "text/plain"));
        return HttpServer::After::Close;
    });
    answer = bytes(HttpServer::response("", "text/plain",
                                        "Location: " + other.address("/x") + "\r\n", "302 Found"));
    expectRefused();
    EXPECT_TRUE(other.requests().isEmpty());
}

TEST_F(UpdateFaultTest, a_connection_that_breaks_before_the_response) {
    answer = [](QTcpSocket& socket) {
        socket.abort();
        return HttpServer::After::KeepOpen;
    };
    expectRefused();
}

TEST_F(UpdateFaultTest, a_slow_body_of_one_byte_per_100_ms) {
    answer = [](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 12\r\n\r\n");
        auto* const clock = new QTimer(&socket);
        auto sent = std::make_shared<int>(0);
        QObject::connect(clock, &QTimer::timeout, &socket, [&socket, clock, sent] {
            socket.write("s");
            if (++*sent == 12)
                clock->stop();
        });
        clock->start(100);
        return HttpServer::After::KeepOpen;
    };
    int rounds = 0;
    QTimer pulse;
    QObject::connect(&pulse, &QTimer::timeout, &pulse, [&] { ++rounds; });
    pulse.start(20);
    expectTaken(std::string(12, 's'));
    EXPECT_GT(rounds, 40) << "the windows stay alive meanwhile";
}

/// Peak of this process's memory, in kilobytes.
long peakMemory() {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        if (word == "VmHWM:") {
            long kilobytes = 0;
            status >> kilobytes;
            return kilobytes;
        }
    }
    return 0;
}

TEST_F(UpdateFaultTest, a_body_of_200_megabytes_needs_no_memory) {
    constexpr qint64 size = 200'000'000;
    answer = [](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 200000000\r\n\r\n");
        auto sent = std::make_shared<qint64>(0);
        const auto more = [&socket, sent] {
            while (*sent < size && socket.bytesToWrite() < 1'000'000) {
                const QByteArray piece(500'000, 'x');
                *sent += socket.write(piece);
            }
        };
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, more);
        more();
        return HttpServer::After::KeepOpen;
    };
    const long before = peakMemory();
    ASSERT_TRUE(desktop.runToEnd(UpdateOpening::OnRequest, 110000));
    const long grown = peakMemory() - before;
    EXPECT_LT(grown, 32 * 1024) << "kilobytes";
    RecordProperty("kilobytes", static_cast<int>(grown));
    EXPECT_EQ(std::filesystem::file_size(desktop.folder.path("faulty.txt")),
              static_cast<std::uintmax_t>(size));
}

/// As on a full disk, the system refuses to write on.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

  private:
    rlimit m_before{};
    void (*m_handler)(int);
};

TEST_F(UpdateFaultTest, a_disk_that_takes_no_more) {
    answer = bytes(HttpServer::response(QByteArray(500000, 'x'), "text/plain"));
    {
        const FileSizeLimit limit(100000);
        ASSERT_TRUE(desktop.runToEnd());
        EXPECT_THAT(desktop.toldAtLast(), HasSubstr("faulty.txt: "));
    }
    EXPECT_EQ(desktop.folder.read("faulty.txt"), "old");
    EXPECT_FALSE(desktop.folder.has("faulty.txt.part~"));
    expectNextRunFinishes();
}

TEST_F(UpdateFaultTest, a_file_that_may_only_be_read_is_replaced_and_stays_so) {
    const std::string file = desktop.folder.path("faulty.txt");
    std::filesystem::permissions(file, std::filesystem::perms(0444));
    expectTaken("new");
    EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0444));
}

TEST_F(UpdateFaultTest, a_server_that_is_not_there) {
    server.stop();
    ASSERT_TRUE(desktop.runToEnd());
    EXPECT_THAT(desktop.toldAtLast(), HasSubstr("does not connect to the server"));
    EXPECT_FALSE(desktop.folder.has("first.txt"));
}

} // namespace
} // namespace velmorant
