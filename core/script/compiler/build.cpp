// Files are parsed in the order in which imports first mention them, depth first, and compiled together only when every
// one of them parsed. A file is known by the fold of its name, so that it is read once however it is written.
#include "core/script/compiler/build.h"

#include <unordered_set>
#include <utility>

#include "core/script/compiler/compile.h"
#include "core/script/source/fold.h"
#include "core/script/syntax/parse.h"

namespace tavrel::core::script {

namespace {

// What an import line would call the main script: its file name without folder and extension, folded.
std::string MainKey(const std::string& sourceName) {
    std::size_t slash = sourceName.find_last_of("/\\");
    std::string name = slash == std::string::npos ? sourceName : sourceName.substr(slash + 1);
    constexpr std::string_view Extension = ".tvl";
    if (name.ends_with(Extension)) name.resize(name.size() - Extension.size());
    return FoldName(name);
}

// Loads what a script imports, depth first in the order of first mention. The chain of files being followed is a
// stack of its own, since a hostile chain is as long as there are files.
class Resolver {
public:
    Resolver(const ImportLoader& importLoader, Diagnostics& reports, std::vector<Unit>& parsed, std::string mainKey)
        : loader(importLoader), diagnostics(reports), units(parsed) {
        Open(std::move(mainKey), 0);
    }

    // True when every import was found and parsed.
    bool Follow() {
        bool result = true;
        while (!chain.empty()) {
            File& file = chain.back();
            if (file.next < units[file.unit].imports.size()) {
                result = Import(file.unit, file.next++) && result;
                continue;
            }
            open.erase(file.key);
            chain.pop_back();
            // Nothing further could be reported, so nothing further is loaded.
            if (!chain.empty() && diagnostics.Full()) return false;
        }
        return result;
    }

private:
    // A file whose imports are being followed.
    struct File {
        std::string key;
        std::size_t unit;
        std::size_t next;  // into the imports of the unit
    };

    void Open(std::string key, std::size_t unit) {
        seen.insert(key);
        open.insert(key);
        chain.push_back({std::move(key), unit, 0});
    }

    bool Import(std::size_t importer, std::size_t index) {
        const std::string name = units[importer].imports[index];
        Span span = units[importer].importSpans[index];
        std::string key = FoldName(name);
        if (open.contains(key)) {
            ReportCycle(importer, span, key);
            return false;
        }
        if (seen.contains(key)) return true;
        SourceFile loaded;
        if (!loader(name, loaded)) {
            diagnostics.Add(units[importer].source, span, "nao achei o arquivo \"" + name + "\"",
                            "ele fica em scripts/, com a extensao .tvl");
            return false;
        }
        Unit unit;
        bool parsed = Parse(std::move(loaded), diagnostics, unit);
        units.push_back(std::move(unit));
        Open(std::move(key), units.size() - 1);
        return parsed;
    }

    void ReportCycle(std::size_t importer, Span span, const std::string& key) {
        if (diagnostics.Full()) return;
        std::string message = "as importacoes fazem um ciclo: ";
        for (const File& file : chain) message += file.key + " -> ";
        diagnostics.Add(units[importer].source, span, message + key,
                        "um arquivo importado nao pode importar, direta ou indiretamente, quem o importou");
    }

    const ImportLoader& loader;
    Diagnostics& diagnostics;
    std::vector<Unit>& units;
    std::unordered_set<std::string> seen;  // keys of every file loaded so far
    std::unordered_set<std::string> open;  // keys of the chain
    std::vector<File> chain;               // from the main script down
};

}  // namespace

bool BuildWithImports(SourceFile source, const ImportLoader& loader, Diagnostics& diagnostics, Program& program,
                      const Api* api) {
    std::string mainKey = MainKey(source.name);
    std::vector<Unit> units(1);
    bool parsed = Parse(std::move(source), diagnostics, units[0]);
    bool followed = Resolver(loader, diagnostics, units, std::move(mainKey)).Follow();
    return parsed && followed && Compile(std::move(units), diagnostics, program, api);
}

bool Build(std::vector<SourceFile> files, Diagnostics& diagnostics, Program& program, const Api* api) {
    if (files.empty()) {
        diagnostics.Add(SourceFile(), {}, "nao ha nenhum arquivo de script para compilar", {});
        return false;
    }
    std::vector<Unit> units;
    bool parsed = true;
    for (SourceFile& file : files) {
        units.emplace_back();
        parsed = Parse(std::move(file), diagnostics, units.back()) && parsed;
    }
    return parsed && Compile(std::move(units), diagnostics, program, api);
}

}  // namespace tavrel::core::script
