#include "tests/system/ProgramRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace VX::Test
{

namespace
{

using ::testing::HasSubstr;

constexpr const char* reshaping = R"({"MenuLayout": {"drawLogo": false}, "RibbonStructure": {"drawSceneList": false}})";

/// The document that reshapes the interface, in the hands of the program.
class UiDocument : public ::testing::Test
{
protected:
    /// Takes a picture of the window with these arguments besides. @return the content of its file
    [[nodiscard]] std::string picture_(std::vector<std::string> arguments, int expectedStatus = 0)
    {
        const auto file = program_.folder().path() / "window.png";
        arguments.insert(arguments.end(), {"-noTelemetry", "-windowShot", file.string()});
        const ProgramResult result = program_.run(arguments);
        EXPECT_EQ(result.status, expectedStatus) << result.errors;
        errors_ = result.errors;
        return readFile(file);
    }

    const ProgramRun program_;
    std::string errors_;
};

TEST_F(UiDocument, ReshapesTheInterfaceFromTheUsersFolderAndFromTheFileNamed)
{
    const std::string usual = picture_({});
    const auto document = program_.folder().write("other.json", reshaping);
    const std::string named = picture_({"-uiConfig", document.string()});
    program_.userFolder().write("config/Quorvix/ui.json", reshaping);
    const std::string users = picture_({});
    EXPECT_NE(named, usual);
    EXPECT_EQ(users, named);
}

TEST_F(UiDocument, LeavesTheInterfaceAsItIsWhereItIsDamaged)
{
    const std::string usual = picture_({});
    const auto document = program_.folder().write("other.json", std::string(500'000, '{'));
    EXPECT_EQ(picture_({"-uiConfig", document.string()}, 1), usual);
    EXPECT_THAT(errors_, HasSubstr("Cannot read \"other.json\": "));
}

} // namespace

} // namespace VX::Test
