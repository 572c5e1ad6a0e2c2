#include "tests/backend/support/BackendTestSupport.h"
#include "tests/quorvix/converter/OutputDirectory.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/Processes.h"
#include "tests/support/TempDir.h"
#include "tests/support/WaitUntil.h"
#include "tests/system/ProgramRun.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <random>

namespace VX::Test
{

namespace
{

using testing::HasSubstr;

/// An installation whose converter does what the STEP file says (FakeConverter.cpp).
class Installation
{
public:
    Installation()
    {
        std::filesystem::create_directory(bin_);
        for (const char* program : {"Quorvix", "quorvix-backend"})
            std::filesystem::copy_file(std::filesystem::path(QX_BIN_DIR) / program, bin_ / program);
        std::filesystem::copy_file(fakeConverter(), bin_ / "quorvix-convert");
        std::filesystem::create_directory_symlink(QX_BIN_DIR "/../lib", folder_.path() / "lib");
    }

    [[nodiscard]] std::filesystem::path program(const char* name) const { return bin_ / name; }

private:
    TempDir folder_;
    std::filesystem::path bin_ = folder_.path() / "bin";
};

class FailedConversion : public OutputDirectoryTest
{
protected:
    /// Starts the program with a STEP file that says `command`.
    [[nodiscard]] RunningProgram startWith_(const std::string& command) const
    {
        return run_.start({run_.folder().write("part.step", command).string(), "-sceneInfo", "-"});
    }

    [[nodiscard]] ProgramResult runWith_(const std::string& command) const { return startWith_(command).wait(); }

    /// Starts the program and waits until its converter runs, which goes on for ever.
    [[nodiscard]] RunningProgram startConversion_() const
    {
        RunningProgram program = startWith_("wait " + (run_.folder().path() / "never").string());
        EXPECT_TRUE(waitUntil([&] { return !readLines(conversions_).empty(); }));
        return program;
    }

    /// Kills one service after another until the program has ended. A request that is under way when its service dies
    /// fails; one that comes a moment later waits for the next service and knows nothing of it.
    void killServices_(const RunningProgram& program) const
    {
        const auto log = run_.userFolder().path() / "state/Quorvix/log/services.log";
        std::size_t killed = 0;
        EXPECT_TRUE(waitUntil(
            [&]
            {
                const auto lines = readLines(log);
                const auto serving = std::ranges::count_if(lines, [](const auto& line)
                                                           { return line.find("Serving on") != std::string::npos; });
                if (static_cast<std::size_t>(serving) > killed)
                {
                    ++killed;
                    for (const int service : childrenOf(program.id()))
                        ::kill(service, SIGKILL);
                }
                return !isRunning(program.id());
            }));
    }

    /// No more bytes than compression leaves of them.
    static std::string noise_(std::size_t size)
    {
        std::mt19937 random(1); // NOLINT(cert-msc51-cpp): the same bytes each time
        std::string bytes(size, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        return bytes;
    }

    [[nodiscard]] std::vector<int> processes_() const
    {
        return processesWithEnvironment("XDG_DATA_HOME=" + (run_.userFolder().path() / "data").string());
    }

    /// The files, not the folders, in the output directory.
    static std::vector<std::filesystem::path> outputFiles_()
    {
        std::vector<std::filesystem::path> files;
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(ConverterService::serviceOutputDirectory()))
        {
            if (!entry.is_directory())
                files.push_back(entry.path());
        }
        return files;
    }

    const Installation installation_;
    const ProgramRun run_{installation_.program("Quorvix")};
    const std::filesystem::path conversions_ = run_.folder().path() / "conversions";
    const EnvironmentVariable log_{"FAKE_CONVERTER_LOG", conversions_.string()};
};

TEST_F(FailedConversion, EndsInAMessageWhenTheServiceIsKilled)
{
    RunningProgram program = startConversion_();
    killServices_(program);
    const auto result = program.wait();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors,
              "Cannot open \"part.step\".\nConnection error\n\nThe conversion service could not be reached, or the "
              "connection to it broke off. Open the file again; where that does not help, start the program again.\n");
}

TEST_F(FailedConversion, GoesOnInTheNextServiceWhenOneIsKilled)
{
    RunningProgram program = startConversion_();
    for (const int service : childrenOf(program.id()))
        ::kill(service, SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return readLines(conversions_).size() == 2; }));
}

TEST_F(FailedConversion, LeavesNoProcessesWhenTheServiceIsKilled)
{
    RunningProgram program = startConversion_();
    killServices_(program);
    static_cast<void>(program.wait());
    EXPECT_TRUE(waitUntil([&] { return processes_().empty(); }));
}

TEST_F(FailedConversion, SaysThatTheServiceIsNotInstalled)
{
    std::filesystem::remove(installation_.program("quorvix-backend"));
    const auto result = runWith_("succeed");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "Cannot open \"part.step\".\nConnection error\n\nThe conversion service of this computer "
                             "cannot be started. Cannot start \"quorvix-backend\": no such file or directory.\n");
}

TEST_F(FailedConversion, SaysThatTheConverterIsNotInstalled)
{
    std::filesystem::remove(installation_.program("quorvix-convert"));
    const auto result = runWith_("succeed");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("The converter could not be started. Install the program again."));
}

TEST_F(FailedConversion, SaysThatTheConverterCrashed)
{
    const auto result = runWith_("crash");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "Cannot open \"part.step\".\nThe converter stopped unexpectedly. The file may be damaged: "
                             "export it again from the program that wrote it.\n");
}

TEST_F(FailedConversion, SaysWhatTheConverterSays)
{
    const auto result = runWith_("fail The file holds no shape.");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "Cannot open \"part.step\".\nThe file holds no shape.\n");
}

TEST_F(FailedConversion, SaysThatTheConvertedFileIsDamaged)
{
    const auto result = runWith_("succeed in writing no scene");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr("Cannot open \"part.step\".\nCannot open \"part.vxu\": "));
}

TEST_F(FailedConversion, LeavesNoFilesInTheOutputDirectory)
{
    static_cast<void>(runWith_("fail"));
    EXPECT_THAT(outputFiles_(), testing::IsEmpty());
}

TEST_F(FailedConversion, NamesAFileThatMayNotBeRead)
{
    if (!renounceReadingEveryFile())
        GTEST_SKIP() << "this user may read every file";
    const auto file = run_.folder().write("part.step", "succeed");
    std::filesystem::permissions(file, std::filesystem::perms::none);
    const auto result = run_.run({file.string(), "-sceneInfo", "-"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "Cannot open \"part.step\": permission denied.\n");
}

TEST_F(FailedConversion, NamesTheFullDiskOfTheOutputDirectory)
{
    QX_NEED_PRIVATE_ROOT();
    const auto small = MountScope::makeSmall(ConverterService::serviceOutputDirectory(), 64U << 10U);
    const auto result = runWith_(noise_(128U << 10U));
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "Cannot open \"part.step\".\nerrno 28\n\nThe disk that holds /.service_output_files is "
                             "full. Free some space and open the file again.\n");
}

TEST_F(FailedConversion, SaysThatTheServiceHasNoRoomToStart)
{
    QX_NEED_PRIVATE_ROOT();
    const auto data = run_.userFolder().path() / "data";
    std::filesystem::create_directory(data);
    const auto small = MountScope::makeSmall(data, 4096);
    const auto result = runWith_("succeed");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "Cannot open \"part.step\".\nConnection error\n\nThe conversion service of this computer "
                             "cannot be started. The disk of the conversion service is full. Free some space and try "
                             "again.\n");
}

TEST_F(FailedConversion, SaysThatTheServiceHasNoRoomForTheFile)
{
    QX_NEED_PRIVATE_ROOT();
    const auto data = run_.userFolder().path() / "data";
    std::filesystem::create_directory(data);
    const auto small = MountScope::makeSmall(data, 512U << 10U);
    const auto result = runWith_(noise_(1U << 20U));
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "Cannot open \"part.step\".\nHTTP 507: Insufficient Storage\n\nThe disk of the conversion "
                             "service is full. Free some space and open the file again.\n");
}

class InterruptedConversion : public FailedConversion, public testing::WithParamInterface<int>
{
};

TEST_P(InterruptedConversion, IsSaidAndEndsWithOne)
{
    RunningProgram program = startConversion_();
    program.send(GetParam());
    const auto result = program.wait();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "Quorvix was asked to end before it was done: nothing was written.\n");
    EXPECT_EQ(result.output, "");
}

TEST_P(InterruptedConversion, LeavesNoProcesses)
{
    RunningProgram program = startConversion_();
    program.send(GetParam());
    static_cast<void>(program.wait());
    EXPECT_THAT(processes_(), testing::IsEmpty());
}

TEST_P(InterruptedConversion, LeavesNoFilesInTheOutputDirectory)
{
    RunningProgram program = startConversion_();
    program.send(GetParam());
    static_cast<void>(program.wait());
    EXPECT_THAT(outputFiles_(), testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(By, InterruptedConversion, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST_F(FailedConversion, LeavesNoProcessesWhenTheProgramIsKilled)
{
    RunningProgram program = startConversion_();
    program.send(SIGKILL);
    static_cast<void>(program.wait());
    EXPECT_TRUE(waitUntil([&] { return processes_().empty(); }));
}

} // namespace

} // namespace VX::Test
