#include "launcher/UiDocument.h"

#include "tests/support/TempConfig.h"
#include "tests/support/TempDir.h"
#include <quorvix/menu/QuorvixRibbonMenu.h>

#include <VXMesh/UserFolders.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/Viewer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

namespace VX
{

namespace
{

using ::testing::IsEmpty;
using ::testing::StartsWith;

class UiDocumentTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        getViewerInstance().reset();
        getViewerInstance().setMenuPlugin(menu_);
    }

    void TearDown() override { getViewerInstance().reset(); }

    /// Sources of which no file is there.
    [[nodiscard]] UiDocumentSources nowhere_() const
    {
        return {std::nullopt, folder_.path() / "user" / "ui.json", folder_.path() / "system" / "ui.json"};
    }

    /// The sentence for a file of this content that the command line names.
    [[nodiscard]] std::string errorFor_(const std::string& content) const
    {
        UiDocumentSources sources = nowhere_();
        sources.argument = folder_.write("ui.json", content);
        const auto document = readUiDocument(sources);
        return document ? "" : document.error();
    }

    /// Which of the documents in `sources` was read: what its member "from" says.
    static std::string from_(const UiDocumentSources& sources)
    {
        const auto document = readUiDocument(sources);
        EXPECT_TRUE(document) << document.error();
        return document && *document ? (**document)["from"].asString() : "nowhere";
    }

    /// Lets the program take on the document. @return what it said on standard error
    static std::string apply_(const UiDocumentSources& sources)
    {
        testing::internal::CaptureStderr();
        applyUiDocumentWhenReady(sources);
        CommandLoop::processCommands(StartPosition::MenuReady);
        return testing::internal::GetCapturedStderr();
    }

    const VX::Test::TempConfig config_;
    const VX::Test::TempDir folder_;
    const std::shared_ptr<QuorvixRibbonMenu> menu_ = std::make_shared<QuorvixRibbonMenu>();
};

TEST_F(UiDocumentTest, isLookedForInTheUsersFolderAndTheSystems)
{
    const auto sources = uiDocumentSources("a.json");
    EXPECT_EQ(sources.argument, "a.json");
    EXPECT_EQ(sources.user, getUserConfigDir() / "ui.json");
    EXPECT_EQ(sources.system, "/etc/quorvix/ui.json");
}

TEST_F(UiDocumentTest, isNotThereWithoutAFile)
{
    EXPECT_EQ(from_(nowhere_()), "nowhere");
}

TEST_F(UiDocumentTest, isTheOneThatTheCommandLineNames)
{
    auto sources = nowhere_();
    sources.user = folder_.write("user/ui.json", R"({"from": "user"})");
    sources.system = folder_.write("system/ui.json", R"({"from": "system"})");
    EXPECT_EQ(from_(sources), "user");
    sources.argument = folder_.write("argument.json", R"({"from": "argument"})");
    EXPECT_EQ(from_(sources), "argument");
}

TEST_F(UiDocumentTest, isTheSystemsWhereTheUserHasNone)
{
    auto sources = nowhere_();
    sources.system = folder_.write("system/ui.json", R"({"from": "system"})");
    EXPECT_EQ(from_(sources), "system");
}

TEST_F(UiDocumentTest, isNamedWhenItIsMissing)
{
    auto sources = nowhere_();
    sources.argument = folder_.path() / "missing.json";
    sources.system = folder_.write("system/ui.json", R"({"from": "system"})");
    const auto document = readUiDocument(sources);
    ASSERT_FALSE(document);
    EXPECT_EQ(document.error(), "Cannot open \"missing.json\": no such file or directory.");
}

TEST_F(UiDocumentTest, isNamedWhenItIsNoFile)
{
    auto sources = nowhere_();
    sources.argument = folder_.path();
    EXPECT_FALSE(readUiDocument(sources));
    sources.argument = "/dev/zero";
    EXPECT_EQ(readUiDocument(sources).error(), "Cannot open \"zero\": it is not a regular file.");
}

TEST_F(UiDocumentTest, isNamedWhenItIsNoJson)
{
    EXPECT_THAT(errorFor_("MenuLayout"), StartsWith("Cannot read \"ui.json\": line 1, column 1: "));
    EXPECT_THAT(errorFor_(R"({"MenuLayout": {}} {})"), StartsWith("Cannot read \"ui.json\": line 1, column "));
    EXPECT_THAT(errorFor_(""), StartsWith("Cannot read \"ui.json\": "));
}

TEST_F(UiDocumentTest, isNamedWhenItIsNoObject)
{
    EXPECT_EQ(errorFor_("[]"), "Cannot use \"ui.json\": a document of the interface is a JSON object.");
}

TEST_F(UiDocumentTest, isNamedWhenItIsNestedTooDeeply)
{
    EXPECT_EQ(errorFor_(std::string(500'000, '[')), "Cannot read \"ui.json\": it is nested too deeply.");
}

TEST_F(UiDocumentTest, mayHaveOneMegabyteAndNoMore)
{
    const std::string largest = "{}" + std::string(largestUiDocument - 2, ' ');
    EXPECT_EQ(errorFor_(largest), "");
    EXPECT_EQ(errorFor_(largest + ' '), "Cannot use \"ui.json\": it is larger than 1 MiB.");
}

TEST_F(UiDocumentTest, isTakenOnOnceTheMenuIsThere)
{
    auto sources = nowhere_();
    sources.user = folder_.write("user/ui.json", R"({"MenuLayout": {"drawLogo": false}})");
    applyUiDocumentWhenReady(sources);
    CommandLoop::processCommands(StartPosition::LoopStart);
    EXPECT_TRUE(menu_->quorvixMenuConfig().drawLogo);
    CommandLoop::processCommands(StartPosition::MenuReady);
    EXPECT_FALSE(menu_->quorvixMenuConfig().drawLogo);
}

TEST_F(UiDocumentTest, isNotMissedWhereThereIsNone)
{
    EXPECT_THAT(apply_(nowhere_()), IsEmpty());
    EXPECT_EQ(getViewerInstance().exitCode(), 0);
}

TEST_F(UiDocumentTest, letsTheProgramGoOnAndFailAtItsEndWhenTheOneNamedCannotBeRead)
{
    auto sources = nowhere_();
    sources.argument = folder_.path() / "missing.json";
    EXPECT_EQ(apply_(sources), "Cannot open \"missing.json\": no such file or directory.\n");
    EXPECT_EQ(menu_->quorvixMenuConfig(), QuorvixMenuUIConfig());
    EXPECT_EQ(getViewerInstance().exitCode(), 1);
}

TEST_F(UiDocumentTest, isAWarningWhereTheUsersOwnCannotBeRead)
{
    auto sources = nowhere_();
    sources.user = folder_.write("user/ui.json", "{");
    EXPECT_THAT(apply_(sources), StartsWith("Cannot read \"ui.json\": line 1, column "));
    EXPECT_EQ(getViewerInstance().exitCode(), 0);
}

} // namespace

} // namespace VX
