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
        : m_server([this](const HttpRequest& request, QTcpSocket& socket) {
              return m_answer(request, socket);
          }) {
        m_transfer.onStateChanged([this](TransferState state) { m_states.push_back(state); });
        m_transfer.onData([this] {
            if (m_reading)
                take();
        });
    }

    void serve(const QByteArray& response) {
        m_answer = [response](const HttpRequest&, QTcpSocket& socket) {
            socket.write(response);
            return HttpServer::After::Close;
        };
    }
    void get(const QByteArray& target) {
        m_transfer.get(m_server.address(target).toStdString());
        EXPECT_TRUE(m_states.empty()) << "sent inside the call";
        ASSERT_TRUE(waitFor([this] { return !m_states.empty(); }));
    }
    void take() {
        for (;;) {
            const std::vector<std::byte> bytes = m_transfer.chunk(m_chunkSize);
            EXPECT_LE(bytes.size(), m_chunkSize);
            if (bytes.empty())
                return;
            m_taken.append(reinterpret_cast<const char*>(bytes.data()),
                           static_cast<qsizetype>(bytes.size()));
        }
    }
    /// The body to its end, or what came before an error.
    QByteArray body(std::size_t chunkSize = 1024) {
        m_chunkSize = chunkSize;
        m_taken.clear();
        m_reading = true;
        take();
        EXPECT_TRUE(waitFor(
            [this] { return m_transfer.atEnd() || m_states.back() == TransferState::Error; }));
        m_reading = false;
        return m_taken;
    }

    bool m_reading = false;
    std::size_t m_chunkSize = 1024;
    QByteArray m_taken;
    HttpServer::Handler m_answer;
    HttpServer m_server;
    HandlerGate m_gate;
    CurlHttpTransfer m_transfer{m_gate.delivery()};
    std::vector<TransferState> m_states;
};

TEST_F(CurlHttpTransferTest, reads_a_body_in_chunks) {
    QByteArray content;
    for (int i = 0; i < 10000; ++i)
        content += QByteArray::number(i) + ' ';
    serve(HttpServer::response(content, "text/plain"));
    get("/update/remote.rar");
    EXPECT_THAT(m_states, ElementsAre(TransferState::ResponseCompleted));
    EXPECT_EQ(m_transfer.header("Content-Length"),
              QByteArray::number(content.size()).toStdString());
    EXPECT_EQ(m_transfer.header("content-length"), m_transfer.header("Content-Length"));
    EXPECT_EQ(m_transfer.header("X-None"), "");
    EXPECT_EQ(m_transfer.responseCode(), 200);
    EXPECT_EQ(m_transfer.responseText(), "OK");
    EXPECT_EQ(body(), content);
    EXPECT_TRUE(m_transfer.chunk(1024).empty());
    EXPECT_EQ(m_server.requests()[0].target, "/update/remote.rar");
    EXPECT_THAT(m_server.requests()[0].header("User-Agent").toStdString(),
                HasSubstr("VelmorantDVRTools/"));
}

TEST_F(CurlHttpTransferTest, reads_an_empty_body) {
    serve(HttpServer::response("", "text/plain"));
    get("/empty");
    EXPECT_THAT(m_states, ElementsAre(TransferState::ResponseCompleted));
    EXPECT_EQ(body(), "");
}

TEST_F(CurlHttpTransferTest, reads_a_body_that_comes_slowly) {
    m_answer = [](const HttpRequest&, QTcpSocket& socket) {
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
    m_answer = [&](const HttpRequest&, QTcpSocket& socket) {
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
        m_states.clear();
        serve(HttpServer::response("sorry", "text/plain", {}, status));
        get("/missing");
        EXPECT_THAT(m_states, ElementsAre(TransferState::Error));
        EXPECT_EQ(m_transfer.responseCode(), status.left(3).toInt());
        EXPECT_EQ(m_transfer.responseText(), status.mid(4).toStdString());
        EXPECT_TRUE(m_transfer.chunk(1024).empty());
        EXPECT_FALSE(m_transfer.atEnd());
    }
}

TEST_F(CurlHttpTransferTest, reports_a_server_that_is_not_there) {
    m_server.stop();
    get("/");
    EXPECT_THAT(m_states, ElementsAre(TransferState::Error));
    EXPECT_EQ(m_transfer.responseCode(), 0);
    EXPECT_NE(m_transfer.responseText(), "");
}

TEST_F(CurlHttpTransferTest, refuses_other_addresses) {
    for (const char* address : {"file:///etc/hostname", "ftp://127.0.0.1/x", "", "no address",
                                "http://", "data:text/plain,x"}) {
        m_states.clear();
        m_transfer.get(address);
        ASSERT_TRUE(waitFor([this] { return !m_states.empty(); })) << address;
        EXPECT_THAT(m_states, ElementsAre(TransferState::Error)) << address;
    }
}

TEST_F(CurlHttpTransferTest, asks_the_port_that_was_set_where_the_address_names_none) {
    serve(HttpServer::response("x", "text/plain"));
    m_transfer.setPort(m_server.port());
    m_transfer.get("http://127.0.0.1/update");
    ASSERT_TRUE(waitFor([this] { return !m_states.empty(); }));
    EXPECT_THAT(m_states, ElementsAre(TransferState::ResponseCompleted));
    m_states.clear();
    m_transfer.setPort(1);
    get("/named");
    EXPECT_THAT(m_states, ElementsAre(TransferState::ResponseCompleted));
}

TEST_F(CurlHttpTransferTest, follows_redirections_on_the_same_host_only) {
    HttpServer other([](const HttpRequest&, QTcpSocket& socket) {
        socket.write(HttpServer::response("elsewhere", "text/plain"));
        return HttpServer::After::Close;
    });
    m_answer = [&](const HttpRequest& request, QTcpSocket& socket) {
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
        m_states.clear();
        get(target);
        EXPECT_THAT(m_states, ElementsAre(TransferState::Error)) << target;
    }
    EXPECT_TRUE(other.requests().isEmpty());
    EXPECT_EQ(m_server.requests().size(), 2 + 1 + 1 + 5);
}

TEST_F(CurlHttpTransferTest, reports_a_connection_that_breaks_in_the_middle) {
    serve("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nonly this");
    get("/cut");
    body();
    EXPECT_FALSE(m_transfer.atEnd()) << "half a body passed as a whole one";
    EXPECT_THAT(m_states, ElementsAre(TransferState::ResponseCompleted, TransferState::Error));
    EXPECT_EQ(m_transfer.responseCode(), 200);
}

TEST_F(CurlHttpTransferTest, calls_a_listener_again_that_leaves_bytes_behind) {
    const QByteArray content(5000, 'x');
    serve(HttpServer::response(content, "text/plain"));
    QByteArray got;
    m_transfer.onData([&] { got.resize(got.size() + qsizetype(m_transfer.chunk(100).size())); });
    get("/bytes");
    EXPECT_TRUE(waitFor([&] { return m_transfer.atEnd(); }));
    EXPECT_EQ(got.size(), content.size());
}

TEST_F(CurlHttpTransferTest, brings_its_calls_to_the_time_when_they_may_run) {
    serve(HttpServer::response("x", "text/plain"));
    const std::string address = m_server.address("/x").toStdString();
    // The status of the response is known when the call begins to wait at the gate.
    const auto fetchInside = [&] {
        m_transfer.get(address);
        EXPECT_TRUE(waitFor([&] { return m_transfer.responseCode() == 200; }));
        EXPECT_THAT(m_states, ElementsAre());
    };
    m_gate.runWhenFree(fetchInside);
    EXPECT_TRUE(waitFor([&] { return !m_states.empty(); }));
    EXPECT_THAT(m_states, ElementsAre(TransferState::ResponseCompleted));
    m_states.clear();
    m_gate.runWhenFree([&] {
        fetchInside();
        m_transfer.cancel();
    });
    letRun(100);
    EXPECT_THAT(m_states, ElementsAre()) << "told of a transfer that was cancelled";
}

TEST_F(CurlHttpTransferTest, sends_nothing_more_after_a_cancel) {
    serve(HttpServer::response("x", "text/plain"));
    m_transfer.get(m_server.address("/x").toStdString());
    m_transfer.cancel();
    letRun(200);
    EXPECT_TRUE(m_states.empty());
    get("/again");
    EXPECT_EQ(body(), "x");
    EXPECT_THAT(m_states, ElementsAre(TransferState::ResponseCompleted));
}

} // namespace
} // namespace velmorant
