// The three shapes of message that the server sends, as JSON texts without their header.
#pragma once

#include <string>

#include "core/json.h"

namespace tavrel::script_lsp {

// The answer to a request, with the request's own id.
[[nodiscard]] std::string Reply(const core::Json& id, core::Json result);

// The error that answers a request; the id is null where none could be read.
[[nodiscard]] std::string Failure(const core::Json& id, int code, const std::string& message);

// A notification: a message that is no answer and gets none.
[[nodiscard]] std::string Notify(const std::string& method, core::Json params);

}  // namespace tavrel::script_lsp
