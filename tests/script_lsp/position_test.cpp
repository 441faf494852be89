#include "script_lsp/position.h"

#include <gtest/gtest.h>

#include <string>

#include "script_lsp/uri.h"

namespace tavrel::script_lsp {

namespace {

using core::script::SourceFile;

const SourceFile& Mixed() {
    static const SourceFile file("m", "a\xC3\xA9\xF0\x9F\x98\x80z\r\n\xE2\x82\xAC\x80\xFFx\n\nfim");
    return file;
}

TEST(Positions, CountUtf16Units) {
    const struct {
        std::uint32_t offset;
        std::int32_t line;
        std::int32_t character;
    } rows[] = {{0, 0, 0},
                {1, 0, 1},
                {3, 0, 2},
                {7, 0, 4},
                {8, 0, 5},
                {9, 0, 6},
                // Behind a line feed, behind a euro sign, and broken bytes: a lone continuation, then a lead that
                // announces more than the line has.
                {10, 1, 0},
                {13, 1, 1},
                {14, 1, 2},
                {17, 2, 0},
                {18, 3, 0},
                {21, 3, 3},
                {4'000'000'000, 3, 3}};
    for (const auto& row : rows) {
        const Position position = PositionOf(Mixed(), row.offset);
        EXPECT_EQ(position.line, row.line) << row.offset;
        EXPECT_EQ(position.character, row.character) << row.offset;
        EXPECT_EQ(OffsetOf(Mixed(), position), std::min(row.offset, 21U)) << row.offset;
    }
    EXPECT_EQ(PositionOf(Mixed(), 5).character, 4);
}

TEST(Positions, AreCutToTheText) {
    const struct {
        Position position;
        std::uint32_t offset;
    } rows[] = {{{0, 3}, 7},
                {{0, 99}, 9},
                {{-5, -5}, 0},
                {{2, 1}, 17},
                {{1, -1}, 10},
                {{3, 99}, 21},
                {{4, 0}, 21},
                {{2147483647, 2147483647}, 21},
                {{-2147483647 - 1, 1}, 1}};
    for (const auto& row : rows) EXPECT_EQ(OffsetOf(Mixed(), row.position), row.offset);
}

TEST(Uris, NamePaths) {
    const struct {
        const char* uri;
        const char* path;
    } rows[] = {
        {"file:///a/b%20c.tvl", "/a/b c.tvl"},
        {"file:///C%3A/jogo.tvl", "C:/jogo.tvl"},
        {"file:///c:/jogo.tvl", "c:/jogo.tvl"},
        {"file://host/a", "host/a"},
        {"/C:", "C:"},
        {"/C", "/C"},
        {"/1:", "/1:"},
        {"%zz%4", "%zz%4"},
        {"%4a%4B%", "JK%"},
        {"%%41", "%A"},
        {"FILE:///a", "FILE:///a"},
        {"a\\b", "a\\b"},
        {"", ""},
    };
    for (const auto& row : rows) EXPECT_EQ(PathFromUri(row.uri), row.path);
}

TEST(Uris, OfPathsLeadBack) {
    EXPECT_EQ(UriFromPath("C:\\a b\\\xC3\xA9.tvl"), "file:///C%3A/a%20b/%C3%A9.tvl");
    EXPECT_EQ(UriFromPath("\\\\s\\x"), "file:////s/x");
    EXPECT_EQ(UriFromPath(""), "file://");
    std::string bytes = "/";
    for (int i = 0; i < 256; ++i) bytes += i == '\\' ? '/' : static_cast<char>(i);
    EXPECT_EQ(PathFromUri(UriFromPath(bytes)), bytes);
    const std::string plain = "/-./0123456789ABCXYZ_abcxyz~";
    EXPECT_EQ(UriFromPath(plain + ",:@[`{\x7F"), "file://" + plain + "%2C%3A%40%5B%60%7B%7F");
}

}  // namespace

}  // namespace tavrel::script_lsp
