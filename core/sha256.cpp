#include "core/sha256.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>

#include "core/sha256_compress.h"

namespace tavrel::core {

namespace {

constexpr std::size_t BlockSize = 64;
constexpr std::size_t LengthOffset = 56;  // where the length stands in the last block

constexpr ChainingWords InitialState = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                        0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};

std::uint32_t LoadBigEndian(const unsigned char* bytes) {
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 | bytes[3];
}

// Round t, whose message word and constant come added up. Only `d` and `h` change: the caller turns the names instead
// of moving eight variables.
inline void Round(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t& d, std::uint32_t e, std::uint32_t f,
                  std::uint32_t g, std::uint32_t& h, std::uint32_t wordAndConstant) {
    const std::uint32_t sum1 = std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25);
    const std::uint32_t choice = g ^ (e & (f ^ g));
    const std::uint32_t sum0 = std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22);
    const std::uint32_t majority = (a & b) | (c & (a | b));
    h += sum1 + choice + wordAndConstant;
    d += h;
    h += sum0 + majority;
}

void ExtendMessage(std::array<std::uint32_t, 64>& words, const unsigned char* block) {
    for (std::size_t t = 0; t < 16; ++t) words[t] = LoadBigEndian(block + 4 * t);
    for (std::size_t t = 16; t < 64; ++t) {
        const std::uint32_t near = words[t - 2];
        const std::uint32_t far = words[t - 15];
        const std::uint32_t sigma1 = std::rotr(near, 17) ^ std::rotr(near, 19) ^ (near >> 10);
        const std::uint32_t sigma0 = std::rotr(far, 7) ^ std::rotr(far, 18) ^ (far >> 3);
        words[t] = sigma1 + words[t - 7] + sigma0 + words[t - 16];
    }
}

void CompressBlock(ChainingWords& state, const unsigned char* block) {
    std::array<std::uint32_t, 64> words;
    ExtendMessage(words, block);
    auto [a, b, c, d, e, f, g, h] = state;
    for (std::size_t t = 0; t < 64; t += 8) {
        Round(a, b, c, d, e, f, g, h, words[t] + K[t]);
        Round(h, a, b, c, d, e, f, g, words[t + 1] + K[t + 1]);
        Round(g, h, a, b, c, d, e, f, words[t + 2] + K[t + 2]);
        Round(f, g, h, a, b, c, d, e, words[t + 3] + K[t + 3]);
        Round(e, f, g, h, a, b, c, d, words[t + 4] + K[t + 4]);
        Round(d, e, f, g, h, a, b, c, words[t + 5] + K[t + 5]);
        Round(c, d, e, f, g, h, a, b, words[t + 6] + K[t + 6]);
        Round(b, c, d, e, f, g, h, a, words[t + 7] + K[t + 7]);
    }
    const ChainingWords worked = {a, b, c, d, e, f, g, h};
    for (std::size_t i = 0; i < state.size(); ++i) state[i] += worked[i];
}

}  // namespace

void CompressPortable(ChainingWords& state, const unsigned char* blocks, std::uint64_t count) {
    for (; count != 0; --count, blocks += BlockSize) CompressBlock(state, blocks);
}

Sha256::Sha256(bool forcePortable) : state(InitialState), portable(forcePortable || !Accelerated()) {}

void Sha256::Compress(const unsigned char* blocks, std::uint64_t count) {
    if constexpr (HasShaNi) {
        if (!portable) {
            CompressShaNi(state, blocks, count);
            return;
        }
    }
    CompressPortable(state, blocks, count);
}

void Sha256::Update(const void* data, std::uint64_t size) {
    if (size == 0) return;  // `data` may be null then, which memcpy does not take
    const auto* bytes = static_cast<const unsigned char*>(data);
    total += size;
    if (filled != 0) {
        const std::uint64_t taken = std::min(size, BlockSize - filled);
        std::memcpy(buffer.data() + filled, bytes, static_cast<std::size_t>(taken));
        filled += taken;
        bytes += taken;
        size -= taken;
        if (filled < BlockSize) return;
        Compress(buffer.data(), 1);
        filled = 0;
    }
    const std::uint64_t blocks = size / BlockSize;
    Compress(bytes, blocks);
    filled = size % BlockSize;
    std::memcpy(buffer.data(), bytes + blocks * BlockSize, static_cast<std::size_t>(filled));
}

Digest Sha256::Finish() {
    static constexpr std::array<unsigned char, BlockSize> padding = {0x80};
    const std::uint64_t bits = total * 8;
    Update(padding.data(), (filled < LengthOffset ? LengthOffset : LengthOffset + BlockSize) - filled);
    std::array<unsigned char, 8> length{};
    for (std::size_t i = 0; i < length.size(); ++i) length[i] = static_cast<unsigned char>(bits >> (56 - 8 * i));
    Update(length.data(), length.size());
    Digest digest;
    for (std::size_t i = 0; i < digest.size(); ++i) {
        digest[i] = static_cast<unsigned char>(state[i / 4] >> (24 - 8 * (i % 4)));
    }
    return digest;
}

Digest HashSha256(const void* data, std::uint64_t size) {
    Sha256 hash(false);
    hash.Update(data, size);
    return hash.Finish();
}

std::string ToHex(const Digest& digest) {
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(2 * digest.size());
    for (const unsigned char byte : digest) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

bool Sha256Accelerated() {
    return Accelerated();
}

}  // namespace tavrel::core
