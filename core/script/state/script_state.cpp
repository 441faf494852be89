// Walks down from each global, once for every way that leads to a value, and hands what it meets to the writer. The
// path of the value at hand is one text, to which each step down appends and which it cuts back on its way up; the
// nesting is bounded, so plain recursion serves.
//
// Values that lists share are written once for each way to them. A walk that has written the whole heap and a good deal
// more asks WalkWeights how much there is to come, and stops only where the rest would take minutes.
#include "core/script/state/script_state.h"

#include <array>
#include <cstdint>
#include <memory>

#include "core/script/state/walk_weight.h"

namespace tavrel::core::script {

namespace {

constexpr std::uint32_t StateFormat = 1;
// So many values beyond those of the heap are written without a question.
constexpr std::uint64_t UnaskedValues = std::uint64_t{1} << 20U;
// Once it has been asked, what all walks of one state may write together: hashed and listed in two or three minutes,
// and in ten where they are colours, of four numbers each.
constexpr std::uint64_t MaxValues = std::uint64_t{1} << 30U;

constexpr std::array<const char*, 3> PlaneNames{".x", ".z", ""};
constexpr std::array<const char*, 3> SpaceNames{".x", ".y", ".z"};
constexpr std::array<const char*, 4> ColorNames{".r", ".g", ".b", ".a"};

// The walk over values. `path` names the value at hand; each step down appends to it and cuts it back.
class StateWriter {
public:
    StateWriter(CanonicalWriter& givenOut, const Program& givenProgram, const Heap& givenHeap)
        : out(givenOut),
          program(givenProgram),
          heap(givenHeap),
          left(UnaskedValues + givenHeap.bytes / Heap::ItemCost) {}

    void Write(const std::string& name, const Value& value) {
        if (refused) return;
        path = name;
        root = value;
        rootNameBytes = name.size();
        if (weights == nullptr || Admit()) WriteAt(value, 0);
    }

private:
    void WriteAt(const Value& value, int depth);
    void WriteText(const std::string& text);
    void WriteContainer(const Value& value, int depth);
    void WriteComponents(const Value& value, const char* const* names, int count);
    [[nodiscard]] bool Spend(std::uint64_t values);
    [[nodiscard]] bool Admit();
    void Refuse();
    [[nodiscard]] std::string Label(const HeapObject& record, std::size_t field) const;

    CanonicalWriter& out;
    const Program& program;
    const Heap& heap;
    std::uint64_t left;                    // values that may still be written unasked
    std::unique_ptr<WalkWeights> weights;  // once `left` was spent
    std::uint64_t admitted = 0;            // values of the roots that were asked about
    bool refused = false;
    Value root{};  // where the walk at hand began; the caller holds the reference
    std::size_t rootNameBytes = 0;
    std::string path;
};

void StateWriter::WriteAt(const Value& value, int depth) {
    if (!Spend(1 + path.size() / PathBytesPerValue)) return;
    if (depth > MaxStateDepth) return out.Text(path.c_str(), "<profundo>");
    switch (value.kind) {
        case Kind::Int:
        case Kind::Enum: return out.I64(path.c_str(), value.Int());
        case Kind::Real: return out.Float(path.c_str(), value.Real());
        case Kind::Bool: return out.Bool(path.c_str(), value.Bool());
        case Kind::Text: return WriteText(heap.At(value).text);
        case Kind::Vec2: return WriteComponents(value, PlaneNames.data(), 2);
        case Kind::Vec3: return WriteComponents(value, SpaceNames.data(), 3);
        case Kind::Color: return WriteComponents(value, ColorNames.data(), 4);
        case Kind::Object:
        case Kind::Body:
        case Kind::Sound: return out.U32(path.c_str(), value.Handle());
        case Kind::List:
        case Kind::Dict:
        case Kind::Record: return WriteContainer(value, depth);
        case Kind::Unknown:
        case Kind::Nothing:
        case Kind::Space: break;
    }
    out.U8(path.c_str(), 0);
}

bool StateWriter::Spend(std::uint64_t values) {
    if (refused) return false;
    if (weights != nullptr) return true;
    if (values <= left) {
        left -= values;
        return true;
    }
    weights = std::make_unique<WalkWeights>(program, heap);
    return Admit();
}

// Whether the walk from this root may go on to its end, together with those admitted before it.
bool StateWriter::Admit() {
    admitted += weights->Of(root, rootNameBytes);
    if (admitted <= MaxValues) return true;
    Refuse();
    return false;
}

void StateWriter::Refuse() {
    refused = true;
    if (out.failure.empty()) out.failure = "as mesmas listas ou textos aparecem nele vezes demais";
}

void StateWriter::WriteText(const std::string& text) {
    if (Spend(text.size() / TextBytesPerValue)) out.Text(path.c_str(), text);
}

void StateWriter::WriteComponents(const Value& value, const char* const* names, int count) {
    const std::size_t length = path.size();
    for (int i = 0; i < count; ++i) {
        path += names[i];
        out.Float(path.c_str(), value.components[i]);
        path.resize(length);
    }
}

void StateWriter::WriteContainer(const Value& value, int depth) {
    const HeapObject& object = heap.At(value);
    const std::size_t length = path.size();
    if (value.kind != Kind::Record) {
        path += ".n";
        out.U32(path.c_str(), static_cast<std::uint32_t>(object.items.size()));
        path.resize(length);
    }
    for (std::size_t i = 0; i < object.items.size(); ++i) {
        if (refused) return;
        if (value.kind == Kind::Record) {
            path.append(".").append(Label(object, i));
        } else {
            path.append("[").append(std::to_string(i)).append("]");
        }
        if (value.kind == Kind::Dict) {
            const std::size_t entry = path.size();
            path.append(".chave");
            WriteAt(object.keys[i], depth + 1);
            path.resize(entry);
        }
        WriteAt(object.items[i], depth + 1);
        path.resize(length);
    }
}

std::string StateWriter::Label(const HeapObject& record, std::size_t field) const {
    const std::string* name = FieldName(program, record, field);
    return name != nullptr ? *name : std::to_string(field);
}

}  // namespace

void WriteScriptState(const Vm& vm, CanonicalWriter& out, const char* section) {
    const Program& program = *vm.program;
    if (section != nullptr) out.Section(section);
    out.U32("formato", StateFormat);
    out.Text("modulo", program.name);
    out.Text("programa", ToHex(program.digest));
    out.U64("aleatorio_estado", vm.randomState);
    out.U64("aleatorio_incremento", vm.randomIncrement);
    StateWriter writer(out, program, vm.heap);
    for (std::size_t i = 0; i < program.globals.size() && i < vm.globals.size(); ++i) {
        if (program.globals[i].category != GlobalCategory::State) continue;
        writer.Write(program.globals[i].name, vm.globals[i]);
    }
}

void WriteScriptValue(CanonicalWriter& out, const Program& program, const Heap& heap, const std::string& path,
                      const Value& value) {
    StateWriter(out, program, heap).Write(path, value);
}

}  // namespace tavrel::core::script
