#include "orch/CredentialCipher.h"

#include "app/Platform.h"

#include <cryptopp/base64.h>
#include <cryptopp/filters.h>
#include <cryptopp/oaep.h>
#include <cryptopp/osrng.h>
#include <cryptopp/pkcspad.h>
#include <cryptopp/rsa.h>
#include <cryptopp/sha.h>

#include <QtDebug>

#include <exception>

namespace {

/// A key is an answer of a server: numbers of any size must not hold the window for minutes.
constexpr size_t kLongestKeyText = 16 * 1024;
constexpr unsigned kLargestModulusBits = 16384;
constexpr unsigned kLargestExponentBits = 64;

/// Seed of the random pool, in bytes, from the operating system.
constexpr unsigned kSeedSize = 32;

using OaepEncryptor = CryptoPP::RSAES<CryptoPP::OAEP<CryptoPP::SHA256>>::Encryptor;
using Pkcs1Encryptor = CryptoPP::RSAES<CryptoPP::PKCS1v15>::Encryptor;

/// Whether the key's numbers fit an RSA key is checked again when it is used.
bool loadKey(CryptoPP::RSA::PublicKey& key, const std::string& publicKey)
{
    if (publicKey.empty() || publicKey.size() > kLongestKeyText)
        return false;
    CryptoPP::StringSource source(publicKey, true, new CryptoPP::Base64Decoder);
    key.Load(source); // throws on anything but an RSA key in DER
    return key.GetModulus().BitCount() <= kLargestModulusBits &&
           key.GetPublicExponent().BitCount() <= kLargestExponentBits;
}

template <typename Encryptor>
std::string encryptWith(const CryptoPP::RSA::PublicKey& key, const std::string& message,
                        CryptoPP::RandomNumberGenerator& random)
{
    const Encryptor encryptor(key);
    if (message.size() > encryptor.FixedMaxPlaintextLength())
        return std::string();
    std::string cipher;
    // The filters own one another; the sink writes into the text above.
    const CryptoPP::StringSource pump(
        message, true,
        new CryptoPP::PK_EncryptorFilter(
            random, encryptor,
            new CryptoPP::Base64Encoder(new CryptoPP::StringSink(cipher), false)));
    return cipher;
}

} // namespace

std::string Util::TQRSAEncrypt(const std::string& plain, const std::string& publicKey, bool oaep)
{
    const std::string message = plain + '\n' + std::to_string(platform().now().toMSecsSinceEpoch());
    try {
        CryptoPP::AutoSeededRandomPool random(false, kSeedSize);
        CryptoPP::RSA::PublicKey key;
        if (!loadKey(key, publicKey))
            return std::string();
        return oaep ? encryptWith<OaepEncryptor>(key, message, random)
                    : encryptWith<Pkcs1Encryptor>(key, message, random);
    } catch (const std::exception& error) {
        qWarning("The credential was not encrypted: %s", error.what());
        return std::string();
    }
}
