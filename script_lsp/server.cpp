// The methods of the server. A table says which function answers which method and whether that needs an id; what is in
// no table row is an unknown method. Completion, hover and definition have a file each.
#include "script_lsp/server.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "core/script/compiler/build.h"
#include "core/script/syntax/formatter.h"
#include "script_lsp/messages.h"
#include "script_lsp/uri.h"

namespace tavrel::script_lsp {

using core::Json;
using core::script::Diagnostic;
using core::script::Diagnostics;
using core::script::Severity;
using core::script::SourceFile;
using core::script::Span;

// What any method may ask of a message; a part that is not there, or of a wrong kind, is empty.
struct Server::Request {
    const Json& id;
    const Json& params;
    std::string uri;
    Position position;
};

// A method that needs an id is a request: without one there is no answer to send. An empty text is not sent.
struct Server::Method {
    std::string_view name;
    bool needsId = false;
    std::string (Server::*handle)(const Request&) = nullptr;
};

const Server::Method Server::Methods[] = {
    {"initialize", false, &Server::Initialize},
    {"initialized", false, &Server::Initialized},
    {"shutdown", true, &Server::Shutdown},
    {"exit", false, &Server::Exit},
    {"textDocument/didOpen", false, &Server::DidOpen},
    {"textDocument/didChange", false, &Server::DidChange},
    {"textDocument/didSave", false, &Server::DidSave},
    {"textDocument/didClose", false, &Server::DidClose},
    {"textDocument/formatting", true, &Server::AnswerFormatting},
    {"textDocument/completion", true, &Server::AnswerCompletion},
    {"textDocument/hover", true, &Server::AnswerHover},
    {"textDocument/definition", true, &Server::AnswerDefinition},
};

namespace {

constexpr int ParseError = -32700;
constexpr int MethodNotFound = -32601;

Json Capabilities() {
    constexpr int WholeDocuments = 1;
    Json sync = Json::Object();
    sync.Set("openClose", Json::Bool(true));
    sync.Set("change", Json::Int(WholeDocuments));
    sync.Set("save", Json::Bool(true));
    Json capabilities = Json::Object();
    capabilities.Set("textDocumentSync", std::move(sync));
    capabilities.Set("completionProvider", Json::Object()).Set("triggerCharacters", Json::Array()).Add(Json::Text("."));
    capabilities.Set("hoverProvider", Json::Bool(true));
    capabilities.Set("definitionProvider", Json::Bool(true));
    capabilities.Set("documentFormattingProvider", Json::Bool(true));
    return capabilities;
}

Json DiagnosticJson(const SourceFile& file, const Diagnostic& diagnostic) {
    const std::string hint = diagnostic.hint.empty() ? "" : "\n" + diagnostic.hint;
    Json json = Json::Object();
    json.Set("range", RangeOf(file, diagnostic.span));
    json.Set("severity", Json::Int(diagnostic.severity == Severity::Error ? 1 : 2));
    json.Set("source", Json::Text("tavrelscript"));
    json.Set("message", Json::Text(diagnostic.message + hint));
    return json;
}

std::string Publish(const std::string& uri, Json diagnostics) {
    Json params = Json::Object();
    params.Set("uri", Json::Text(uri));
    params.Set("diagnostics", std::move(diagnostics));
    return Notify("textDocument/publishDiagnostics", std::move(params));
}

std::int32_t Coordinate(const Json& number) {
    return static_cast<std::int32_t>(number.IntOr(0));
}

}  // namespace

Server::Server(const core::script::Api* givenApi, FileLoader givenLoader)
    : api(givenApi), loader(std::move(givenLoader)) {}

std::vector<std::string> Server::Handle(const std::string& message) {
    Json root;
    std::string error;
    if (!ParseJson(message, root, error)) return {Failure(Json(), ParseError, "JSON invalido: " + error)};
    const std::string name = root.At("method").TextOr("");
    const Json& params = root.At("params");
    const Json& position = params.At("position");
    const Request request{root.At("id"), params, params.At("textDocument").At("uri").TextOr(""),
                          Position{Coordinate(position.At("line")), Coordinate(position.At("character"))}};
    const bool hasId = request.id.kind != Json::Kind::Null;
    const auto* method = std::find_if(std::begin(Methods), std::end(Methods),
                                      [&name](const Method& candidate) { return candidate.name == name; });
    std::string answer;
    if (method == std::end(Methods)) {
        if (hasId) answer = Failure(request.id, MethodNotFound, "metodo desconhecido: " + name);
    } else if (hasId || !method->needsId) {
        answer = (this->*method->handle)(request);
    }
    if (answer.empty()) return {};
    return {std::move(answer)};
}

std::string Server::Initialize(const Request& request) {
    Json result = Json::Object();
    result.Set("capabilities", Capabilities());
    result.Set("serverInfo", Json::Object()).Set("name", Json::Text("tavrel_script"));
    return Reply(request.id, std::move(result));
}

std::string Server::Initialized(const Request&) {
    return {};
}

std::string Server::Shutdown(const Request& request) {
    return Reply(request.id, Json());
}

std::string Server::Exit(const Request&) {
    exited = true;
    return {};
}

std::string Server::DidOpen(const Request& request) {
    documents[request.uri] = request.params.At("textDocument").At("text").TextOr("");
    return Diagnose(request.uri);
}

std::string Server::DidChange(const Request& request) {
    const std::vector<Json>& changes = request.params.At("contentChanges").items;
    if (!changes.empty()) documents[request.uri] = changes.back().At("text").TextOr("");
    return Diagnose(request.uri);
}

std::string Server::DidSave(const Request& request) {
    const Json& text = request.params.At("text");
    if (text.kind != Json::Kind::Null) documents[request.uri] = text.TextOr("");
    return Diagnose(request.uri);
}

std::string Server::DidClose(const Request& request) {
    documents.erase(request.uri);
    return Publish(request.uri, Json::Array());
}

std::string Server::AnswerFormatting(const Request& request) {
    return Reply(request.id, Formatting(request.uri));
}

std::string Server::AnswerCompletion(const Request& request) {
    return Reply(request.id, Completion(request.uri, request.position));
}

std::string Server::AnswerHover(const Request& request) {
    return Reply(request.id, Hover(request.uri, request.position));
}

std::string Server::AnswerDefinition(const Request& request) {
    return Reply(request.id, Definition(request.uri, request.position));
}

const std::string* Server::Document(const std::string& uri) const {
    const auto found = documents.find(uri);
    return found == documents.end() ? nullptr : &found->second;
}

SourceFile Server::FileOf(const std::string& uri) const {
    const std::string* text = Document(uri);
    return SourceFile(PathFromUri(uri), text == nullptr ? std::string() : *text);
}

bool Server::FindImport(const std::string& folder, const std::string& name, SourceFile& out) const {
    const std::string path = folder + name + ".tvl";
    std::string text;
    if (const std::string* open = Document(UriFromPath(path)); open != nullptr) {
        text = *open;
    } else if (!loader || !loader(path, text)) {
        return false;
    }
    out = SourceFile(path, std::move(text));
    return true;
}

std::string Server::Diagnose(const std::string& uri) const {
    const SourceFile file = FileOf(uri);
    const auto findImport = [this, folder = FolderOf(file.name)](const std::string& name, SourceFile& out) {
        return FindImport(folder, name, out);
    };
    Diagnostics diagnostics;
    core::script::Program program;
    static_cast<void>(core::script::BuildWithImports(file, findImport, diagnostics, program, api));
    Json list = Json::Array();
    for (const Diagnostic& diagnostic : diagnostics.items) {
        if (diagnostic.file == file.name) list.Add(DiagnosticJson(file, diagnostic));
    }
    return Publish(uri, std::move(list));
}

Json Server::Formatting(const std::string& uri) const {
    const SourceFile file = FileOf(uri);
    Diagnostics diagnostics;
    std::string text;
    Json edits = Json::Array();
    if (!Format(file, diagnostics, text) || text == file.text) return edits;
    Json& edit = edits.Add(Json::Object());
    edit.Set("range", RangeOf(file, Span{0, static_cast<std::uint32_t>(file.text.size())}));
    edit.Set("newText", Json::Text(std::move(text)));
    return edits;
}

}  // namespace tavrel::script_lsp
