// The program as one flat run of bytes, which is hashed whole. What is written, and in which order, is the identity: a
// field that is added, left out or moved here changes every digest. Numbers are written byte by byte, low byte first;
// counts and texts carry their sizes, so that no two programs give the same bytes.
#include "core/script/program/program_digest.h"

#include <string_view>
#include <vector>

namespace tavrel::core::script {

namespace {

constexpr std::uint32_t FormatVersion = 1;

// The growing byte buffer under the hash.
class Stream {
public:
    void Byte(std::uint8_t value) { bytes.push_back(value); }

    void U32(std::uint32_t value) {
        for (int shift = 0; shift < 32; shift += 8) Byte(static_cast<std::uint8_t>(value >> shift));
    }

    void I32(std::int32_t value) { U32(static_cast<std::uint32_t>(value)); }

    // An index by its number, -1 for none.
    template <class Tag>
    void Id(Index<Tag> index) {
        I32(index.value);
    }

    void U64(std::uint64_t value) {
        for (int shift = 0; shift < 64; shift += 8) Byte(static_cast<std::uint8_t>(value >> shift));
    }

    void Count(std::size_t value) { U32(static_cast<std::uint32_t>(value)); }

    void Text(std::string_view text) {
        Count(text.size());
        bytes.insert(bytes.end(), text.begin(), text.end());
    }

    // Ten bytes an instruction; one growth for the whole run, since code is most of a program.
    void Code(const std::vector<Instruction>& code) {
        Count(code.size());
        std::size_t at = bytes.size();
        bytes.resize(at + code.size() * 10);
        for (const Instruction& instruction : code) {
            std::uint8_t* out = bytes.data() + at;
            out[0] = instruction.op;
            out[1] = instruction.a;
            for (int i = 0; i < 4; ++i) {
                out[2 + i] = static_cast<std::uint8_t>(std::uint32_t{instruction.b} >> (8 * i));
                out[6 + i] = static_cast<std::uint8_t>(instruction.c >> (8 * i));
            }
            at += 10;
        }
    }

    [[nodiscard]] Digest Hash() const { return HashSha256(bytes.data(), bytes.size()); }

private:
    std::vector<std::uint8_t> bytes;
};

void AddFunctions(Stream& stream, const Program& program) {
    stream.Count(program.functions.size());
    for (const Function& function : program.functions) {
        stream.Text(function.name);
        stream.I32(function.params);
        stream.I32(function.locals);
        stream.Id(function.returnType);
        stream.Code(function.code);
    }
}

void AddPools(Stream& stream, const Program& program) {
    stream.Count(program.integers.size());
    for (std::int64_t value : program.integers) stream.U64(static_cast<std::uint64_t>(value));
    stream.Count(program.texts.size());
    for (const std::string& text : program.texts) stream.Text(text);
}

void AddGlobals(Stream& stream, const Program& program) {
    stream.Count(program.globals.size());
    for (const GlobalInfo& global : program.globals) {
        stream.Text(global.name);
        stream.Id(global.type);
        stream.Byte(static_cast<std::uint8_t>(global.category));
    }
}

void AddTypes(Stream& stream, const Program& program) {
    stream.Count(program.records.size());
    for (const RecordInfo& record : program.records) {
        stream.Text(record.name);
        stream.Count(record.fieldNames.size());
        for (std::size_t field = 0; field < record.fieldNames.size(); ++field) {
            stream.Text(record.fieldNames[field]);
            stream.Id(record.fieldTypes[field]);
        }
    }
    stream.Count(program.enums.size());
    for (const EnumInfo& enumeration : program.enums) {
        stream.Text(enumeration.name);
        stream.Count(enumeration.members.size());
        for (const std::string& member : enumeration.members) stream.Text(member);
    }
}

void AddActions(Stream& stream, const Program& program) {
    stream.Count(program.actions.size());
    for (const ActionInfo& action : program.actions) {
        stream.Text(action.name);
        stream.Count(action.bindings.size());
        for (const Binding& binding : action.bindings) {
            stream.Text(binding.source);
            stream.Text(binding.code);
            stream.Byte(binding.negative ? 1 : 0);
        }
    }
}

void AddBehaviours(Stream& stream, const Program& program) {
    stream.Count(program.behaviours.size());
    for (const BehaviourInfo& behaviour : program.behaviours) {
        stream.Text(behaviour.name);
        stream.Count(behaviour.fieldNames.size());
        for (std::size_t field = 0; field < behaviour.fieldNames.size(); ++field) {
            stream.Text(behaviour.fieldNames[field]);
            stream.Id(behaviour.fieldTypes[field]);
            stream.Byte(static_cast<std::uint8_t>(behaviour.fieldCategories[field]));
        }
        for (FunctionId hook : behaviour.hooks) stream.Id(hook);
    }
}

// The places from 0 to `count` at which `isPublished` holds, ascending.
template <class Test>
std::vector<std::size_t> Published(std::size_t count, Test isPublished) {
    std::vector<std::size_t> published;
    for (std::size_t i = 0; i < count; ++i) {
        if (isPublished(i)) published.push_back(i);
    }
    return published;
}

// A section of its own at the end, left out when nothing is published: such a program has nothing to tell here.
void AddPublished(Stream& stream, const Program& program) {
    const std::vector<std::size_t> globals =
        Published(program.globals.size(), [&](std::size_t i) { return program.globals[i].published; });
    std::vector<std::vector<std::size_t>> fields;
    bool any = !globals.empty();
    for (const BehaviourInfo& behaviour : program.behaviours) {
        const std::vector<bool>& flags = behaviour.fieldPublished;
        fields.push_back(Published(flags.size(), [&](std::size_t i) -> bool { return flags[i]; }));
        any = any || !fields.back().empty();
    }
    if (!any) return;

    stream.Text("publico");
    stream.Count(globals.size());
    for (std::size_t global : globals) stream.Count(global);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const BehaviourInfo& behaviour = program.behaviours[i];
        stream.Count(fields[i].size());
        if (fields[i].empty()) continue;
        for (std::size_t field : fields[i]) {
            stream.Count(field);
            stream.Byte(behaviour.fieldPrivate[field] ? 1 : 0);
        }
        stream.I32(behaviour.ownerField + 1);
    }
}

}  // namespace

Digest DigestOf(const Program& program) {
    Stream stream;
    stream.U32(FormatVersion);
    stream.Text(program.name);
    stream.Text(program.progressKey);
    AddFunctions(stream, program);
    AddPools(stream, program);
    AddGlobals(stream, program);
    AddTypes(stream, program);
    AddActions(stream, program);
    AddBehaviours(stream, program);
    for (FunctionId hook : program.hooks) stream.Id(hook);
    stream.Id(program.initializer);
    AddPublished(stream, program);
    return stream.Hash();
}

}  // namespace tavrel::core::script
