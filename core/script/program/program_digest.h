// The identity of a compiled program: two programs with the same behaviour and the same public shape have the same
// digest on any machine. Source text and positions do not enter.
#pragma once

#include "core/script/program/program.h"
#include "core/sha256.h"

namespace tavrel::core::script {

// Serialises the fields that make up the identity, in a fixed order, low byte first, and hashes them.
[[nodiscard]] Digest DigestOf(const Program& program);

}  // namespace tavrel::core::script
