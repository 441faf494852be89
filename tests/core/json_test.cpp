#include "core/json.h"

#include <gtest/gtest.h>

#include <bit>
#include <string>
#include <utility>

namespace tavrel::core {
namespace {

// What a text becomes when it is read and written again, or the reader's reason.
std::string Again(const std::string& text) {
    Json value = Json::Text("left over");
    std::string error = "left over";
    const bool read = ParseJson(text, value, error);
    EXPECT_EQ(read, error.empty()) << text;
    return read ? WriteJson(value) : error;
}

std::string Repeat(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

TEST(Json, ReadsAndWrites) {
    const std::pair<std::string, std::string> rows[] = {
        {" [ ] ", "[]"},
        {"\xEF\xBB\xBF{\r\n\t}", "{}"},
        {"[true , false,null]", "[true,false,null]"},
        {R"({"b":1,"a":2,"b":{"c":[]}})", R"({"b":{"c":[]},"a":2})"},
        {"[007,+1,.5,5.,-0,-0.0,1e5]", "[7,1,0.5,5,0,0,100000]"},
        {"[1e,1.5E-,-2e+,-12.25e]", "[1,1.5,-2,-12.25]"},
        {"0.3e", "0.30000000000000004"},  // added up digit by digit
        {"[0.3,0.1,0.30000000000000000000]", "[0.29999999999999999,0.10000000000000001,0.29999999999999999]"},
        {"[9007199254740993,9007199254740993.5]", "[9007199254740992,9007199254740994]"},
        {"[-9223372036854775808,9223372036854775807]", "[-9223372036854775808,9.2233720368547758e+18]"},
        {"[1e15,1e300,4.9e-324]", "[1000000000000000,1.0000000000000001e+300,4.9406564584124654e-324]"},
        {R"("\"\\\/\b\f\n\r\t\u000b\u001F\u007f")", "\"\\\"\\\\/\\b\\f\\n\\r\\t\\u000b\\u001f\x7F\""},
        {R"("\ud83d\uDE00 \u00e9\u20aC \udc00")", "\"\xF0\x9F\x98\x80 \xC3\xA9\xE2\x82\xAC \xED\xB0\x80\""},
        {R"("\u0080\u07ff\u0800\uffff\ud800\udc00")", "\"\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\""},
        {"\"plain until here\xFF\x80\"", "\"plain until here\xFF\x80\""},
    };
    for (const auto& [text, written] : rows) {
        EXPECT_EQ(Again(text), written);
        EXPECT_EQ(Again(written), written);
    }
}

// What the reader says of other faults stands in the recorded session `json`.
TEST(Json, Refusals) {
    EXPECT_EQ(Again(std::string("[\0", 2)), "esperava um numero");
    EXPECT_EQ(Again(std::string("1\0", 2)), "sobrou texto depois do documento");
    EXPECT_EQ(Again(std::string("\"a\0\"", 4)), "byte de controle dentro de um texto");
    EXPECT_EQ(Again(Repeat("{\"a\":", 65)), "JSON encaixado demais");
}

TEST(Json, Bounds) {
    EXPECT_EQ(Again(Repeat("[", 65) + Repeat("]", 65)), Repeat("[", 65) + Repeat("]", 65));
    EXPECT_EQ(Again(Repeat("[", 65) + "1" + Repeat("]", 65)), "JSON encaixado demais");
    const std::string largest = '"' + std::string((1 << 24) - 2, 'a') + '"';
    EXPECT_EQ(Again(largest), largest);
    EXPECT_EQ(Again(largest + ' '), "documento JSON grande demais");
}

// Every key twice in a row, so that places, values and the count of different keys are all put to the test.
TEST(Json, WideObjects) {
    std::string text = "{\"k0\":0";
    std::string written = text;
    for (int i = 1; i < 65'536; ++i) {
        const std::string key = ",\"k" + std::to_string(i) + "\":";
        text += key + "[]" + (i < 65'535 ? key + std::to_string(i) : "");
        written += key + (i < 65'535 ? std::to_string(i) : "[]");
    }
    EXPECT_EQ(Again(text + '}'), written + '}');
    EXPECT_EQ(Again(text + ",\"k7\":1}"), "objeto com campos demais");
    EXPECT_EQ(Again(text + ",\"k7\":1,nothing"), "objeto com campos demais");
    EXPECT_EQ(Again(text + ",\"k7\":nothing"), "esperava um numero");
    EXPECT_EQ(Again('{' + Repeat("\"a\":1,", 300'000) + "\"b\":2,\"a\":3}"), R"({"a":3,"b":2})");
}

TEST(Json, TextBehindAValueKeepsTheValue) {
    Json value;
    std::string error;
    EXPECT_FALSE(ParseJson("[1,2] 3", value, error));
    EXPECT_EQ(WriteJson(value), "[1,2]");
}

TEST(Json, Lookups) {
    Json value;
    std::string error;
    ASSERT_TRUE(ParseJson(R"({"a":[1.9,-1.9,"x",true],"n":null})", value, error));
    EXPECT_TRUE(value.Has("n") && !value.Has("b") && !value.At("a").Has("n"));
    EXPECT_EQ(value.At("b").At("c")[7].TextOr("none"), "none");
    EXPECT_EQ(value[0].kind, Json::Kind::Null);
    const Json& items = value.At("a");
    EXPECT_EQ(items[0].IntOr(5), 1);
    EXPECT_EQ(items[1].IntOr(5), -1);
    EXPECT_EQ(items[2].IntOr(5), 5);
    EXPECT_EQ(items[2].TextOr(""), "x");
    EXPECT_TRUE(items[3].BoolOr(false) && items[2].BoolOr(true));
    EXPECT_EQ(value.Size() * 100 + items.Size() * 10 + items[2].Size(), 240U);
    EXPECT_EQ(Json::Number(1e300).IntOr(0), INT64_MAX);
    EXPECT_EQ(Json::Number(-1e300).IntOr(0), INT64_MIN);
    const double infinity = std::bit_cast<double>(0x7FF0000000000000);
    EXPECT_EQ(Json::Number(infinity - infinity).IntOr(3), 3);
    EXPECT_EQ(WriteJson(Json::Number(infinity)) + WriteJson(Json::Number(infinity - infinity)), "00");
    EXPECT_TRUE(Json::Int(-9007199254740992).IsInteger() && !Json::Number(9007199254740994).IsInteger());
    EXPECT_FALSE(Json::Number(0.5).IsInteger() || Json::Number(infinity).IsInteger() || Json().IsInteger());
}

TEST(Json, Building) {
    Json value = Json::Int(3);
    value.Set("a", Json::Bool(true));
    value.Set("b", Json()).Add(Json::Text("x"));
    value.Set("a", Json::Object());
    EXPECT_EQ(WriteJson(value), R"({"a":{},"b":["x"]})");
    value.Add(value);
    EXPECT_EQ(WriteJson(value), R"([{"a":{},"b":["x"]}])");
    EXPECT_FALSE(value.Has("a"));
}

}  // namespace
}  // namespace tavrel::core
