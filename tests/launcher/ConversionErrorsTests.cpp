#include "launcher/ConversionErrors.h"

#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

namespace VX
{

namespace
{

TEST(ConversionErrors, LeavesOtherTextsAsTheyAre)
{
    const VX::Test::TempDir folder;
    for (const char* text : {"Connection error", "errno", "errno ", "errno x", "errno 28 of 30", ""})
        EXPECT_EQ(explainConversionError(text, folder.path()), text);
}

TEST(ConversionErrors, ExplainsAFullDisk)
{
    const VX::Test::TempDir folder;
    const auto text = explainConversionError("errno 28", folder.path());
    EXPECT_TRUE(text.starts_with("errno 28\n\nThe disk that holds ")) << text;
    EXPECT_TRUE(text.ends_with(" is full. Free some space and open the file again.")) << text;
}

TEST(ConversionErrors, ExplainsAnErrorThatItDoesNotKnowInTheSystemsWords)
{
    const VX::Test::TempDir folder;
    EXPECT_EQ(explainConversionError("errno 5", folder.path()), "errno 5\n\nInput/output error.");
}

TEST(ConversionErrors, NamesTheCommandThatCreatesAMissingOutputFolder)
{
    EXPECT_EQ(explainConversionError("errno 13", "/missing.folder/"),
              "errno 13\n\nThe folder /missing.folder for conversions cannot be created: Permission denied. An "
              "administrator creates it once with this command:\n\nsudo install -d -m 1777 /missing.folder");
}

} // namespace

} // namespace VX
