// The compression on the processor's SHA instructions. The functions that use them carry them as their own target, so
// that nothing else of the program is compiled for a processor that may not be there.
#include "core/sha256_compress.h"

#if defined(__x86_64__)
#include <cpuid.h>
#include <immintrin.h>
#endif

namespace tavrel::core {

#if defined(__x86_64__)

namespace {

#define TAVREL_SHA_TARGET __attribute__((target("sha,ssse3,sse4.1")))

// The instructions want the chaining words as two registers, {a, b, e, f} and {c, d, g, h} from the high lane down.
struct Lanes {
    __m128i abef;
    __m128i cdgh;
};

TAVREL_SHA_TARGET inline Lanes LoadState(const ChainingWords& state) {
    const __m128i dcba = _mm_loadu_si128(reinterpret_cast<const __m128i*>(state.data()));
    const __m128i hgfe = _mm_loadu_si128(reinterpret_cast<const __m128i*>(state.data() + 4));
    const __m128i cdab = _mm_shuffle_epi32(dcba, 0xB1);
    const __m128i efgh = _mm_shuffle_epi32(hgfe, 0x1B);
    return {_mm_alignr_epi8(cdab, efgh, 8), _mm_blend_epi16(efgh, cdab, 0xF0)};
}

TAVREL_SHA_TARGET inline void StoreState(ChainingWords& state, const Lanes& lanes) {
    const __m128i feba = _mm_shuffle_epi32(lanes.abef, 0x1B);
    const __m128i dchg = _mm_shuffle_epi32(lanes.cdgh, 0xB1);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(state.data()), _mm_blend_epi16(feba, dchg, 0xF0));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(state.data() + 4), _mm_alignr_epi8(dchg, feba, 8));
}

TAVREL_SHA_TARGET inline __m128i LoadWords(const unsigned char* bytes) {
    const __m128i swap = _mm_set_epi64x(0x0c0d0e0f08090a0b, 0x0405060700010203);
    return _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)), swap);
}

TAVREL_SHA_TARGET inline void FourRounds(Lanes& lanes, __m128i words, const std::uint32_t* constants) {
    const __m128i sum = _mm_add_epi32(words, _mm_load_si128(reinterpret_cast<const __m128i*>(constants)));
    lanes.cdgh = _mm_sha256rnds2_epu32(lanes.cdgh, lanes.abef, sum);
    lanes.abef = _mm_sha256rnds2_epu32(lanes.abef, lanes.cdgh, _mm_shuffle_epi32(sum, 0x0E));
}

// Four rounds on the oldest of the last sixteen words, which then make room for the next four.
TAVREL_SHA_TARGET inline void FourRoundsAndExtend(Lanes& lanes, __m128i& oldest, __m128i second, __m128i third,
                                                  __m128i newest, const std::uint32_t* constants) {
    FourRounds(lanes, oldest, constants);
    const __m128i sevenBack = _mm_alignr_epi8(newest, third, 4);
    oldest = _mm_sha256msg2_epu32(_mm_add_epi32(_mm_sha256msg1_epu32(oldest, second), sevenBack), newest);
}

TAVREL_SHA_TARGET inline void CompressBlock(Lanes& lanes, const unsigned char* block) {
    __m128i words0 = LoadWords(block);
    __m128i words1 = LoadWords(block + 16);
    __m128i words2 = LoadWords(block + 32);
    __m128i words3 = LoadWords(block + 48);
    const std::uint32_t* constants = RoundConstants.data();
    for (int pass = 0; pass < 3; ++pass, constants += 16) {
        FourRoundsAndExtend(lanes, words0, words1, words2, words3, constants);
        FourRoundsAndExtend(lanes, words1, words2, words3, words0, constants + 4);
        FourRoundsAndExtend(lanes, words2, words3, words0, words1, constants + 8);
        FourRoundsAndExtend(lanes, words3, words0, words1, words2, constants + 12);
    }
    FourRounds(lanes, words0, constants);
    FourRounds(lanes, words1, constants + 4);
    FourRounds(lanes, words2, constants + 8);
    FourRounds(lanes, words3, constants + 12);
}

bool AskProcessor() {
    constexpr unsigned int VectorShuffles = 0x80200;  // SSSE3 and SSE4.1, leaf 1, ECX
    constexpr unsigned int ShaExtensions = 1u << 29;  // leaf 7, EBX
    unsigned int highestLeaf = 0, b = 0, c = 0, d = 0;
    __cpuid(0, highestLeaf, b, c, d);
    if (highestLeaf == 0) return false;
    unsigned int a = 0;
    __cpuid(1, a, b, c, d);
    if ((c & VectorShuffles) != VectorShuffles) return false;
    if (highestLeaf < 7) return false;
    __cpuid_count(7, 0, a, b, c, d);
    return (b & ShaExtensions) != 0;
}

}  // namespace

TAVREL_SHA_TARGET void CompressShaNi(ChainingWords& state, const unsigned char* blocks, std::uint64_t count) {
    Lanes lanes = LoadState(state);
    for (; count != 0; --count, blocks += 64) {
        const Lanes before = lanes;
        CompressBlock(lanes, blocks);
        lanes.abef = _mm_add_epi32(lanes.abef, before.abef);
        lanes.cdgh = _mm_add_epi32(lanes.cdgh, before.cdgh);
    }
    StoreState(state, lanes);
}

#undef TAVREL_SHA_TARGET

#else

namespace {

bool AskProcessor() {
    return false;
}

}  // namespace

#endif

bool Accelerated() {
    static const bool sha = AskProcessor();
    return sha;
}

}  // namespace tavrel::core
