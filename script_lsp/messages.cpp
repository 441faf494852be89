// Messages as JSON. Members keep the order in which they are set, and that order is part of what the server promises.
#include "script_lsp/messages.h"

#include <utility>

namespace tavrel::script_lsp {

using core::Json;

namespace {

Json Message() {
    Json message = Json::Object();
    message.Set("jsonrpc", Json::Text("2.0"));
    return message;
}

}  // namespace

std::string Reply(const Json& id, Json result) {
    Json message = Message();
    message.Set("id", id);
    message.Set("result", std::move(result));
    return WriteJson(message);
}

std::string Failure(const Json& id, int code, const std::string& message) {
    Json error = Json::Object();
    error.Set("code", Json::Int(code));
    error.Set("message", Json::Text(message));
    Json whole = Message();
    whole.Set("id", id);
    whole.Set("error", std::move(error));
    return WriteJson(whole);
}

std::string Notify(const std::string& method, Json params) {
    Json message = Message();
    message.Set("method", Json::Text(method));
    message.Set("params", std::move(params));
    return WriteJson(message);
}

}  // namespace tavrel::script_lsp
