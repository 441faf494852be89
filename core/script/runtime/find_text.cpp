#include "core/script/runtime/find_text.h"

#include <algorithm>
#include <cstring>

namespace tavrel::core::script {

namespace {

// Up to this length the library's search, which may look at each byte that many times, is the faster one.
constexpr std::size_t ShortLength = 32;

// The greatest suffix of a text in the order of bytes, and its period.
struct Suffix {
    std::size_t start = 0;
    std::size_t period = 1;
};

Suffix GreatestSuffix(std::string_view text, bool reversed) {
    Suffix best;
    std::size_t other = 1;   // start of the suffix that is compared with the best so far
    std::size_t common = 0;  // how many bytes of the two agreed in the present period
    while (other + common < text.size()) {
        const auto a = static_cast<unsigned char>(text[other + common]);
        const auto b = static_cast<unsigned char>(text[best.start + common]);
        if (a == b) {
            if (++common == best.period) {
                other += best.period;
                common = 0;
            }
        } else if ((a < b) != reversed) {
            other += common + 1;
            common = 0;
            best.period = other - best.start;
        } else {
            best = {other, 1};
            ++other;
            common = 0;
        }
    }
    return best;
}

// The two-way search of Crochemore and Perrin. The wanted text is cut where no shorter period crosses the cut: what
// stands behind the cut is compared first, forward, then what stands before it. Either mismatch says how far the window
// may move; for a periodic text, what is known to agree after a move is not compared again.
std::size_t FindTwoWay(std::string_view text, std::string_view wanted) {
    const Suffix forward = GreatestSuffix(wanted, false);
    const Suffix backward = GreatestSuffix(wanted, true);
    const Suffix& later = forward.start > backward.start ? forward : backward;
    const std::size_t cut = later.start;
    const bool periodic = std::memcmp(wanted.data(), wanted.data() + later.period, cut) == 0;
    const std::size_t period = periodic ? later.period : std::max(cut, wanted.size() - cut) + 1;
    std::size_t known = 0;  // leading bytes of the window that agree
    for (std::size_t at = 0; at + wanted.size() <= text.size();) {
        const char* const window = text.data() + at;
        std::size_t end = std::max(cut, known);
        while (end < wanted.size() && wanted[end] == window[end]) ++end;
        if (end < wanted.size()) {
            at += end - cut + 1;
            known = 0;
            continue;
        }
        std::size_t begin = cut;
        while (begin > known && wanted[begin - 1] == window[begin - 1]) --begin;
        if (begin <= known) return at;
        at += period;
        known = periodic ? wanted.size() - period : 0;
    }
    return std::string_view::npos;
}

}  // namespace

std::size_t FindText(std::string_view text, std::string_view wanted, std::size_t from) {
    if (wanted.size() <= ShortLength) return text.find(wanted, from);
    const std::size_t at = FindTwoWay(text.substr(from), wanted);
    return at == std::string_view::npos ? at : from + at;
}

}  // namespace tavrel::core::script
