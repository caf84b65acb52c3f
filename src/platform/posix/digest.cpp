#include "platform/digest.h"

#include <openssl/evp.h>

namespace platform {

struct Md5::State {
    struct Free {
        void operator()(EVP_MD_CTX* freed) const { EVP_MD_CTX_free(freed); }
    };
    std::unique_ptr<EVP_MD_CTX, Free> context{EVP_MD_CTX_new()};
};

Md5::Md5() : state(std::make_unique<State>()) {
    EVP_DigestInit_ex(state->context.get(), EVP_md5(), nullptr);
}

Md5::~Md5() = default;

void Md5::update(const void* data, std::size_t size) {
    EVP_DigestUpdate(state->context.get(), data, size);
}

std::array<std::uint8_t, 16> Md5::finish() {
    std::array<std::uint8_t, 16> digest{};
    unsigned int size = 0;
    EVP_DigestFinal_ex(state->context.get(), digest.data(), &size);
    return digest;
}

} // namespace platform
