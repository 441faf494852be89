#include "core/durable_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <iterator>
#include <random>
#ifdef __linux__
#include <sched.h>
#include <sys/mount.h>
#endif

namespace tavrel::core {
namespace {

namespace fs = std::filesystem;

constexpr const char* NotWritten = "não foi possível gravar ação.tvl (disco cheio ou pasta sem permissão).";
constexpr const char* NotSynced =
    "não foi possível gravar ação.tvl no disco (o disco recusou a sincronização). O arquivo anterior foi preservado.";
constexpr const char* NotReplaced =
    "não foi possível substituir ação.tvl; ele pode estar protegido contra escrita ou aberto em outro programa. O "
    "arquivo anterior foi preservado.";
constexpr const char* NotConfirmed =
    "ação.tvl foi trocado, mas a pasta não confirmou a troca no disco; depois de uma queda de energia ele pode voltar "
    "a ser o anterior.";
constexpr const char* NoFolder = "não foi possível criar a pasta de ação.tvl.";

std::string Read(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void Write(const fs::path& file, const std::string& content) {
    std::ofstream(file, std::ios::binary) << content;
}

class DurableFileTest : public testing::Test {
protected:
    void SetUp() override {
        folder = fs::path(testing::TempDir()) / ("tavrel_durable_" + std::to_string(std::random_device{}()));
        fs::create_directories(folder);
        target = folder / "ação.tvl";
        temporary = folder / "ação.tvl.tmp";
        Write(target, "antes");
    }
    void TearDown() override {
        InjectWriteFailure(WriteStep::None);
        fs::permissions(folder, fs::perms::owner_all);
        fs::remove_all(folder);
    }

    void ExpectFailure(const WriteResult& result, int code, const std::string& message) const {
        EXPECT_EQ(result.code, code);
        EXPECT_EQ(result.message, message);
        EXPECT_EQ(result.path, target.string());
        EXPECT_FALSE(fs::exists(fs::symlink_status(temporary)));
    }

    // For a child process with its own view of the system: tells how the write ended, by its code and on standard
    // error. A code of 99 says that the target or the temporary is not as it should be.
    [[noreturn]] void WriteAndExit(const std::string& text, const std::string& left) const {
        const WriteResult result = WriteFileDurably(target, text, FileEncoding::Bytes);
        if (Read(target) != left || fs::exists(temporary)) _exit(99);
        std::fputs(result.message.c_str(), stderr);
        _exit(result.code);
    }

    fs::path folder, target, temporary;
};

TEST_F(DurableFileTest, EachInjectedFailureFiresOnceAndKeepsTheOldFile) {
    const struct {
        WriteStep step;
        int code;
        const char* message;
    } cases[] = {{WriteStep::CreateFolder, 2, NoFolder},
                 {WriteStep::OpenTemporary, 3, NotWritten},
                 {WriteStep::Write, 3, NotWritten},
                 {WriteStep::Sync, 3, NotSynced},
                 {WriteStep::Replace, 4, NotReplaced}};
    for (const auto& item : cases) {
        SCOPED_TRACE(static_cast<int>(item.step));
        Write(target, "antes");
        InjectWriteFailure(item.step);
        ExpectFailure(WriteFileDurably(target, "depois\r\n", FileEncoding::Bytes), item.code, item.message);
        EXPECT_EQ(Read(target), "antes");
        const WriteResult second = WriteFileDurably(target, "depois\r\n", FileEncoding::Bytes);
        EXPECT_EQ(second.code, 0);
        EXPECT_EQ(second.message + second.path, "");
        EXPECT_EQ(Read(target), "depois\r\n");
        EXPECT_FALSE(fs::exists(temporary));
    }
}

TEST_F(DurableFileTest, AStepNotReachedStaysArmed) {
    const auto refuse = [](std::ostream&, std::string&) { return false; };
    InjectWriteFailure(WriteStep::Write);
    ExpectFailure(WriteFileDurably(target, refuse, FileEncoding::Bytes), 5,
                  "o conteúdo de ação.tvl não pôde ser produzido.");
    ExpectFailure(WriteFileDurably(target, "depois", FileEncoding::Bytes), 3, NotWritten);
    const auto refuseAloud = [](std::ostream& stream, std::string& reason) {
        return !(stream << (reason = "sem dados"));
    };
    ExpectFailure(WriteFileDurably(target, refuseAloud, FileEncoding::Bytes), 5, "sem dados");

    const fs::path before = fs::current_path();
    fs::current_path(folder);
    InjectWriteFailure(WriteStep::CreateFolder);  // a bare name asks for no folder
    EXPECT_EQ(WriteFileDurably("ação.tvl", "depois", FileEncoding::Bytes).code, 0);
    fs::current_path(before);
    std::string error;
    EXPECT_FALSE(WriteFileReplacing(target, "fim", error));
    EXPECT_EQ(error, NoFolder);
    EXPECT_EQ(Read(target), "depois");
}

TEST_F(DurableFileTest, MissingFoldersAreMadeUnlessAFileIsInTheirPlace) {
    EXPECT_EQ(WriteFileDurably(folder / "a" / "b" / "c.tvl", "novo", FileEncoding::Bytes).code, 0);
    EXPECT_EQ(Read(folder / "a" / "b" / "c.tvl"), "novo");
    target = target / "ação.tvl";
    ExpectFailure(WriteFileDurably(target, "novo", FileEncoding::Bytes), 2, NoFolder);
    EXPECT_EQ(Read(target.parent_path()), "antes");
}

TEST_F(DurableFileTest, AFolderAtTheTargetStaysAndALinkGivesWay) {
    const fs::path kept = folder / "guardado";
    fs::rename(target, kept);
    fs::create_directory(target);
    ExpectFailure(WriteFileDurably(target, "depois", FileEncoding::Bytes), 4, NotReplaced);
    EXPECT_TRUE(fs::is_directory(target));

    fs::remove(target);
    fs::create_symlink(kept, target);
    EXPECT_EQ(WriteFileDurably(target, "depois", FileEncoding::Bytes).code, 0);
    EXPECT_FALSE(fs::is_symlink(target));
    EXPECT_EQ(Read(target), "depois");
    EXPECT_EQ(Read(kept), "antes");
}

TEST_F(DurableFileTest, AStaleTemporaryIsTakenOverButNothingIsWrittenThroughIt) {
    const fs::path absent = folder / "ausente";
    for (const char* kind : {"file", "link", "name", "dangling"}) {
        SCOPED_TRACE(kind);
        if (*kind == 'f') Write(temporary, "um resto mais longo que o texto");
        if (*kind == 'l') fs::create_symlink(target, temporary);
        if (*kind == 'n') fs::create_hard_link(target, temporary);
        if (*kind == 'd') fs::create_symlink(absent, temporary);
        InjectWriteFailure(WriteStep::Replace);
        ExpectFailure(WriteFileDurably(target, "depois", FileEncoding::Bytes), 4, NotReplaced);
        EXPECT_EQ(Read(target), "antes");
        EXPECT_FALSE(fs::exists(absent));
    }
    Write(temporary, "um resto mais longo que o texto");
    EXPECT_EQ(WriteFileDurably(target, "depois", FileEncoding::Bytes).code, 0);
    EXPECT_EQ(Read(target), "depois");
}

// As root the permissions of a folder mean nothing, so the child gives that up first.
TEST_F(DurableFileTest, PermissionsOfTheFolderShowInTheResult) {
    const auto write = [&](const std::string& left) {
        if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) _exit(98);
        WriteAndExit("depois", left);
    };
    fs::permissions(folder, static_cast<fs::perms>(0555));
    EXPECT_EXIT(write("antes"), testing::ExitedWithCode(3), "gravar ação.tvl .disco cheio ou pasta sem permissão.\\.$");
    fs::permissions(folder, static_cast<fs::perms>(0333));
    EXPECT_EXIT(write("depois"), testing::ExitedWithCode(3), NotConfirmed);
}

// A disk of 64 KiB where this process may mount one, else a limit on the size of files, which also ends a write
// halfway.
TEST_F(DurableFileTest, AFullDiskKeepsTheOldFile) {
    const auto mountSmallDisk = [&] {
#ifdef __linux__
        return unshare(CLONE_NEWNS) == 0 && mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr) == 0 &&
               mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=64k") == 0;
#else
        return false;
#endif
    };
    const auto write = [&] {
        const rlimit limit{65'536, 65'536};
        if (!mountSmallDisk() && (std::signal(SIGXFSZ, SIG_IGN) == SIG_ERR || setrlimit(RLIMIT_FSIZE, &limit) != 0))
            _exit(98);
        Write(target, "antes");
        WriteAndExit(std::string(4'000'000, 'x'), "antes");
    };
    EXPECT_EXIT(write(), testing::ExitedWithCode(3), "gravar ação.tvl .disco cheio ou pasta sem permissão.\\.$");
}

// Devices stand in for a disk that fills up at the last flush, and for one that refuses to sync.
TEST_F(DurableFileTest, AFailureOfTheLastFlushOrOfTheSyncKeepsTheOldFile) {
    fs::create_symlink("/dev/full", temporary);
    ExpectFailure(WriteFileDurably(target, "depois", FileEncoding::Bytes), 3, NotWritten);
    fs::create_symlink("/dev/null", temporary);
    ExpectFailure(WriteFileDurably(target, "depois", FileEncoding::Bytes), 3, NotSynced);
    EXPECT_EQ(Read(target), "antes");
}

}  // namespace
}  // namespace tavrel::core
