#include "sim/Rsa.h"

#include <openssl/evp.h>
#include <openssl/rsa.h>
#include <openssl/x509.h>

namespace sim {

namespace {

constexpr unsigned int kBits = 2048;

using Context = std::unique_ptr<EVP_PKEY_CTX, decltype(&EVP_PKEY_CTX_free)>;

bool choosePadding(EVP_PKEY_CTX* context, bool oaep)
{
    if (!oaep)
        return EVP_PKEY_CTX_set_rsa_padding(context, RSA_PKCS1_PADDING) > 0;
    return EVP_PKEY_CTX_set_rsa_padding(context, RSA_PKCS1_OAEP_PADDING) > 0 &&
           EVP_PKEY_CTX_set_rsa_oaep_md(context, EVP_sha256()) > 0 &&
           EVP_PKEY_CTX_set_rsa_mgf1_md(context, EVP_sha256()) > 0;
}

} // namespace

struct RsaKey::Private
{
    std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key{EVP_RSA_gen(kBits), &EVP_PKEY_free};
};

RsaKey::RsaKey()
{
    // Making a key takes a noticeable fraction of a second, and one is as good as another.
    static const auto shared = std::make_shared<const Private>();
    d = shared;
}

RsaKey::~RsaKey() = default;

QByteArray RsaKey::publicKey() const
{
    unsigned char* der = nullptr;
    const int size = i2d_PUBKEY(d->key.get(), &der);
    if (size <= 0)
        return {};
    const QByteArray result = QByteArray(reinterpret_cast<char*>(der), size).toBase64();
    OPENSSL_free(der);
    return result;
}

std::optional<QByteArray> RsaKey::decrypt(const QByteArray& base64, bool oaep) const
{
    const auto cipher =
        QByteArray::fromBase64Encoding(base64, QByteArray::AbortOnBase64DecodingErrors);
    if (!cipher || cipher.decoded.toBase64() != base64)
        return {};
    const Context context(EVP_PKEY_CTX_new(d->key.get(), nullptr), &EVP_PKEY_CTX_free);
    if (!context || EVP_PKEY_decrypt_init(context.get()) <= 0 ||
        !choosePadding(context.get(), oaep))
        return {};
    const auto* input = reinterpret_cast<const unsigned char*>(cipher.decoded.constData());
    const auto inputSize = static_cast<size_t>(cipher.decoded.size());
    QByteArray plain(static_cast<int>(kBits / 8), '\0');
    auto size = static_cast<size_t>(plain.size());
    if (EVP_PKEY_decrypt(context.get(), reinterpret_cast<unsigned char*>(plain.data()), &size,
                         input, inputSize) <= 0)
        return {};
    plain.truncate(static_cast<int>(size));
    return plain;
}

} // namespace sim
