#include "core/script/runtime/value_text.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include "core/script/numeric/number_text.h"
#include "core/script/runtime/dictionary.h"

namespace tavrel::core::script {

namespace {

// An object on the way from the value down to where the walk is, with what comes next there.
struct Level {
    std::uint32_t object = 0;
    std::size_t next = 0;  // of its parts: items, and before each the key that it may have
};

// The way down. A long one is looked up by marks, one for each object of the heap.
class Path {
public:
    explicit Path(const Heap& heap) : objectCount(heap.objects.size()) {}

    [[nodiscard]] bool Empty() const { return levels.empty(); }
    [[nodiscard]] Level& Last() { return levels.back(); }

    [[nodiscard]] bool Holds(std::uint32_t object) const {
        if (!marks.empty()) return marks[object];
        return std::any_of(levels.begin(), levels.end(), [&](const Level& level) { return level.object == object; });
    }

    void Enter(std::uint32_t object) {
        levels.push_back({object, 0});
        if (!marks.empty()) {
            marks[object] = true;
        } else if (levels.size() > MostUnmarked) {
            marks.resize(objectCount);
            for (const Level& level : levels) marks[level.object] = true;
        }
    }

    void Leave() {
        if (!marks.empty()) marks[levels.back().object] = false;
        levels.pop_back();
    }

private:
    static constexpr std::size_t MostUnmarked = 32;

    std::size_t objectCount;
    std::vector<Level> levels;
    std::vector<bool> marks;
};

class TextWriter {
public:
    TextWriter(const Heap& values, Heap* unsettled, std::uint64_t limit, std::string& text)
        : heap(values), toSettle(unsettled), path(values), most(limit), out(text) {}

    [[nodiscard]] bool Write(const Value& value) {
        if (!Begin(value)) return false;
        while (!path.Empty()) {
            if (!Advance()) return false;
        }
        return true;
    }

private:
    [[nodiscard]] bool Put(std::string_view text) {
        if (out.size() > most || text.size() > most - out.size()) return false;
        out += text;
        return true;
    }

    // A whole value, or the beginning of a container, which is then the last on the path.
    bool Begin(const Value& value) {
        switch (value.kind) {
            case Kind::Nothing: return Put("nada");
            case Kind::Int:
            case Kind::Enum: return Put(IntegerToText(value.word));
            case Kind::Real: return Put(RealToText(value.Real()));
            case Kind::Bool: return Put(value.Bool() ? "verdadeiro" : "falso");
            case Kind::Text: return Put(heap.At(value).text);
            case Kind::Vec2: return PutComponents("vetor2(", value);
            case Kind::Vec3: return PutComponents("vetor3(", value);
            case Kind::Color: return PutComponents("cor(", value);
            case Kind::Object: return PutHandle("objeto(", value);
            case Kind::Body: return PutHandle("corpo(", value);
            case Kind::Sound: return PutHandle("som(", value);
            case Kind::List:
            case Kind::Dict: return Enter("[", value);
            case Kind::Record: return Enter("{", value);
            case Kind::Unknown:
            case Kind::Space: break;
        }
        return Put("?");
    }

    bool PutComponents(const char* opening, const Value& value) {
        std::string text = opening;
        for (int i = 0; i < ComponentCount(value.kind); ++i) {
            if (i > 0) text += ", ";
            text += RealToText(value.components[i]);
        }
        return Put(text + ")");
    }

    bool PutHandle(const char* opening, const Value& value) {
        return Put(opening + IntegerToText(value.Handle()) + ")");
    }

    bool Enter(std::string_view opening, const Value& value) {
        const std::uint32_t object = value.ObjectIndex();
        if (path.Holds(object)) return Put("...");
        if (toSettle != nullptr && value.kind == Kind::Dict) Settle(*toSettle, object);
        path.Enter(object);
        return Put(opening);
    }

    // The next part of the last container on the path, or its end.
    bool Advance() {
        Level& level = path.Last();
        const HeapObject& object = heap.objects[level.object];
        const std::size_t each = object.kind == Kind::Dict ? 2 : 1;
        const std::size_t part = level.next++;
        if (part == each * object.items.size()) {
            path.Leave();
            return Put(object.kind == Kind::Record ? "}" : "]");
        }
        const bool first = part % each == 0;
        if (part > 0 && !Put(first ? ", " : ": ")) return false;
        const ValueVector& values = object.kind == Kind::Dict && first ? object.keys : object.items;
        return Begin(values[part / each]);
    }

    const Heap& heap;
    Heap* toSettle;  // the same heap, or null when it may not change
    Path path;
    std::uint64_t most;
    std::string& out;
};

}  // namespace

bool AppendValueText(Heap& heap, const Value& value, std::uint64_t limit, std::string& out) {
    return TextWriter(heap, &heap, limit, out).Write(value);
}

std::string ValueToText(const Heap& heap, const Value& value) {
    std::string text;
    static_cast<void>(TextWriter(heap, nullptr, heap.limit, text).Write(value));
    return text;
}

}  // namespace tavrel::core::script
