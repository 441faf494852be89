// The language server proper: one JSON-RPC message in, the texts to send back out. It keeps the text of the open
// documents and nothing else, so every answer is worked out anew from what the editor shows, and an open document wins
// over the disk. It reads files only through the loader it was given, and throws nothing of its own.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "core/json.h"
#include "core/script/source/source_file.h"
#include "core/script/world/world_api.h"
#include "script_lsp/position.h"

namespace tavrel::script_lsp {

// Reads the file of a path, both UTF-8; false when there is none to read.
using FileLoader = std::function<bool(const std::string& path, std::string& out)>;

class Server {
public:
    // `givenApi` is not owned and may be null, for a server without a world; so may the loader.
    Server(const core::script::Api* givenApi, FileLoader givenLoader);

    // Answers one message with complete JSON texts, at most one. Any bytes are accepted; what cannot be understood is
    // answered with an error or not at all.
    [[nodiscard]] std::vector<std::string> Handle(const std::string& message);

    // The text of an open document, null for one that is not open; valid until the next message.
    [[nodiscard]] const std::string* Document(const std::string& uri) const;

    // The document as a source named by its path; empty when it is not open.
    [[nodiscard]] core::script::SourceFile FileOf(const std::string& uri) const;

    // Compiles the document with its imports and gives the notification with its own faults.
    [[nodiscard]] std::string Diagnose(const std::string& uri) const;

    // One edit of the whole document, or none where it has its layout already or can have none (see TryFormat).
    [[nodiscard]] core::Json Formatting(const std::string& uri) const;

    // What may be written at a place: the members of the dotted name before it, or every name there is.
    [[nodiscard]] core::Json Completion(const std::string& uri, Position position) const;

    // One line on the name at a place, null where there is none.
    [[nodiscard]] core::Json Hover(const std::string& uri, Position position) const;

    // Where the name at a place is declared, in the document or a file that it imports; null where nothing is found.
    [[nodiscard]] core::Json Definition(const std::string& uri, Position position) const;

    const core::script::Api* api = nullptr;
    FileLoader loader;
    std::map<std::string, std::string> documents;  // by URI, exactly as the client spells it
    bool exited = false;                           // the client said "exit"

private:
    struct Request;
    struct Method;
    static const Method Methods[];

    // The file that a document in `folder` imports by that name, with its current text: that of the open document, else
    // that of the disk. False when there is neither.
    [[nodiscard]] bool FindImport(const std::string& folder, const std::string& name,
                                  core::script::SourceFile& out) const;

    [[nodiscard]] std::string Initialize(const Request& request);
    [[nodiscard]] std::string Initialized(const Request& request);
    [[nodiscard]] std::string Shutdown(const Request& request);
    [[nodiscard]] std::string Exit(const Request& request);
    [[nodiscard]] std::string DidOpen(const Request& request);
    [[nodiscard]] std::string DidChange(const Request& request);
    [[nodiscard]] std::string DidSave(const Request& request);
    [[nodiscard]] std::string DidClose(const Request& request);
    [[nodiscard]] std::string AnswerFormatting(const Request& request);
    [[nodiscard]] std::string AnswerCompletion(const Request& request);
    [[nodiscard]] std::string AnswerHover(const Request& request);
    [[nodiscard]] std::string AnswerDefinition(const Request& request);
};

}  // namespace tavrel::script_lsp
