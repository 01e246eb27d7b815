#include "desktop/transfer/CurlHttpTransfer.h"

#include "desktop/gate/HandlerGate.h"
#include "tests/desktop/HttpServer.h"
#include "tests/desktop/eventLoop.h"

#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmorant {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class CurlHttpTransferTest : public testing::Test {
  protected:
    CurlHttpTransferTest()
        : server_([this](const HttpRequest& request, QTcpSocket& socket) {
              return answer_(request, socket);
          }) {
        transfer_.onStateChanged([this](TransferState state) { states_.push_back(state); });
        transfer_.onData([this] {
            if (reading_)
                take();
        });
    }

    void serve(const QByteArray& response) {
        answer_ = [response](const HttpRequest&, QTcpSocket& socket) {
            socket.write(response);
            return HttpServer::After::Close;
        };
    }
    void get(const QByteArray& target) {
        transfer_.get(server_.address(target).toStdString());
        EXPECT_TRUE(states_.empty()) << "sent inside the call";
        ASSERT_TRUE(waitFor([this] { return !states_.empty(); }));
    }
    void take() {
        for (;;) {
            const std::vector<std::byte> bytes = transfer_.chunk(chunkSize_);
            EXPECT_LE(bytes.size(), chunkSize_);
            if (bytes.empty())
                return;
            taken_.append(reinterpret_cast<const char*>(bytes.data()),
                          static_cast<qsizetype>(bytes.size()));
        }
    }
    /// The body to its end, or what came before an error.
    QByteArray body(std::size_t chunkSize = 1024) {
        chunkSize_ = chunkSize;
        taken_.clear();
        reading_ = true;
        take();
        EXPECT_TRUE(waitFor(
            [this] { return transfer_.atEnd() || states_.back() == TransferState::Error; }));
        reading_ = false;
        return taken_;
    }

    bool reading_ = false;
    std::size_t chunkSize_ = 1024;
    QByteArray taken_;
    HttpServer::Handler answer_;
    HttpServer server_;
    HandlerGate gate_;
    CurlHttpTransfer transfer_{gate_.delivery()};
    std::vector<TransferState> states_;
};

TEST_F(CurlHttpTransferTest, reads_a_body_in_chunks) {
    QByteArray content;
    for (int i = 0; i < 10000; ++i)
        content += QByteArray::number(i) + ' ';
    serve(HttpServer::response(content, "text/plain"));
    get("/update/remote.rar");
    EXPECT_THAT(states_, ElementsAre(TransferState::ResponseCompleted));
    EXPECT_EQ(transfer_.header("Content-Length"), QByteArray::number(content.size()).toStdString());
    EXPECT_EQ(transfer_.header("content-length"), transfer_.header("Content-Length"));
    EXPECT_EQ(transfer_.header("X-None"), "");
    EXPECT_EQ(transfer_.responseCode(), 200);
    EXPECT_EQ(transfer_.responseText(), "OK");
    EXPECT_EQ(body(), content);
    EXPECT_TRUE(transfer_.chunk(1024).empty());
    EXPECT_EQ(server_.requests()[0].target, "/update/remote.rar");
    EXPECT_THAT(server_.requests()[0].header("User-Agent").toStdString(),
                HasSubstr("VelmorantDVRTools/"));
}

TEST_F(CurlHttpTransferTest, reads_an_empty_body) {
    serve(HttpServer::response("", "text/plain"));
    get("/empty");
    EXPECT_THAT(states_, ElementsAre(TransferState::ResponseCompleted));
    EXPECT_EQ(body(), "");
}

TEST_F(CurlHttpTransferTest, reads_a_body_that_comes_slowly) {
    answer_ = [](const HttpRequest&, QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n12345");
        QTimer::singleShot(200, &socket, [&socket] { socket.write("67890"); });
        return HttpServer::After::KeepOpen;
    };
    get("/slow");
    EXPECT_EQ(body(), "1234567890");
}

TEST_F(CurlHttpTransferTest, holds_little_of_a_large_body_in_memory) {
    const qsizetype size = 50'000'000;
    QTcpSocket* connection = nullptr;
    answer_ = [&](const HttpRequest&, QTcpSocket& socket) {
        connection = &socket;
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 50000000\r\n\r\n");
        socket.write(QByteArray(size, 'x'));
        return HttpServer::After::KeepOpen;
    };
    get("/large");
    letRun(500);
    EXPECT_GT(connection->bytesToWrite(), 30'000'000) << "nobody has asked for it yet";
    EXPECT_EQ(body(65536).size(), size);
}

TEST_F(CurlHttpTransferTest, reports_a_status_of_400_and_above_as_an_error) {
    for (const QByteArray status :
         {"404 Not Found", "500 Internal Server Error", "403 Forbidden"}) {
        states_.clear();
        serve(HttpServer::response("sorry", "text/plain", {}, status));
        get("/missing");
        EXPECT_THAT(states_, ElementsAre(TransferState::Error));
        EXPECT_EQ(transfer_.responseCode(), status.left(3).toInt());
        EXPECT_EQ(transfer_.responseText(), status.mid(4).toStdString());
        EXPECT_TRUE(transfer_.chunk(1024).empty());
        EXPECT_FALSE(transfer_.atEnd());
    }
}

TEST_F(CurlHttpTransferTest, reports_a_server_that_is_not_there) {
    server_.stop();
    get("/");
    EXPECT_THAT(states_, ElementsAre(TransferState::Error));
    EXPECT_EQ(transfer_.responseCode(), 0);
    EXPECT_NE(transfer_.responseText(), "");
}

TEST_F(CurlHttpTransferTest, refuses_other_addresses) {
    for (const char* address : {"file:///etc/hostname", "ftp://127.0.0.1/x", "", "no address",
                                "http://", "data:text/plain,x"}) {
        states_.clear();
        transfer_.get(address);
        ASSERT_TRUE(waitFor([this] { return !states_.empty(); })) << address;
        EXPECT_THAT(states_, ElementsAre(TransferState::Error)) << address;
    }
}

TEST_F(CurlHttpTransferTest, asks_the_port_that_was_set_where_the_address_names_none) {
    serve(HttpServer::response("x", "text/plain"));
    transfer_.setPort(server_.port());
    transfer_.get("http://127.0.0.1/update");
    ASSERT_TRUE(waitFor([this] { return !states_.empty(); }));
    EXPECT_THAT(states_, ElementsAre(TransferState::ResponseCompleted));
    states_.clear();
    transfer_.setPort(1);
    get("/named");
    EXPECT_THAT(states_, ElementsAre(TransferState::ResponseCompleted));
}

TEST_F(CurlHttpTransferTest, follows_redirections_on_the_same_host_only) {
    HttpServer other([](const HttpRequest&, QTcpSocket& socket) {
        socket.write(HttpServer::response("elsewhere", "text/plain"));
        return HttpServer::After::Close;
    });
    answer_ = [&](const HttpRequest& request, QTcpSocket& socket) {
        const QByteArray port = QByteArray::number(other.port());
        const QByteArray target = request.target == "/same"      ? "/here"
                                  : request.target == "/foreign" ? "http://localhost:" + port + "/"
                                  : request.target == "/local"   ? "file:///etc/hostname"
                                                                 : request.target;
        if (request.target == "/here")
            socket.write(HttpServer::response("here", "text/plain"));
        else
            socket.write(HttpServer::response("", "text/plain", "Location: " + target + "\r\n",
                                              "302 Found"));
        return HttpServer::After::Close;
    };
    get("/same");
    EXPECT_EQ(body(), "here");
    for (const char* target : {"/foreign", "/local", "/loop"}) {
        states_.clear();
        get(target);
        EXPECT_THAT(states_, ElementsAre(TransferState::Error)) << target;
    }
    EXPECT_TRUE(other.requests().isEmpty());
    EXPECT_EQ(server_.requests().size(), 2 + 1 + 1 + 5);
}

TEST_F(CurlHttpTransferTest, reports_a_connection_that_breaks_in_the_middle) {
    serve("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nonly this");
    get("/cut");
    body();
    EXPECT_FALSE(transfer_.atEnd()) << "half a body passed as a whole one";
    EXPECT_THAT(states_, ElementsAre(TransferState::ResponseCompleted, TransferState::Error));
    EXPECT_EQ(transfer_.responseCode(), 200);
}

TEST_F(CurlHttpTransferTest, calls_a_listener_again_that_leaves_bytes_behind) {
    const QByteArray content(5000, 'x');
    serve(HttpServer::response(content, "text/plain"));
    QByteArray got;
    transfer_.onData([&] { got.resize(got.size() + qsizetype(transfer_.chunk(100).size())); });
    get("/bytes");
    EXPECT_TRUE(waitFor([&] { return transfer_.atEnd(); }));
    EXPECT_EQ(got.size(), content.size());
}

TEST_F(CurlHttpTransferTest, brings_its_calls_to_the_time_when_they_may_run) {
    serve(HttpServer::response("x", "text/plain"));
    const std::string address = server_.address("/x").toStdString();
    // The status of the response is known when the call begins to wait at the gate.
    const auto fetchInside = [&] {
        transfer_.get(address);
        EXPECT_TRUE(waitFor([&] { return transfer_.responseCode() == 200; }));
        EXPECT_THAT(states_, ElementsAre());
    };
    gate_.runWhenFree(fetchInside);
    EXPECT_TRUE(waitFor([&] { return !states_.empty(); }));
    EXPECT_THAT(states_, ElementsAre(TransferState::ResponseCompleted));
    states_.clear();
    gate_.runWhenFree([&] {
        fetchInside();
        transfer_.cancel();
    });
    letRun(100);
    EXPECT_THAT(states_, ElementsAre()) << "told of a transfer that was cancelled";
}

TEST_F(CurlHttpTransferTest, sends_nothing_more_after_a_cancel) {
    serve(HttpServer::response("x", "text/plain"));
    transfer_.get(server_.address("/x").toStdString());
    transfer_.cancel();
    letRun(200);
    EXPECT_TRUE(states_.empty());
    get("/again");
    EXPECT_EQ(body(), "x");
    EXPECT_THAT(states_, ElementsAre(TransferState::ResponseCompleted));
}

} // namespace
} // namespace velmorant
