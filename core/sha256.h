// SHA-256 (FIPS 180-4), the only hash of the system's digests. Bytes in, 32 bytes out. Two compression routines give
// the same result, a portable one and one on the processor's SHA instructions.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace tavrel::core {

using Digest = std::array<unsigned char, 32>;

// One message: any number of Update, then one Finish, which leaves the object spent. Owns no memory.
class Sha256 {
public:
    // With `forcePortable` the portable routine serves whatever the processor offers.
    explicit Sha256(bool forcePortable);

    void Update(const void* data, std::uint64_t size);
    [[nodiscard]] Digest Finish();

private:
    void Compress(const unsigned char* blocks, std::uint64_t count);

    std::array<std::uint32_t, 8> state;
    std::array<unsigned char, 64> buffer{};
    std::uint64_t filled = 0;  // bytes waiting in the buffer, 0 to 63 between calls
    std::uint64_t total = 0;   // bytes given so far
    bool portable = true;
};

// The digest of one buffer.
[[nodiscard]] Digest HashSha256(const void* data, std::uint64_t size);

// 64 lower-case hexadecimal characters.
[[nodiscard]] std::string ToHex(const Digest& digest);

// Whether hashes run on the processor's SHA instructions here.
[[nodiscard]] bool Sha256Accelerated();

}  // namespace tavrel::core
