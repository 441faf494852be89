#include "core/sha256.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string_view>

namespace tavrel::core {
namespace {

std::string HexOf(const std::string& message, bool forcePortable) {
    Sha256 hash(forcePortable);
    hash.Update(message.data(), message.size());
    return ToHex(hash.Finish());
}

TEST(Sha256, KnownMessages) {
    struct Row {
        std::string message;
        const char* digest;
    };
    const Row rows[] = {
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
         "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
        {std::string(1000000, 'a'), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
        {std::string(55, 'a'), "9f4390f8d30c2dd92ec9f095b65e2b9ae9b0a925a5258e241c9f1e910f734318"},
        {std::string(56, 'a'), "b35439a4ac6f0948b6d6f9e3c6af0f5f590ce20f1bde7090ef7970686ec6738a"},
        {std::string(63, 'a'), "7d3e74a05d7db15bce4ad9ec0658ea98e3f06eeecf16b4c6fff2da457ddc2f34"},
        {std::string(64, 'a'), "ffe054fe7ae0cb6dc65c3af9b61d5209f439851db43d0ba5997337df154668eb"},
        {std::string(119, 'a'), "31eba51c313a5c08226adf18d4a359cfdfd8d2e816b13f4af952f7ea6584dcfb"},
        {std::string(120, 'a'), "2f3d335432c70b580af0e8e1b3674a7c020d683aa5f73aaaedfdc55af904c21c"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(HexOf(row.message, true), row.digest) << row.message.size() << " bytes, portable";
        EXPECT_EQ(ToHex(HashSha256(row.message.data(), row.message.size())), row.digest) << row.message.size();
    }
}

// Pieces of 0 to 70 bytes, at odd addresses and across block ends.
std::string HexOfPieces(std::string_view rest, bool forcePortable, std::minstd_rand& random) {
    Sha256 hash(forcePortable);
    while (!rest.empty()) {
        const std::size_t size = std::min<std::size_t>(random() % 71, rest.size());
        hash.Update(rest.data(), size);
        rest.remove_prefix(size);
    }
    hash.Update(nullptr, 0);
    return ToHex(hash.Finish());
}

TEST(Sha256, NeitherPiecesNorTheRoutineChangeTheDigest) {
    std::minstd_rand random(1);
    for (std::size_t length = 0; length <= 1000; length += length < 130 ? 1 : 29) {
        std::string message;
        for (std::size_t i = 0; i < length; ++i) message += static_cast<char>(random() >> 8);
        const std::string whole = HexOf(message, true);
        EXPECT_EQ(HexOf(message, false), whole) << length;
        EXPECT_EQ(HexOfPieces(message, true, random), whole) << length;
        EXPECT_EQ(HexOfPieces(message, false, random), whole) << length;
    }
}

}  // namespace
}  // namespace tavrel::core
