#include "core/script/source/source_file.h"

#include <gtest/gtest.h>

#include <utility>

namespace tavrel::core::script {
namespace {

void ExpectAt(const SourceFile& source, std::uint32_t offset, int line, int column) {
    const LineColumn place = source.At(offset);
    EXPECT_EQ(place.line, line) << "offset " << offset;
    EXPECT_EQ(place.column, column) << "offset " << offset;
}

TEST(SourceFile, EmptyTextHasOneLine) {
    const SourceFile source("a", "");
    ExpectAt(source, 0, 1, 1);
    EXPECT_EQ(source.Line(1), "");
    EXPECT_EQ(source.Line(2), "");
    EXPECT_EQ(source.lineStarts.size(), 1U);
}

TEST(SourceFile, ColumnsCountCharacters) {
    const SourceFile source("a", "é = 1\nação x\n");
    ExpectAt(source, 3, 1, 3);
    ExpectAt(source, 14, 2, 6);
    ExpectAt(source, 15, 2, 7);
    ExpectAt(source, 16, 3, 1);
    ExpectAt(source, 4000000000U, 3, 1);
}

TEST(SourceFile, LinesLeaveTheirEndsBehind) {
    const SourceFile source("a", "a\r\nb\n\n\r\nfim");
    const char* lines[] = {"", "a", "b", "", "", "fim", ""};
    for (int line = 0; line < 7; ++line) EXPECT_EQ(source.Line(line), lines[line]) << line;
    EXPECT_EQ(source.Line(-1), "");
    ExpectAt(source, 1, 1, 2);
}

TEST(SourceFile, ViewsOfAShortTextSurviveAMove) {
    SourceFile source("a", "abc");
    const std::string_view view = source.View({0, 3});
    const SourceFile moved = std::move(source);
    EXPECT_EQ(view.data(), moved.text.data());
}

}  // namespace
}  // namespace tavrel::core::script
