#include "core/script/state/script_state.h"

#include <array>
#include <cstdint>

namespace tavrel::core::script {

namespace {

constexpr std::uint32_t StateFormat = 1;
constexpr int MaxDepth = 64;
// A structure of shared lists can hold more values than any memory; this many beyond those of the heap are written. So
// that shared texts and names without end meet the limit as well, each such number of their bytes counts as a value.
constexpr std::uint64_t SharedValues = std::uint64_t{1} << 25U;
constexpr std::uint64_t TextBytes = 32;
constexpr std::uint64_t PathBytes = 256;

constexpr std::array<const char*, 3> PlaneNames{".x", ".z", ""};
constexpr std::array<const char*, 3> SpaceNames{".x", ".y", ".z"};
constexpr std::array<const char*, 4> ColorNames{".r", ".g", ".b", ".a"};

// The walk over values. `path` names the value at hand; each step down appends to it and cuts it back.
class StateWriter {
public:
    StateWriter(CanonicalWriter& givenOut, const Program& givenProgram, const Heap& givenHeap)
        : out(givenOut), program(givenProgram), heap(givenHeap), left(SharedValues) {
        for (const HeapObject& object : heap.objects) {
            left += object.items.size() + object.keys.size() + object.text.size() / TextBytes + 1;
        }
    }

    void Write(const std::string& name, const Value& value) {
        path = name;
        WriteAt(value, 0);
    }

private:
    void WriteAt(const Value& value, int depth);
    void WriteText(const std::string& text);
    void WriteContainer(const Value& value, int depth);
    void WriteComponents(const Value& value, const char* const* names, int count);
    [[nodiscard]] bool Spend(std::uint64_t values);
    void Refuse();
    [[nodiscard]] std::string Label(const HeapObject& record, std::size_t field) const;

    CanonicalWriter& out;
    const Program& program;
    const Heap& heap;
    std::uint64_t left;  // values that may still be written
    std::string path;
};

void StateWriter::WriteAt(const Value& value, int depth) {
    if (!Spend(1 + path.size() / PathBytes)) return;
    if (depth > MaxDepth) return out.Text(path.c_str(), "<profundo>");
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
        default: return out.U8(path.c_str(), 0);
    }
}

bool StateWriter::Spend(std::uint64_t values) {
    if (values > left) {
        left = 0;
        Refuse();
        return false;
    }
    left -= values;
    return true;
}

void StateWriter::Refuse() {
    if (out.failure.empty()) out.failure = "as mesmas listas ou textos aparecem nele vezes demais";
}

void StateWriter::WriteText(const std::string& text) {
    if (Spend(text.size() / TextBytes)) out.Text(path.c_str(), text);
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
        if (left == 0) return Refuse();
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
    if (record.record >= 0 && static_cast<std::size_t>(record.record) < program.records.size()) {
        const RecordInfo& info = program.records[static_cast<std::size_t>(record.record)];
        if (field < info.fieldNames.size()) return info.fieldNames[field];
    }
    return std::to_string(field);
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
