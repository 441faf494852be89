#include <gtest/gtest.h>

#include <string>

#include "core/script/syntax/token.h"
#include "script_lsp/server.h"

namespace tavrel::script_lsp {
namespace {

// The list of completion has an order of its own, so a new keyword has to be put into it by hand.
TEST(Completion, KnowsEveryKeyword) {
    const std::string items = core::WriteJson(Server(nullptr, nullptr).Completion("", {}));
    int keywords = 0;
    for (int kind = 0; kind < 256; ++kind) {
        const std::string text = core::script::Describe(static_cast<core::script::Tok>(kind));
        if (text[0] != '"' || text[1] < 'a' || text[1] > 'z') continue;
        EXPECT_NE(items.find("{\"label\":" + text + ",\"kind\":14}"), std::string::npos) << text;
        ++keywords;
    }
    EXPECT_GE(keywords, 40);
}

}  // namespace
}  // namespace tavrel::script_lsp
