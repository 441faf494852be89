#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "core/script/numeric/number_text.h"
#include "core/script/runtime/find_text.h"
#include "core/script/runtime/native_math.h"
#include "core/script/runtime/native_results.h"
#include "core/script/runtime/natives.h"
#include "core/script/runtime/value_text.h"
#include "core/script/source/fold.h"

namespace tavrel::core::script {

namespace {

// Appends a value as authors see it: an enum by its name. False with the fault once the text is longer than a new
// object may be.
bool AppendShown(Vm& vm, const Value& value, std::string& out) {
    if (value.kind == Kind::Enum) {
        out += vm.EnumText(value);
        return true;
    }
    const Heap& heap = vm.heap;
    const std::uint64_t taken = heap.bytes + Heap::ObjectCost;
    const std::uint64_t room = heap.limit > taken ? heap.limit - taken : 0;
    return AppendValueText(vm.heap, value, room, out) || FailNative(vm, MemoryFault);
}

bool ParseReal(std::string_view text, float& out) {
    if (text.empty() || text.find_first_not_of("+-.0123456789eE") != std::string_view::npos) return false;
    return ParseRealDigits(text, out) && IsFinite(out);
}

// Appends the bytes of a text from `begin` to below `end`, as a text of its own, to the list of pieces.
bool AppendPiece(Vm& vm, const Value& list, const Value& text, std::size_t begin, std::size_t end) {
    if (!vm.Grow(Heap::ObjectCost + (end - begin) + Heap::ItemCost)) return false;
    const std::int32_t piece = vm.heap.NewText(vm.heap.At(text).text.substr(begin, end - begin));
    vm.heap.Append(vm.heap.At(list), MakeObject(Kind::Text, static_cast<std::uint32_t>(piece)));
    return true;
}

}  // namespace

bool NativePrint(Vm& vm, Value* args, std::size_t, Value&) {
    if (vm.print) vm.print(vm.heap.At(args[0]).text);
    return true;
}

bool NativeToText(Vm& vm, Value* args, std::size_t, Value& result) {
    std::string text;
    return AppendShown(vm, args[0], text) && GiveText(vm, std::move(text), result);
}

bool NativeParseInt(Vm& vm, Value* args, std::size_t, Value& result) {
    std::int64_t integer = 0;
    result = MakeInt(ParseIntegerDigits(vm.heap.At(args[0]).text, integer) ? integer : args[1].Int());
    return true;
}

bool NativeParseReal(Vm& vm, Value* args, std::size_t, Value& result) {
    float real = 0.0F;
    result = MakeReal(ParseReal(vm.heap.At(args[0]).text, real) ? real : args[1].Real());
    return true;
}

// "{}" takes the next value; every other byte stands for itself.
bool NativeFormat(Vm& vm, Value* args, std::size_t count, Value& result) {
    const std::string_view model = vm.heap.At(args[0]).text;  // nothing below makes an object before the end
    std::string text;
    std::size_t next = 1;
    std::size_t at = 0;
    for (std::size_t mark = model.find("{}"); mark != std::string_view::npos; mark = model.find("{}", at)) {
        text += model.substr(at, mark - at);
        at = mark + 2;
        if (next >= count) {
            return FailNative(vm, "faltam valores para \"formatar\": o modelo pede mais do que foi passado");
        }
        if (!AppendShown(vm, args[next++], text)) return false;
    }
    text += model.substr(at);
    return GiveText(vm, std::move(text), result);
}

bool NativeTextSize(Vm& vm, Value* args, std::size_t, Value& result) {
    result = MakeInt(static_cast<std::int64_t>(CountCharacters(vm.heap.At(args[0]).text)));
    return true;
}

bool NativeTextContains(Vm& vm, Value* args, std::size_t, Value& result) {
    const std::size_t at = FindText(vm.heap.At(args[0]).text, vm.heap.At(args[1]).text, 0);
    result = MakeBool(at != std::string_view::npos);
    return true;
}

bool NativeTextSplit(Vm& vm, Value* args, std::size_t, Value& result) {
    if (!vm.Grow(Heap::ObjectCost)) return false;
    result = MakeObject(Kind::List, static_cast<std::uint32_t>(vm.heap.NewList()));
    const std::size_t size = vm.heap.At(args[0]).text.size();
    const std::size_t step = vm.heap.At(args[1]).text.size();
    std::size_t begin = 0;
    while (step > 0) {
        // Looked up anew each time: a new piece may have moved all objects.
        const std::size_t end = FindText(vm.heap.At(args[0]).text, vm.heap.At(args[1]).text, begin);
        if (end == std::string_view::npos) break;
        if (!AppendPiece(vm, result, args[0], begin, end)) return false;
        begin = end + step;
    }
    return AppendPiece(vm, result, args[0], begin, size);
}

}  // namespace tavrel::core::script
