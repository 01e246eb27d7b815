#include "server/catalogue/ServedTree.h"
#include "tests/desktop/update/DesktopUpdate.h"
#include "tests/desktop/update/EnvironmentValue.h"
#include "tests/desktop/update/NginxServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace velmorant {
namespace {

using testing::AllOf;
using testing::HasSubstr;

/// A web server that speaks https, with a certificate for the names of the test.
struct TlsServer {
    explicit TlsServer(const std::string& names) : certificates(names), nginx(&certificates) {
        release.write("Velmorant DVR Tools", "program");
        release.write("readme.txt", "new");
        release.write("skin/main/1.mp4", std::string(3'000'000, 's'));
        publishRelease({release.path(), nginx.served().path(), "R1", "Velmorant DVR Tools", {}});
    }
    bool ready() { return certificates.made() && nginx.ready(); }
    QByteArray authority() const { return QByteArray::fromStdString(certificates.authority()); }

    TestCertificates certificates;
    NginxServer nginx;
    builders::ScratchFolder release;
};

void expectRefused(TlsServer& server, const std::string& reason) {
    ASSERT_TRUE(server.ready()) << server.certificates.messages() << server.nginx.errors();
    DesktopUpdate desktop(server.nginx.base());
    ASSERT_TRUE(desktop.runToEnd());
    EXPECT_THAT(desktop.toldAtLast(),
                AllOf(HasSubstr("update/remote.rar: the server's certificate is not trusted: "),
                      HasSubstr(reason)));
    EXPECT_FALSE(desktop.folder.has("readme.txt"));
    EXPECT_FALSE(desktop.folder.has("config.mp4"));
}

TEST(UpdateTlsTest, fetches_from_a_server_whose_certificate_is_trusted) {
    TlsServer server("IP:127.0.0.1");
    ASSERT_TRUE(server.ready()) << server.certificates.messages() << server.nginx.errors();
    const EnvironmentValue trusted("SSL_CERT_FILE", server.authority());
    DesktopUpdate desktop(server.nginx.base());
    desktop.folder.write("Velmorant DVR Tools", "program");
    ASSERT_TRUE(desktop.runToEnd());
    EXPECT_EQ(desktop.toldAtLast(), "");
    EXPECT_EQ(desktop.folder.read("skin/main/1.mp4"), server.release.read("skin/main/1.mp4"));
    EXPECT_EQ(desktop.folder.read("config.mp4"), server.nginx.served().read("update/remote.rar"));
}

TEST(UpdateTlsTest, refuses_a_certificate_that_nobody_known_has_signed) {
    TlsServer server("IP:127.0.0.1");
    expectRefused(server, "unable to get local issuer certificate");
}

TEST(UpdateTlsTest, refuses_a_certificate_of_another_server) {
    TlsServer server("DNS:elsewhere.example");
    const EnvironmentValue trusted("SSL_CERT_FILE", server.authority());
    expectRefused(server, "no alternative certificate subject name matches");
}

} // namespace
} // namespace velmorant
