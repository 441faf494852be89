// Few members are compared with one another; many are sorted by key, so that repeated ones stand side by side. The last
// value of a key moves to the key's first place, and the gaps close in one pass from front to back.
#include "core/json_members.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

namespace tavrel::core {

namespace {

bool AllDiffer(const std::vector<JsonMember>& members) {
    for (std::size_t i = 1; i < members.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (members[i].key == members[j].key) return false;
        }
    }
    return true;
}

// The members' places, those of one key side by side and in their order. Keys are told apart by hash and only then by
// bytes; a sort, unlike a hash table, stays quick when the keys were chosen to collide.
std::vector<std::size_t> PlacesByKey(const std::vector<JsonMember>& members) {
    std::vector<std::pair<std::size_t, std::size_t>> sorted;  // hash and place
    sorted.reserve(members.size());
    for (const JsonMember& member : members) sorted.emplace_back(std::hash<std::string>{}(member.key), sorted.size());
    std::sort(sorted.begin(), sorted.end(), [&](const auto& a, const auto& b) {
        if (a.first != b.first) return a.first < b.first;
        const int order = members[a.second].key.compare(members[b.second].key);
        return order != 0 ? order < 0 : a.second < b.second;
    });
    std::vector<std::size_t> places;
    places.reserve(sorted.size());
    for (const auto& entry : sorted) places.push_back(entry.second);
    return places;
}

}  // namespace

bool UniteMembers(std::vector<JsonMember>& members, std::size_t limit) {
    constexpr std::size_t MaxCompared = 16;
    if (members.size() <= std::min(MaxCompared, limit) && AllDiffer(members)) return true;
    std::vector<bool> repeats(members.size());
    std::size_t first = members.size();
    for (const std::size_t place : PlacesByKey(members)) {
        if (first == members.size() || members[first].key != members[place].key) {
            first = place;
        } else {
            members[first].value = std::move(members[place].value);
            repeats[place] = true;
        }
    }
    std::size_t kept = 0;
    for (std::size_t place = 0; place < members.size(); ++place) {
        if (kept == limit) return false;
        if (repeats[place]) continue;
        if (kept != place) members[kept] = std::move(members[place]);
        ++kept;
    }
    members.erase(members.begin() + static_cast<std::ptrdiff_t>(kept), members.end());
    return true;
}

}  // namespace tavrel::core
