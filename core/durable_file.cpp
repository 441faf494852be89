// The order of the steps is what makes the write durable: the content is on the disk under another name before the
// exchange of names, which the system does in one step, and the folder's entry is on the disk behind it. A step that
// fails before the exchange leaves the old file and takes the temporary away. A failure that was armed for a step
// counts only where the real operation went well, and for the exchange in its place, so that the clean-up is the real
// one.
#include "core/durable_file.h"

#include <atomic>
#include <fstream>
#include <system_error>
#include <utility>

#include "core/platform.h"

namespace tavrel::core {

namespace {

namespace fs = std::filesystem;

constexpr std::int32_t FolderNotCreated = 2;
constexpr std::int32_t NotStored = 3;
constexpr std::int32_t NotReplaced = 4;
constexpr std::int32_t NotProduced = 5;

constexpr const char* Preserved = "O arquivo anterior foi preservado.";

std::atomic<WriteStep> injected = WriteStep::None;

// Whether a failure was armed for this step. It fires once.
bool Fires(WriteStep step) {
    return injected.compare_exchange_strong(step, WriteStep::None);
}

bool CreateParent(const fs::path& target) {
    if (!target.has_parent_path()) return true;
    std::error_code error;
    fs::create_directories(target.parent_path(), error);
    return !error && !Fires(WriteStep::CreateFolder);
}

// The name is fixed, so a crash leaves at most one temporary, and the next write takes it over.
fs::path TemporaryFor(const fs::path& target) {
    fs::path temporary = target;
    temporary += ".tmp";
    return temporary;
}

void Remove(const fs::path& file) {
    std::error_code ignored;
    fs::remove(file, ignored);
}

// Truncating a name that shares its bytes with another file, or leads to where one may be made, would lose that other
// file, perhaps the very target. Such a name in the temporary's place goes away alone.
void DropAlias(const fs::path& temporary) {
    std::error_code error;
    const fs::file_status reached = fs::status(temporary, error);
    if (reached.type() != fs::file_type::regular && reached.type() != fs::file_type::not_found) return;
    const bool link = fs::is_symlink(fs::symlink_status(temporary, error));
    const std::uintmax_t names = fs::hard_link_count(temporary, error);
    if (link || (!error && names > 1)) Remove(temporary);
}

// One write on its way. Until the exchange has happened, every failure takes the temporary away.
class DurableWrite {
public:
    explicit DurableWrite(const fs::path& file) : target(file), temporary(TemporaryFor(file)) {}

    WriteResult Run(const ContentProducer& producer, FileEncoding encoding) {
        if (!CreateParent(target))
            return Failure(FolderNotCreated, "não foi possível criar a pasta de " + Name() + ".");
        WriteResult result = Fill(producer, encoding);
        if (result.code == 0) result = Exchange();
        if (result.code != 0) {
            Remove(temporary);
            return result;
        }
        return Confirm();
    }

private:
    // Tests the stream after the close, which makes the last flush: a full disk may show itself only there.
    WriteResult Fill(const ContentProducer& producer, FileEncoding encoding) {
        DropAlias(temporary);
        std::ofstream stream(temporary, encoding == FileEncoding::Bytes
                                            ? std::ios::out | std::ios::trunc | std::ios::binary
                                            : std::ios::out | std::ios::trunc);
        if (!stream || Fires(WriteStep::OpenTemporary)) return NotWritten();
        std::string reason;
        const bool produced = producer(stream, reason);
        stream.close();
        if (!produced && reason.empty()) reason = "o conteúdo de " + Name() + " não pôde ser produzido.";
        if (!produced) return Failure(NotProduced, std::move(reason));
        if (!stream || Fires(WriteStep::Write)) return NotWritten();
        return {};
    }

    WriteResult Exchange() const {
        if (!platform::SyncFile(temporary) || Fires(WriteStep::Sync)) {
            return Failure(NotStored, "não foi possível gravar " + Name() +
                                          " no disco (o disco recusou a sincronização). " + Preserved);
        }
        if (Fires(WriteStep::Replace) || !win32::ReplaceDurably(temporary, target)) {
            return Failure(NotReplaced, "não foi possível substituir " + Name() +
                                            "; ele pode estar protegido contra escrita ou aberto em outro programa. " +
                                            Preserved);
        }
        return {};
    }

    WriteResult Confirm() const {
        if (platform::SyncDirectory(target.parent_path())) return {};
        return Failure(NotStored, Name() +
                                      " foi trocado, mas a pasta não confirmou a troca no disco; depois de uma queda "
                                      "de energia ele pode voltar a ser o anterior.");
    }

    WriteResult NotWritten() const {
        return Failure(NotStored, "não foi possível gravar " + Name() + " (disco cheio ou pasta sem permissão).");
    }

    WriteResult Failure(std::int32_t code, std::string message) const {
        return {code, Utf8Of(target), std::move(message)};
    }

    std::string Name() const { return Utf8Of(target.filename()); }

    const fs::path& target;
    const fs::path temporary;
};

}  // namespace

WriteResult WriteFileDurably(const fs::path& target, const ContentProducer& producer, FileEncoding encoding) {
    return DurableWrite(target).Run(producer, encoding);
}

WriteResult WriteFileDurably(const fs::path& target, const std::string& text, FileEncoding encoding) {
    const auto writeText = [&text](std::ostream& stream, std::string&) {
        stream.write(text.data(), static_cast<std::streamsize>(text.size()));
        return true;
    };
    return WriteFileDurably(target, writeText, encoding);
}

bool WriteFileReplacing(const fs::path& target, const std::string& text, std::string& error) {
    WriteResult result = WriteFileDurably(target, text, FileEncoding::Bytes);
    if (result.code == 0) return true;
    error = std::move(result.message);
    return false;
}

void InjectWriteFailure(WriteStep step) {
    injected = step;
}

}  // namespace tavrel::core
