#include "launcher/ConversionErrors.h"

#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

namespace VX
{

namespace
{

class ConversionErrors : public testing::Test
{
protected:
    [[nodiscard]] std::string explain_(const std::string& error, const std::string& serviceFailure = {}) const
    {
        return explainConversionError({.error = error,
                                       .input = "/home/user/part.step",
                                       .outputDirectory = folder_.path(),
                                       .serviceFailure = serviceFailure});
    }

    const VX::Test::TempDir folder_;
};

TEST_F(ConversionErrors, NamesTheFileAboveTheError)
{
    EXPECT_EQ(explain_("The file is empty."), "Cannot open \"part.step\".\nThe file is empty.");
}

TEST_F(ConversionErrors, TakesOnlyABareNumberForASystemError)
{
    for (const std::string text : {"errno", "errno ", "errno x", "errno 28 of 30", "an errno 28"})
        EXPECT_EQ(explain_(text), "Cannot open \"part.step\".\n" + text);
}

TEST_F(ConversionErrors, LeavesACancelAsItIs)
{
    EXPECT_EQ(explain_("Operation was canceled"), "Operation was canceled");
}

TEST_F(ConversionErrors, HasWordsWhereTheServiceHasNone)
{
    EXPECT_EQ(explain_(""), "Cannot open \"part.step\".\nThe conversion service gave no reason. Open the file again.");
}

TEST_F(ConversionErrors, ExplainsAFullDisk)
{
    const auto text = explain_("errno 28");
    EXPECT_TRUE(text.starts_with("Cannot open \"part.step\".\nerrno 28\n\nThe disk that holds ")) << text;
    EXPECT_TRUE(text.ends_with(" is full. Free some space and open the file again.")) << text;
}

TEST_F(ConversionErrors, ExplainsAnErrorThatItDoesNotKnowInTheSystemsWords)
{
    EXPECT_EQ(explain_("errno 5"), "Cannot open \"part.step\".\nerrno 5\n\nInput/output error.");
}

TEST_F(ConversionErrors, ExplainsABrokenConnection)
{
    EXPECT_EQ(explain_("Connection error"),
              "Cannot open \"part.step\".\nConnection error\n\nThe conversion service could not be reached, or the "
              "connection to it broke off. Open the file again; where that does not help, start the program again.");
}

TEST_F(ConversionErrors, SaysWhyTheServiceDoesNotRun)
{
    EXPECT_EQ(explain_("Connection error", "The service is not installed."),
              "Cannot open \"part.step\".\nConnection error\n\nThe service is not installed.");
}

TEST_F(ConversionErrors, BlamesNoServiceForAnotherError)
{
    EXPECT_EQ(explain_("The file is empty.", "The service is not installed."),
              "Cannot open \"part.step\".\nThe file is empty.");
}

TEST_F(ConversionErrors, ExplainsARefusedTransfer)
{
    EXPECT_EQ(explain_("HTTP 507: Insufficient Storage"),
              "Cannot open \"part.step\".\nHTTP 507: Insufficient Storage\n\nThe disk of the conversion service is "
              "full. Free some space and open the file again.");
    EXPECT_EQ(explain_("HTTP 500"), "Cannot open \"part.step\".\nHTTP 500\n\nThe conversion service did not accept the "
                                    "file. Open it again later.");
}

TEST_F(ConversionErrors, NamesTheCommandThatCreatesAMissingOutputFolder)
{
    EXPECT_EQ(
        explainConversionError(
            {.error = "errno 13", .input = "part.step", .outputDirectory = "/missing.folder/", .serviceFailure = {}}),
        "Cannot open \"part.step\".\nerrno 13\n\nThe folder /missing.folder for conversions cannot be created: "
        "Permission denied. An administrator creates it once with this command:\n\nsudo install -d -m 1777 "
        "/missing.folder");
}

} // namespace

} // namespace VX
