#include "app/Platform.h"
#include "orch/Util.h"

#include <QtTest>

#include <openssl/evp.h>
#include <openssl/rsa.h>
#include <openssl/x509.h>

#include <memory>

namespace {

using Key = std::shared_ptr<EVP_PKEY>;

Key own(EVP_PKEY* key)
{
    return Key(key, &EVP_PKEY_free);
}

QByteArray publicDer(const Key& key)
{
    unsigned char* bytes = nullptr;
    const int size = i2d_PUBKEY(key.get(), &bytes);
    const QByteArray der(reinterpret_cast<char*>(bytes), size);
    OPENSSL_free(bytes);
    return der;
}

std::string publicText(const Key& key)
{
    return publicDer(key).toBase64().toStdString();
}

/// What OpenSSL makes of the ciphertext; a null array when it refuses.
QByteArray decrypt(const Key& key, const QByteArray& cipher, bool oaep)
{
    const std::unique_ptr<EVP_PKEY_CTX, void (*)(EVP_PKEY_CTX*)> context(
        EVP_PKEY_CTX_new(key.get(), nullptr), &EVP_PKEY_CTX_free);
    EVP_PKEY_decrypt_init(context.get());
    EVP_PKEY_CTX_set_rsa_padding(context.get(), oaep ? RSA_PKCS1_OAEP_PADDING : RSA_PKCS1_PADDING);
    if (oaep) {
        EVP_PKEY_CTX_set_rsa_oaep_md(context.get(), EVP_sha256());
        EVP_PKEY_CTX_set_rsa_mgf1_md(context.get(), EVP_sha256());
    }
    QByteArray plain(1024, '\0');
    auto size = static_cast<size_t>(plain.size());
    const int ok = EVP_PKEY_decrypt(context.get(), reinterpret_cast<unsigned char*>(plain.data()),
                                    &size, reinterpret_cast<const unsigned char*>(cipher.data()),
                                    static_cast<size_t>(cipher.size()));
    return ok == 1 ? plain.left(static_cast<int>(size)) : QByteArray();
}

} // namespace

class CipherTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        platform().clock = [] { return kNow; };
        m_key = own(EVP_RSA_gen(2048));
        QVERIFY(m_key);
    }

    void cleanupTestCase() { platform() = Platform(); }
    void decryptsElsewhere_data()
    {
        QTest::addColumn<bool>("oaep");
        QTest::addColumn<QByteArray>("plain");
        for (const bool oaep : {false, true}) {
            const char* scheme = oaep ? "OAEP" : "PKCS#1 v1.5";
            QTest::addRow("%s name", scheme) << oaep << QByteArray("alice");
            QTest::addRow("%s Chinese", scheme) << oaep << QByteArray("\xe5\xbc\xa0\xe4\xb8\x89");
            QTest::addRow("%s empty", scheme) << oaep << QByteArray("");
        }
    }

    void decryptsElsewhere()
    {
        QFETCH(bool, oaep);
        QFETCH(QByteArray, plain);
        const std::string key = publicText(m_key);
        const auto text =
            QByteArray::fromStdString(Util::TQRSAEncrypt(plain.toStdString(), key, oaep));
        QVERIFY2(!text.contains('\n'), "Base64 on one line");
        const auto cipher =
            QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
        QVERIFY(cipher);
        QCOMPARE(decrypt(m_key, *cipher, oaep), plain + "\n1700000000123");
        QVERIFY(Util::TQRSAEncrypt(plain.toStdString(), key, oaep) != text.toStdString());
    }

    void longestMessage_data()
    {
        QTest::addColumn<bool>("oaep");
        QTest::addColumn<int>("longest");
        QTest::newRow("OAEP") << true << 190;
        QTest::newRow("PKCS#1 v1.5") << false << 245;
    }

    void longestMessage()
    {
        QFETCH(bool, oaep);
        QFETCH(int, longest);
        const std::string key = publicText(m_key);
        const std::string fits(static_cast<size_t>(longest - kStampSize), 'x');
        QVERIFY(!Util::TQRSAEncrypt(fits, key, oaep).empty());
        QVERIFY(Util::TQRSAEncrypt(fits + 'x', key, oaep).empty());
    }

    void unusableKeys_data()
    {
        QTest::addColumn<QByteArray>("key");
        const QByteArray good = publicDer(m_key);
        QByteArray even = good;
        even[even.size() - 6] = char(even[even.size() - 6] & ~1); // last byte of the modulus
        const QByteArray withoutExponent = good.left(good.size() - 3);
        QByteArray flipped = good;
        flipped[20] = char(~flipped[20]); // inside the outer structure
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("no Base64") << QByteArray("!!! not a key !!!");
        QTest::newRow("page") << QByteArray("<html><body>Sign in</body></html>");
        QTest::newRow("bytes") << QByteArray(300, '\0').toBase64();
        QTest::newRow("armoured") << "-----BEGIN PUBLIC KEY-----\n" + good.toBase64() +
                                         "\n-----END PUBLIC KEY-----\n";
        QTest::newRow("cut short") << good.left(good.size() / 2).toBase64();
        QTest::newRow("damaged") << flipped.toBase64();
        QTest::newRow("even modulus") << even.toBase64();
        QTest::newRow("exponent 1") << (withoutExponent + QByteArray("\0\0\1", 3)).toBase64();
        QTest::newRow("even exponent") << (withoutExponent + QByteArray("\1\0\2", 3)).toBase64();
        QTest::newRow("elliptic curve") << publicDer(own(EVP_EC_gen("P-256"))).toBase64();
        QTest::newRow("edwards curve")
            << publicDer(own(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"))).toBase64();
        QTest::newRow("too small for anything") << publicDer(own(EVP_RSA_gen(512))).toBase64();
        QTest::newRow("megabytes") << QByteArray(8 * 1024 * 1024, 'A');
    }

    void unusableKeys()
    {
        QFETCH(QByteArray, key);
        for (const bool oaep : {false, true}) {
            const std::string plain(60, 'x');
            QCOMPARE(Util::TQRSAEncrypt(plain, key.toStdString(), oaep), std::string());
        }
    }

private:
    Key m_key;
    static constexpr qint64 kNow = 1700000000123;
    static constexpr int kStampSize = 14; // line feed and 13 digits
};

QTEST_GUILESS_MAIN(CipherTest)
#include "tst_cipher.moc"
