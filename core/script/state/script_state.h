// The state of a running script as a canonical stream: a header and the values of all globals of the category "estado",
// which are what decides later ticks. A machine between two runs goes in, records of a CanonicalWriter come out; the
// machine is only read. Two machines of one program agree exactly when their streams do.
#pragma once

#include <string>

#include "core/canonical_writer.h"
#include "core/script/runtime/heap.h"
#include "core/script/runtime/value.h"
#include "core/script/runtime/vm.h"

namespace tavrel::core::script {

// Writes the whole state, in a section of that name unless `section` is null. A NaN sets the writer's `failure`, and so
// does a state in which shared lists and texts make more than anyone can write down: then the stream stops short.
void WriteScriptState(const Vm& vm, CanonicalWriter& out, const char* section);

// Writes one value, for hosts with values of their own. `path` names it in the fields. Fails as WriteScriptState.
void WriteScriptValue(CanonicalWriter& out, const Program& program, const Heap& heap, const std::string& path,
                      const Value& value);

}  // namespace tavrel::core::script
