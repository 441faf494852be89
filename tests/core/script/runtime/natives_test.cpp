#include "core/script/runtime/natives.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "core/script/runtime/dictionary.h"
#include "core/script/runtime/vm.h"

namespace tavrel::core::script {
namespace {

class MemoryLimit : public testing::Test {
protected:
    Value Text(const std::string& text) {
        return MakeObject(Kind::Text, static_cast<std::uint32_t>(vm.heap.NewText(text)));
    }
    Value List(const std::vector<Value>& items) {
        const Value list = MakeObject(Kind::List, static_cast<std::uint32_t>(vm.heap.NewList()));
        for (const Value& item : items) vm.heap.Append(vm.heap.At(list), item);
        return list;
    }
    Value Dict(const std::vector<Value>& keys) {
        const auto dict = static_cast<std::uint32_t>(vm.heap.NewDict());
        for (const Value& key : keys) StoreEntry(vm.heap, dict, key, MakeInt(0));
        return MakeObject(Kind::Dict, dict);
    }

    // Calls with room for exactly `room` bytes more. Gives the result, or Nothing after the fault of full memory,
    // behind which everything must be as it was. The arguments go, but for those that the test holds.
    Value Call(Native native, const std::vector<Value>& args, std::uint64_t room) {
        vm.faulted = false;
        vm.faultMessage.clear();
        for (const Value& value : args) {
            vm.heap.Retain(value);
            vm.stack.Push(value);
        }
        const std::uint64_t before = vm.heap.bytes;
        const std::uint64_t live = vm.heap.live;
        vm.heap.limit = before + room;
        const std::size_t below = vm.stack.Size() - args.size();
        if (!vm.CallNativeAt(native, args.size())) {
            EXPECT_EQ(vm.faultMessage, MemoryFault);
            EXPECT_EQ(vm.heap.bytes, before);
            EXPECT_EQ(vm.heap.live, live);
            EXPECT_EQ(vm.stack.Size(), below);
            return {};
        }
        EXPECT_EQ(vm.heap.bytes, before + room);
        if (vm.stack.Size() == below) return MakeBool(true);
        const Value result = vm.stack.Data()[below];
        vm.stack.SetSize(below);
        return result;
    }

    // A call that needs `need` bytes fails with one less and leaves no trace, then succeeds and takes them all.
    Value ExpectNeeds(std::uint64_t need, Native native, const std::vector<Value>& args) {
        EXPECT_EQ(Call(native, args, need - 1).kind, Kind::Nothing) << NativeName(native);
        const Value result = Call(native, args, need);
        EXPECT_NE(result.kind, Kind::Nothing) << NativeName(native);
        return result;
    }

    Program program;
    Vm vm{program};
};

constexpr std::uint64_t Object = Heap::ObjectCost;
constexpr std::uint64_t Item = Heap::ItemCost;

TEST_F(MemoryLimit, BoundsListsAndDictionaries) {
    const Value list = List({MakeInt(1)});
    ExpectNeeds(Item, Native::ListAppend, {list, MakeInt(2)});
    ExpectNeeds(Item, Native::ListInsert, {list, MakeInt(0), MakeInt(2)});
    EXPECT_EQ(vm.heap.At(list).items.size(), 3U);
    EXPECT_EQ(vm.heap.At(list).version, 2U);
    ExpectNeeds(Object + 3 * Item, Native::ListCopy, {list});

    const Value dict = Dict({MakeInt(1), MakeInt(2)});
    ExpectNeeds(2 * Item, Native::DictDefine, {dict, MakeInt(3), MakeInt(4)});
    EXPECT_EQ(vm.heap.At(dict).version, 1U);
    EXPECT_NE(Call(Native::DictDefine, {dict, MakeInt(3), MakeInt(5)}, 0).kind, Kind::Nothing);
    EXPECT_EQ(vm.heap.At(dict).version, 1U);
    ExpectNeeds(Object + 3 * Item, Native::DictKeys, {dict});
    ExpectNeeds(Object + 3 * Item, Native::DictValues, {dict});
}

TEST_F(MemoryLimit, BoundsTexts) {
    const Value list = List({MakeInt(10), MakeInt(20)});
    ExpectNeeds(Object + 8, Native::ToText, {list});
    ExpectNeeds(Object + 11, Native::Format, {Text("a{}b{}"), list, MakeInt(7)});
    ExpectNeeds(Object + 4, Native::Format, {Text("{}cd"), Text("ab")});
    const Value pieces = ExpectNeeds(4 * Object + 3 * Item + 4, Native::TextSplit, {Text("ab,c,d"), Text(",")});
    ASSERT_EQ(vm.heap.At(pieces).items.size(), 3U);
    EXPECT_EQ(vm.heap.At(vm.heap.At(pieces).items[2]).text, "d");
}

TEST(Natives, ANumberPastTheLastFails) {
    Program program;
    Vm vm(program);
    EXPECT_FALSE(vm.CallNativeAt(Native::Count, 0));
    EXPECT_FALSE(vm.faulted);
    ASSERT_TRUE(vm.CallNativeAt(static_cast<Native>(69), 0));
    EXPECT_EQ(vm.stack.Data()[0].kind, Kind::Nothing);
}

}  // namespace
}  // namespace tavrel::core::script
