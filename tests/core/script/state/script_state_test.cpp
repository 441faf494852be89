#include "core/script/state/script_state.h"

#include <gtest/gtest.h>

#include <span>

#include "core/script/state/walk_weight.h"
#include "tests/core/script/compiler/compile_support.h"

namespace tavrel::core::script {
namespace {

// The fields of a state, "name=text" each, behind the five of the header.
std::string Fields(const CanonicalWriter& writer) {
    std::string text;
    for (std::size_t i = 5; i < writer.fields.size(); ++i) {
        text += writer.fields[i].name + "=" + writer.fields[i].text + ";";
    }
    return text;
}

CanonicalWriter StateOf(const std::string& script) {
    const Compiled compiled = CompileScript(script);
    EXPECT_EQ(compiled.reports, "");
    Vm vm(compiled.program);
    EXPECT_TRUE(vm.Start());
    CanonicalWriter writer(true);
    WriteScriptState(vm, writer, "script");
    return writer;
}

TEST(ScriptState, HeaderThenTheGlobalsOfTheBlockEstado) {
    const Compiled compiled = CompileScript("modulo M\nestado\n    x: inteiro = 7\nfim\nvisual\n    y: inteiro\nfim\n");
    Vm vm(compiled.program);
    vm.SeedRandom(1, 0);
    ASSERT_TRUE(vm.Start());
    CanonicalWriter writer(true);
    WriteScriptState(vm, writer, nullptr);
    std::string names;
    for (const CanonicalField& field : writer.fields) names += field.name + " ";
    EXPECT_EQ(names, "formato modulo programa aleatorio_estado aleatorio_incremento x ");
    EXPECT_EQ(writer.fields[2].text, ToHex(compiled.program.digest));
    EXPECT_EQ(writer.fields[3].text, std::to_string(vm.randomState));
    EXPECT_TRUE(writer.sections.empty());
    // 4 + 4 bytes of the version, "M" and the digest as texts, two words of the generator, one integer.
    EXPECT_EQ(writer.bytes.size(), std::size_t{5 + 6 + 69 + 9 + 9 + 9});
}

TEST(ScriptState, WritesEachKindUnderItsPath) {
    const CanonicalWriter writer = StateOf(
        "modulo M\nregistro P\n    n: inteiro\n    xs: lista de logico\nfim\nenumeracao E = um, dois\n"
        "estado\n    r: real = 1.5\n    t: texto = \"oi\"\n    v: vetor2 = vetor2(1.0, 2.0)\n"
        "    w: vetor3\n    c: cor\n    o: objeto\n    l: lista de inteiro = [4, 5]\n"
        "    d: dicionario de texto para inteiro = [\"b\": 1, \"a\": 2]\n    p: P\n    q: E = dois\nfim\n");
    EXPECT_EQ(Fields(writer),
              "r=1.5 (0xcp-3);t=oi;v.x=1 (0x8p-3);v.z=2 (0x8p-2);w.x=0 (0x0p+0);w.y=0 (0x0p+0);w.z=0 (0x0p+0);"
              "c.r=255 (0xf.fp+4);c.g=255 (0xf.fp+4);c.b=255 (0xf.fp+4);c.a=255 (0xf.fp+4);o=0;"
              "l.n=2;l[0]=4;l[1]=5;d.n=2;d[0].chave=a;d[0]=2;d[1].chave=b;d[1]=1;p.n=0;p.xs.n=0;q=8589934593;");
    EXPECT_EQ(writer.failure, "");
}

// A list in a list and so on, `depth` of them, the innermost holding `last`.
Value Nest(Heap& heap, int depth, Value last) {
    for (int i = 0; i < depth; ++i) {
        const auto object = static_cast<std::uint32_t>(heap.NewList());
        heap.Append(heap.objects[object], last);
        last = MakeObject(Kind::List, object);
    }
    return last;
}

TEST(ScriptState, CutsAtDepth65) {
    const Program program;
    for (const int depth : {64, 65}) {
        Heap heap;
        CanonicalWriter writer(true);
        WriteScriptValue(writer, program, heap, "x", Nest(heap, depth, MakeInt(3)));
        ASSERT_EQ(writer.fields.size(), static_cast<std::size_t>(depth) + 1);
        EXPECT_EQ(writer.fields.back().text, depth == 64 ? "3" : "<profundo>");
    }
}

TEST(ScriptState, NamesFieldsByNumberBeyondTheirRecord) {
    Program program;
    program.records.push_back({"P", {"a"}, {IntType}, {}});
    Heap heap;
    CanonicalWriter writer(true);
    for (const RecordId record : {RecordId(0), RecordId(7)}) {
        WriteScriptValue(writer, program, heap, "x",
                         MakeObject(Kind::Record, static_cast<std::uint32_t>(heap.NewRecord(record, 2))));
    }
    std::string names;
    for (const CanonicalField& field : writer.fields) names += field.name + " ";
    EXPECT_EQ(names, "x.a x.1 x.0 x.1 ");
}

// A list that holds the same value so many times, each with a reference of its own.
Value ListOf(Heap& heap, int count, const Value& value) {
    const auto object = static_cast<std::uint32_t>(heap.NewList());
    for (int i = 0; i < count; ++i) {
        heap.Retain(value);
        heap.Append(heap.objects[object], value);
    }
    return MakeObject(Kind::List, object);
}

// A list of two lists of two lists and so on: 2^(levels + 1) - 1 values.
Value Doubled(Heap& heap, int levels) {
    Value value = MakeInt(1);
    for (int i = 0; i < levels; ++i) value = ListOf(heap, 2, value);
    return value;
}

TEST(ScriptState, EndsOnStructuresOfTooManyWays) {
    const Program program;
    Heap heap;
    const Value itself = ListOf(heap, 1, MakeInt(1));
    for (int i = 0; i < 2; ++i) heap.Append(heap.At(itself), itself);
    for (const Value& value : {Doubled(heap, 40), itself}) {
        CanonicalWriter writer(false);
        WriteScriptValue(writer, program, heap, "x", value);
        EXPECT_EQ(writer.failure, "as mesmas listas ou textos aparecem nele vezes demais");
    }
}

// Far more than the heap holds, but no more than can be written.
TEST(ScriptState, WritesSharedTextsOfAGigabyte) {
    const Program program;
    Heap heap;
    const Value text = MakeObject(Kind::Text, static_cast<std::uint32_t>(heap.NewText(std::string(1U << 25U, 'x'))));
    CanonicalWriter writer(false);
    std::uint64_t size = 0;
    writer.takeBytes = [&size](std::span<const std::uint8_t> bytes) { size += bytes.size(); };
    WriteScriptValue(writer, program, heap, "x", ListOf(heap, 40, text));
    EXPECT_EQ(writer.failure, "");
    EXPECT_EQ(size + writer.bytes.size(), 5 + 40 * (5 + (std::uint64_t{1} << 25U)));
}

TEST(ScriptState, KnowsHowMuchAWalkWrites) {
    const Program program;
    Heap heap;
    const Value itself = ListOf(heap, 3, MakeInt(1));
    heap.Append(heap.At(itself), itself);
    for (const Value& value : {MakeInt(1), Doubled(heap, 12), ListOf(heap, 5, Doubled(heap, 1)), itself}) {
        for (const std::string& name : {std::string(), std::string(1000, 'n')}) {
            CanonicalWriter writer(true);
            WriteScriptValue(writer, program, heap, name, value);
            std::uint64_t pathBytes = 0;
            for (const CanonicalField& field : writer.fields) pathBytes += field.name.size();
            const std::uint64_t weight = WalkWeights(program, heap).Of(value, name.size());
            EXPECT_GE(weight, writer.fields.size() + pathBytes / PathBytesPerValue / 2);
            EXPECT_LE(weight, writer.fields.size() + pathBytes * 4 / PathBytesPerValue);
        }
    }
}

}  // namespace
}  // namespace tavrel::core::script
