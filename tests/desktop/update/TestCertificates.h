#pragma once

#include "tests/builders/ScratchFolder.h"

#include <QProcess>
#include <QString>
#include <QStringList>

#include <string>

namespace velmorant {

/// A certificate authority of the test's own, and certificates that it has signed.
class TestCertificates {
  public:
    /// `names` as in "DNS:localhost,IP:127.0.0.1".
    explicit TestCertificates(const std::string& names) {
        openssl({"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
                 "-nodes", "-days", "2", "-subj", "/CN=Test authority", "-keyout", at("ca.key"),
                 "-out", at("ca.pem")});
        openssl({"req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                 "-subj", "/CN=Test server", "-keyout", at("server.key"), "-out",
                 at("server.csr")});
        folder_.write("server.ext", "subjectAltName=" + names + "\n");
        openssl({"x509", "-req", "-in", at("server.csr"), "-CA", at("ca.pem"), "-CAkey",
                 at("ca.key"), "-days", "2", "-extfile", at("server.ext"), "-out",
                 at("server.pem")});
    }

    std::string authority() const { return folder_.path("ca.pem"); }
    std::string certificate() const { return folder_.path("server.pem"); }
    std::string key() const { return folder_.path("server.key"); }
    bool made() const { return folder_.has("server.pem") && messages_.empty(); }
    std::string messages() const { return messages_; }

  private:
    QString at(const std::string& name) const { return QString::fromStdString(folder_.path(name)); }
    void openssl(const QStringList& arguments) {
        QProcess process;
        process.start("openssl", arguments);
        if (!process.waitForFinished() || process.exitCode() != 0)
            messages_ += process.readAllStandardError().toStdString() + "\n";
    }

    builders::ScratchFolder folder_;
    std::string messages_;
};

} // namespace velmorant
