// Bytes are gathered into blocks of 64; whole blocks of what comes in are compressed where they stand, and only the
// rest is copied. Behind the last byte come 0x80, zeros up to eight bytes before a block's end, and the length in bits.
// The routine is chosen once for each hash; both give the same words.
#include "core/sha256.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>
#include <utility>

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

// The rounds of a block are unrolled by index, so that the arrays live in registers and nothing is moved between them.
// Inlining is asked for by name: left to its own count of statements, a compiler stops half-way, at half the speed.
#define TAVREL_UNROLLED [[gnu::always_inline]] inline

// Round t: the names a to h turn by one place instead of their values. The nested rotations are the sums of FIPS 180-4
// with a rotation less to hold; in the majority, the half on b and c is the last round's on a and b.
template <std::size_t T>
TAVREL_UNROLLED void Round(ChainingWords& v, std::uint32_t wordAndConstant) {
    const std::uint32_t a = v[(64 - T) % 8], b = v[(65 - T) % 8], c = v[(66 - T) % 8];
    const std::uint32_t e = v[(68 - T) % 8], f = v[(69 - T) % 8], g = v[(70 - T) % 8];
    std::uint32_t& d = v[(67 - T) % 8];
    std::uint32_t& h = v[(71 - T) % 8];
    const std::uint32_t sum1 = std::rotr(std::rotr(std::rotr(e, 14) ^ e, 5) ^ e, 6);
    const std::uint32_t choice = g ^ (e & (f ^ g));
    h += sum1 + choice + wordAndConstant;
    d += h;
    const std::uint32_t sum0 = std::rotr(std::rotr(std::rotr(a, 9) ^ a, 11) ^ a, 2);
    const std::uint32_t majority = b ^ ((a ^ b) & (b ^ c));
    h += sum0 + majority;
}

using MessageWords = std::array<std::uint32_t, 16>;

// Word t + 16 of the message takes the place of word t, which nothing needs any more.
template <std::size_t T>
TAVREL_UNROLLED std::uint32_t ExtendWord(MessageWords& words) {
    const std::uint32_t near = words[(T + 14) % 16];
    const std::uint32_t far = words[(T + 1) % 16];
    const std::uint32_t sigma1 = std::rotr(near, 17) ^ std::rotr(near, 19) ^ (near >> 10);
    const std::uint32_t sigma0 = std::rotr(far, 7) ^ std::rotr(far, 18) ^ (far >> 3);
    return words[T] += sigma1 + words[(T + 9) % 16] + sigma0;
}

template <std::size_t... T>
TAVREL_UNROLLED void FirstRounds(ChainingWords& v, MessageWords& words, const unsigned char* block,
                                 std::index_sequence<T...>) {
    ((words[T] = LoadBigEndian(block + 4 * T), Round<T>(v, words[T] + RoundConstants[T])), ...);
}

template <std::size_t... T>
TAVREL_UNROLLED void FurtherRounds(ChainingWords& v, MessageWords& words, const std::uint32_t* constants,
                                   std::index_sequence<T...>) {
    (Round<T>(v, ExtendWord<T>(words) + constants[T]), ...);
}

#undef TAVREL_UNROLLED

void CompressBlock(ChainingWords& state, const unsigned char* block) {
    constexpr std::make_index_sequence<16> Sixteen;
    ChainingWords v = state;
    MessageWords words;
    FirstRounds(v, words, block, Sixteen);
    for (std::size_t t = 16; t < RoundConstants.size(); t += 16)
        FurtherRounds(v, words, RoundConstants.data() + t, Sixteen);
    for (std::size_t i = 0; i < state.size(); ++i) state[i] += v[i];
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
    static constexpr std::array<unsigned char, BlockSize> Padding = {0x80};
    const std::uint64_t bits = total * 8;
    Update(Padding.data(), (filled < LengthOffset ? LengthOffset : LengthOffset + BlockSize) - filled);
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
    constexpr char HexDigits[] = "0123456789abcdef";
    std::string text;
    text.reserve(2 * digest.size());
    for (const unsigned char byte : digest) {
        text += HexDigits[byte >> 4];
        text += HexDigits[byte & 15];
    }
    return text;
}

bool Sha256Accelerated() {
    return Accelerated();
}

}  // namespace tavrel::core
