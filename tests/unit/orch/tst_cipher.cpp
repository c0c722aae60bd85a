#include "app/Platform.h"
#include "orch/CredentialCipher.h"
#include "sim/Rsa.h"
#include "support/Rows.h"

/// The encryption of user name and password, and the public keys that it refuses.
class CipherTest : public QObject
{
    Q_OBJECT

private slots:
    void decryptsElsewhere_data()
    {
        const auto row = columns<bool, QByteArray, int>("oaep", "plain", "longest");
        row("OAEP", true, "alice", 190);
        row("OAEP, Chinese", true, "张三", 190);
        row("PKCS#1 v1.5", false, "alice", 245);
        row("PKCS#1 v1.5, empty", false, "", 245);
    }

    void decryptsElsewhere()
    {
        QFETCH(bool, oaep);
        platform().clock = [] { return qint64(1700000000123); };
        const std::string plain = cell<QByteArray>("plain").toStdString();
        const std::string key = m_key.publicKey().toStdString();
        const auto cipher = QByteArray::fromStdString(Util::TQRSAEncrypt(plain, key, oaep));
        const std::string expected = plain + "\n1700000000123";
        QCOMPARE(m_key.decrypt(cipher, oaep).value_or(QByteArray()).toStdString(), expected);
        QVERIFY(Util::TQRSAEncrypt(plain, key, oaep) != cipher.toStdString());

        const std::string fits(size_t(cell<int>("longest") - kStampSize), 'x');
        QVERIFY(!Util::TQRSAEncrypt(fits, key, oaep).empty());
        QVERIFY(Util::TQRSAEncrypt(fits + 'x', key, oaep).empty());
    }

    void unusableKeys_data()
    {
        const auto row = columns<QByteArray>("key");
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

    void unusableKeys()
    {
        const std::string key = cell<QByteArray>("key").toStdString();
        for (const bool oaep : {false, true})
            QCOMPARE(Util::TQRSAEncrypt(std::string(60, 'x'), key, oaep), std::string());
    }

private:
    sim::RsaKey m_key;
    static constexpr int kStampSize = 14; // line feed and 13 digits
};

QTEST_GUILESS_MAIN(CipherTest)
#include "tst_cipher.moc"
