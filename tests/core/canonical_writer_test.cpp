#include "core/canonical_writer.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavrel::core {
namespace {

constexpr float NAN_FLOAT = std::numeric_limits<float>::quiet_NaN();

std::string Hex(const std::vector<std::uint8_t>& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        if (!text.empty()) text += ' ';
        text += "0123456789ABCDEF"[byte >> 4];
        text += "0123456789ABCDEF"[byte & 15];
    }
    return text;
}

// "kind bits name = text", one field a line.
std::string Listing(const CanonicalWriter& writer) {
    std::string listing;
    for (const CanonicalField& field : writer.fields) {
        listing += std::string(1, field.kind) + ' ' + std::to_string(field.bits) + ' ' + field.name + " = " +
                   field.text + '\n';
    }
    return listing;
}

TEST(CanonicalWriter, EachOperation) {
    struct Row {
        void (*write)(CanonicalWriter&);
        const char* bytes;
        const char* fields;
    };
    const Row rows[] = {
        {[](CanonicalWriter& w) { w.U8("n", 255); }, "31 FF", "u 255 n = 255\n"},
        {[](CanonicalWriter& w) { w.U32("n", 0x01020304); }, "34 04 03 02 01", "u 16909060 n = 16909060\n"},
        {[](CanonicalWriter& w) { w.U64("n", 0x0102030405060708); }, "38 08 07 06 05 04 03 02 01",
         "u 72623859790382856 n = 72623859790382856\n"},
        {[](CanonicalWriter& w) { w.I32("n", -1); }, "69 FF FF FF FF", "i 4294967295 n = -1\n"},
        {[](CanonicalWriter& w) { w.I64("n", -2); }, "49 FE FF FF FF FF FF FF FF", "i 18446744073709551614 n = -2\n"},
        {[](CanonicalWriter& w) { w.Bool("n", true); }, "62 01", "b 1 n = true\n"},
        {[](CanonicalWriter& w) { w.Bool("n", false); }, "62 00", "b 0 n = false\n"},
        {[](CanonicalWriter& w) { w.Float("n", 1.5F); }, "66 00 00 C0 3F", "f 1069547520 n = 1.5 (0xcp-3)\n"},
        {[](CanonicalWriter& w) { w.Float("n", -0.0F); }, "66 00 00 00 80", "f 2147483648 n = -0 (-0x0p+0)\n"},
        {[](CanonicalWriter& w) { w.Float("n", -std::numeric_limits<float>::infinity()); }, "66 00 00 80 FF",
         "f 4286578688 n = -inf (-inf)\n"},
        {[](CanonicalWriter& w) { w.Double("n", 0.1); }, "64 9A 99 99 99 99 99 B9 3F",
         "d 4591870180066957722 n = 0.10000000000000001 (0xc.cccccccccccdp-7)\n"},
        {[](CanonicalWriter& w) {
             w.Floats("n", std::vector{1.0F, 0.1F});
         },
         "46 02 00 00 00 00 00 80 3F CD CC CC 3D",
         "f 1065353216 n[0] = 1 (0x8p-3)\nf 1036831949 n[1] = 0.100000001 (0xc.ccccdp-7)\n"},
        {[](CanonicalWriter& w) { w.Floats("n", {}); }, "46 00 00 00 00", ""},
        {[](CanonicalWriter& w) { w.Text("n", "a\xC3"); }, "73 02 00 00 00 61 C3", "s 620270826218097213 n = a\xC3\n"},
        {[](CanonicalWriter& w) { w.Text("n", ""); }, "73 00 00 00 00", "s 14695981039346656037 n = \n"},
        {[](CanonicalWriter& w) { w.Entity(258); }, "45 02 01 00 00 00 00 00 00", ""},
        {[](CanonicalWriter& w) { w.Section("ab"); }, "53 02 00 00 00 61 62", ""},
        {[](CanonicalWriter& w) { w.Tag('x'); }, "78", ""},
        {[](CanonicalWriter& w) { w.Raw(0x0102030405060708, 3); }, "08 07 06", ""},
        {[](CanonicalWriter& w) { w.Raw(1, -1); }, "", ""},
    };
    for (const Row& row : rows) {
        CanonicalWriter listed(true);
        row.write(listed);
        EXPECT_EQ(Hex(listed.bytes), row.bytes);
        EXPECT_EQ(Listing(listed), row.fields) << row.bytes;
        CanonicalWriter bare(false);
        row.write(bare);
        EXPECT_EQ(bare.bytes, listed.bytes);
        EXPECT_EQ(Listing(bare), "") << row.bytes;
    }
}

TEST(CanonicalWriter, FieldsCarryTheirSectionAndEntity) {
    CanonicalWriter writer(true);
    writer.U8("a", 1);
    writer.Section("corpo");
    writer.Entity(7);
    writer.U8("b", 1);
    writer.Section("script");
    writer.U8("c", 1);
    std::string listing;
    for (const CanonicalField& field : writer.fields) {
        listing +=
            field.section + '/' + field.name + (field.hasEntity ? '@' : ' ') + std::to_string(field.entity) + ' ';
    }
    EXPECT_EQ(listing, "/a 0 corpo/b@7 script/c 0 ");
}

TEST(CanonicalWriter, TheFirstNanIsTheFailureAndIsStillWritten) {
    CanonicalWriter writer(true);
    writer.Double("v", std::numeric_limits<double>::quiet_NaN());
    writer.Section("script");
    writer.Float("w", NAN_FLOAT);
    EXPECT_EQ(writer.failure, "NaN no estado deterministico: v");
    EXPECT_EQ(writer.bytes.size(), 9U + 11U + 5U);
    EXPECT_EQ(Listing(writer), "d 9221120237041090560 v = nan (nan)\nf 2143289344 w = nan (nan)\n");
}

TEST(CanonicalWriter, FailureNamesTheSectionAndTheElement) {
    CanonicalWriter writer(false);
    writer.Section("script");
    writer.Floats("lista", std::vector{0.0F, 1.0F, NAN_FLOAT, NAN_FLOAT});
    EXPECT_EQ(writer.failure, "NaN no estado deterministico: script/lista[2]");
}

TEST(CanonicalWriter, FieldsCanBeTakenAtOnce) {
    CanonicalWriter writer(true);
    std::string taken;
    writer.takeField = [&taken](const CanonicalField& field) { taken += field.name + '=' + field.text + ' '; };
    writer.U8("a", 1);
    writer.Floats("b", std::vector{0.0F, 1.5F});
    EXPECT_EQ(taken, "a=1 b[0]=0 (0x0p+0) b[1]=1.5 (0xcp-3) ");
    EXPECT_TRUE(writer.fields.empty());
}

TEST(CanonicalWriter, LongElementNamesAreCut) {
    const std::string list(94, 'n');
    CanonicalWriter writer(true);
    writer.Floats(list.c_str(), std::vector{0.0F});
    EXPECT_EQ(writer.fields[0].name, list + '[');
}

TEST(CanonicalWriter, SectionsTileTheStreamAfterTheFirst) {
    CanonicalWriter writer(false);
    EXPECT_TRUE(writer.SectionDigests().empty());
    writer.Bool("antes", true);
    writer.Section("a");
    writer.U8("x", 1);
    writer.Section("b");
    const auto digests = writer.SectionDigests();
    ASSERT_EQ(digests.size(), 2U);
    EXPECT_EQ(writer.sections[0].end, 10U);
    EXPECT_EQ(digests[0], std::pair(std::string("a"), HashSha256("S\1\0\0\0a1\1", 8)));
    EXPECT_EQ(digests[1], std::pair(std::string("b"), HashSha256("S\1\0\0\0b", 6)));
}

}  // namespace
}  // namespace tavrel::core
