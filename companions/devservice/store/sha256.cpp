#include "companions/devservice/store/sha256.h"

#include <algorithm>
#include <array>

namespace ov::devservice {
namespace {

constexpr std::size_t digest_bytes = 32;

// Opened once and kept for the life of the process.
BCRYPT_ALG_HANDLE algorithm() noexcept {
    static const BCRYPT_ALG_HANDLE handle = [] {
        BCRYPT_ALG_HANDLE opened = nullptr;
        return BCRYPT_SUCCESS(BCryptOpenAlgorithmProvider(&opened, BCRYPT_SHA256_ALGORITHM, nullptr, 0))
                   ? opened
                   : nullptr;
    }();
    return handle;
}

}  // namespace

sha256::sha256() noexcept {
    good_ = algorithm() != nullptr &&
            BCRYPT_SUCCESS(BCryptCreateHash(algorithm(), &hash_, nullptr, 0, nullptr, 0, 0));
}

sha256::~sha256() {
    if (hash_ != nullptr) {
        BCryptDestroyHash(hash_);
    }
}

void sha256::add(const void* bytes, std::size_t size_bytes) noexcept {
    if (good_ && size_bytes != 0) {
        auto* data = const_cast<PUCHAR>(static_cast<const UCHAR*>(bytes));
        good_ = BCRYPT_SUCCESS(BCryptHashData(hash_, data, static_cast<ULONG>(size_bytes), 0));
    }
}

std::string sha256::finish() {
    std::array<UCHAR, digest_bytes> digest{};
    if (!good_ || !BCRYPT_SUCCESS(BCryptFinishHash(hash_, digest.data(), digest_bytes, 0))) {
        return {};
    }
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const UCHAR byte : digest) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

bool is_digest(const std::string& text) noexcept {
    return text.size() == 2 * digest_bytes && std::all_of(text.begin(), text.end(), [](char c) {
               return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
           });
}

}  // namespace ov::devservice
