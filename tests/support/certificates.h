// A certificate authority that exists for one test, and the certificates that it issues. Owned by the test.
#pragma once

#include <QByteArray>
#include <QSslCertificate>
#include <QSslKey>
#include <QStringList>
#include <memory>

namespace orlix::test {

/// What a server shows and proves itself with.
struct ServerIdentity {
    QSslCertificate certificate;
    QSslKey key;
};

class CertificateAuthority {
  public:
    enum class Validity { now, past, future };

    CertificateAuthority();
    ~CertificateAuthority();
    CertificateAuthority(const CertificateAuthority&) = delete;
    CertificateAuthority& operator=(const CertificateAuthority&) = delete;

    QSslCertificate certificate() const;
    /// For a server that answers to `names`: host names, or addresses of the internet protocol.
    ServerIdentity issue(const QStringList& names, Validity validity = Validity::now) const;

  private:
    struct Keys;
    std::unique_ptr<Keys> keys_;
};

}  // namespace orlix::test
