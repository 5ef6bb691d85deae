#include "support/certificates.h"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <QHostAddress>
#include <atomic>
#include <stdexcept>

namespace orlix::test {
namespace {

struct Free {
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    void operator()(X509* certificate) const { X509_free(certificate); }
    void operator()(BIO* bio) const { BIO_free(bio); }
    void operator()(X509_EXTENSION* extension) const { X509_EXTENSION_free(extension); }
};
using Key = std::unique_ptr<EVP_PKEY, Free>;
using Certificate = std::unique_ptr<X509, Free>;

constexpr long day = 24L * 60 * 60;  // seconds

Key newKey() {
    Key key(EVP_EC_gen("P-256"));
    if (!key) throw std::runtime_error("no key");
    return key;
}

template <class Write>
QByteArray pem(Write write) {
    const std::unique_ptr<BIO, Free> bio(BIO_new(BIO_s_mem()));
    write(bio.get());
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(bio.get(), &bytes);
    return {bytes, static_cast<qsizetype>(size)};
}

void extend(X509* certificate, X509* issuer, int kind, const QByteArray& value) {
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    const std::unique_ptr<X509_EXTENSION, Free> extension(
        X509V3_EXT_conf_nid(nullptr, &context, kind, value.constData()));
    if (!extension || X509_add_ext(certificate, extension.get(), -1) != 1)
        throw std::runtime_error("no certificate extension");
}

Certificate newCertificate(EVP_PKEY* key, const QByteArray& name) {
    static std::atomic<long> serial = 1;
    Certificate certificate(X509_new());
    X509_set_version(certificate.get(), 2);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), serial++);
    X509_set_pubkey(certificate.get(), key);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_UTF8,
                               reinterpret_cast<const unsigned char*>(name.constData()), -1, -1, 0);
    return certificate;
}

void setValidity(X509* certificate, long from, long to) {
    X509_gmtime_adj(X509_getm_notBefore(certificate), from);
    X509_gmtime_adj(X509_getm_notAfter(certificate), to);
}

void sign(X509* certificate, X509* issuer, EVP_PKEY* key) {
    X509_set_issuer_name(certificate, X509_get_subject_name(issuer));
    if (X509_sign(certificate, key, EVP_sha256()) == 0) throw std::runtime_error("no signature");
}

// Every authority of a test has a name of its own, as those of the world have.
QByteArray nextAuthorityName() {
    static std::atomic<int> number = 1;
    return "Authority of a test, no. " + QByteArray::number(number++);
}

QByteArray alternativeNames(const QStringList& names) {
    QStringList entries;
    for (const QString& name : names)
        entries += (QHostAddress(name).isNull() ? QStringLiteral("DNS:") : QStringLiteral("IP:")) + name;
    return entries.join(QLatin1Char(',')).toUtf8();
}

}  // namespace

struct CertificateAuthority::Keys {
    Key key = newKey();
    Certificate certificate = newCertificate(key.get(), nextAuthorityName());
};

CertificateAuthority::CertificateAuthority() : keys_(std::make_unique<Keys>()) {
    X509* certificate = keys_->certificate.get();
    setValidity(certificate, -2 * day, 2 * day);
    extend(certificate, certificate, NID_basic_constraints, "critical,CA:TRUE");
    extend(certificate, certificate, NID_key_usage, "critical,keyCertSign");
    sign(certificate, certificate, keys_->key.get());
}

CertificateAuthority::~CertificateAuthority() = default;

QSslCertificate CertificateAuthority::certificate() const {
    return QSslCertificate(pem([&](BIO* bio) { PEM_write_bio_X509(bio, keys_->certificate.get()); }));
}

ServerIdentity CertificateAuthority::issue(const QStringList& names, Validity validity) const {
    const Key key = newKey();
    const Certificate certificate = newCertificate(key.get(), names.constFirst().toUtf8());
    switch (validity) {
        case Validity::now: setValidity(certificate.get(), -day, day); break;
        case Validity::past: setValidity(certificate.get(), -2 * day, -day); break;
        case Validity::future: setValidity(certificate.get(), day, 2 * day); break;
    }
    extend(certificate.get(), keys_->certificate.get(), NID_subject_alt_name, alternativeNames(names));
    sign(certificate.get(), keys_->certificate.get(), keys_->key.get());
    const QByteArray keyText = pem(
        [&](BIO* bio) { PEM_write_bio_PrivateKey(bio, key.get(), nullptr, nullptr, 0, nullptr, nullptr); });
    return {QSslCertificate(pem([&](BIO* bio) { PEM_write_bio_X509(bio, certificate.get()); })),
            QSslKey(keyText, QSsl::Ec)};
}

}  // namespace orlix::test
