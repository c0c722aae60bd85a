#include "app/Platform.h"
#include "orch/CredentialCipher.h"
#include "sim/Rsa.h"
#include "support/Rows.h"

/// The encryption of user name and password, and the public keys that it refuses.
class CipherTest : public QObject
{
    Q_OBJECT

private slots:
    void decryptsElsewhere()
    {
        platform().clock = [] { return qint64(1700000000123); };
        const auto row = checked([this](bool oaep, const QByteArray& plain, int longest) {
            const auto encrypted = [&](const QByteArray& text) {
                return Util::TQRSAEncrypt(text.toStdString(), m_key.publicKey().toStdString(),
                                          oaep);
            };
            const auto cipher = QByteArray::fromStdString(encrypted(plain));
            QCOMPARE(m_key.decrypt(cipher, oaep).value_or(QByteArray()), plain + "\n1700000000123");
            QVERIFY(encrypted(plain) != cipher.toStdString());

            const QByteArray fits(longest - 14, 'x'); // line feed and 13 digits
            QVERIFY(!encrypted(fits).empty());
            QVERIFY(encrypted(fits + 'x').empty());
        });
        row("OAEP", true, "alice", 190);
        row("OAEP, Chinese", true, "张三", 190);
        row("PKCS#1 v1.5", false, "alice", 245);
        row("PKCS#1 v1.5, empty", false, "", 245);
    }

    void unusableKeys()
    {
        const auto row = checked([](const QByteArray& key) {
            for (const bool oaep : {false, true})
                QCOMPARE(Util::TQRSAEncrypt(std::string(60, 'x'), key.toStdString(), oaep),
                         std::string());
        });
        const QByteArray good = QByteArray::fromBase64(m_key.publicKey());
        QByteArray even = good;
        even[even.size() - 6] = char(even[even.size() - 6] & ~1); // last byte of the modulus
        const QByteArray withoutExponent = good.left(good.size() - 3);
        QByteArray flipped = good;
        flipped[20] = char(~flipped[20]); // inside the outer structure
        row("empty", "");
        row("no Base64", "!!! not a key !!!");
        row("page", "<html><body>Sign in</body></html>");
        row("bytes", QByteArray(300, '\0').toBase64());
        row("armoured",
            "-----BEGIN PUBLIC KEY-----\n" + good.toBase64() + "\n-----END PUBLIC KEY-----\n");
        row("cut short", good.left(good.size() / 2).toBase64());
        row("damaged", flipped.toBase64());
        row("even modulus", even.toBase64());
        row("exponent 1", (withoutExponent + QByteArray("\0\0\1", 3)).toBase64());
        row("even exponent", (withoutExponent + QByteArray("\1\0\2", 3)).toBase64());
        row("elliptic curve", "MFkwEwYHKoZIzj0CAQYIKoZIzj0DAQcDQgAEICfD+QqsgLmJQ+F36ZIWQmuPSh6L+M3y"
                              "vAJ9GYhlUxVCHPoqDJD1J/CRPz8b62IsYzf2UuHOSjse8nZQLExoRQ==");
        row("edwards curve", "MCowBQYDK2VwAyEAEVI/LrQw9oor3ujsq5L+kZ56ZiLvpqNvuJSAojjf0MY=");
        row("too small", "MFwwDQYJKoZIhvcNAQEBBQADSwAwSAJBALJOMLUPMFKm/N6eyvd+pf/ItV00Yc/4yV6XbnVI"
                         "7sA66OTUqk7/GHvXpi2QA6YqtYuXDdz322fl7XOxPJ3DGdsCAwEAAQ==");
        row("megabytes", QByteArray(8 * 1024 * 1024, 'A'));
    }

private:
    sim::RsaKey m_key;
};

QTEST_GUILESS_MAIN(CipherTest)
#include "tst_cipher.moc"
