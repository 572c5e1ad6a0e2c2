#include <gtest/gtest.h>

#include <backend/ConverterRequests.h>

namespace VX::Test
{

namespace
{

std::string contextError(const std::string& body)
{
    const auto request = ConverterContextRequest::parse(body);
    return request ? "" : request.error();
}

std::string startError(const std::string& body)
{
    const auto request = ConverterStartRequest::parse(body);
    return request ? "" : request.error();
}

TEST(ConverterContextRequest, acceptsStepInAnyLetterCase)
{
    for (const char* format : {"step", "stp", "STEP", "Stp"})
        EXPECT_EQ(contextError(R"({"input_format":")" + std::string(format) + R"(","compress_input":"zip"})"), "");
}

TEST(ConverterContextRequest, takesTheTokenWhereThereIsOne)
{
    const auto with =
        ConverterContextRequest::parse(R"({"input_format":"step","compress_input":"zip","access_token":"T"})");
    ASSERT_TRUE(with);
    EXPECT_EQ(with->accessToken, "T");
    const auto without = ConverterContextRequest::parse(R"({"input_format":"step","compress_input":"zip"})");
    ASSERT_TRUE(without);
    EXPECT_EQ(without->accessToken, "");
}

TEST(ConverterContextRequest, saysWhatIsWrong)
{
    const std::pair<const char*, const char*> cases[] = {
        {"[]", "The request must be a JSON object."},
        {"null", "The request must be a JSON object."},
        {R"({"compress_input":"zip"})", "\"input_format\" is missing in the request."},
        {R"({"input_format":null,"compress_input":"zip"})", "\"input_format\" is missing in the request."},
        {R"({"input_format":1,"compress_input":"zip"})", "\"input_format\" must be a string."},
        {R"({"input_format":"iges","compress_input":"zip"})",
         "Files of the format \"iges\" cannot be converted: choose a STEP file (.step or .stp)."},
        {R"({"input_format":"","compress_input":"zip"})",
         "Files of the format \"\" cannot be converted: choose a STEP file (.step or .stp)."},
        {R"({"input_format":"step"})", "\"compress_input\" is missing in the request."},
        {R"({"input_format":"step","compress_input":"gzip"})", "\"compress_input\" must be \"zip\"."},
        {R"({"input_format":"step","compress_input":true})", "\"compress_input\" must be a string."},
        {R"({"input_format":"step","compress_input":"zip","access_token":5})", "\"access_token\" must be a string."},
    };
    for (const auto& [body, error] : cases)
        EXPECT_EQ(contextError(body), error) << body;
    EXPECT_TRUE(contextError("{").starts_with("Invalid JSON: "));
    EXPECT_TRUE(contextError("").starts_with("Invalid JSON: "));
}

TEST(ConverterStartRequest, readsTheIdentifier)
{
    const auto request = ConverterStartRequest::parse(
        R"({"request_id":"R","input_format":"STP","output_format":"vxu","compress_input":"zip","access_token":"T"})");
    ASSERT_TRUE(request) << request.error();
    EXPECT_EQ(request->requestId, "R");
    EXPECT_EQ(request->accessToken, "T");
}

TEST(ConverterStartRequest, saysWhatIsWrong)
{
    const std::pair<const char*, const char*> cases[] = {
        {"7", "The request must be a JSON object."},
        {R"({"input_format":"step","output_format":"vxu","compress_input":"zip"})",
         "\"request_id\" is missing in the request."},
        {R"({"request_id":{},"input_format":"step","output_format":"vxu","compress_input":"zip"})",
         "\"request_id\" must be a string."},
        {R"({"request_id":"R","input_format":"step","compress_input":"zip"})",
         "\"output_format\" is missing in the request."},
        {R"({"request_id":"R","input_format":"step","output_format":"stl","compress_input":"zip"})",
         "Files cannot be converted to the format \"stl\", only to \"vxu\"."},
        {R"({"request_id":"R","input_format":"step","output_format":"VXU","compress_input":"zip"})",
         "Files cannot be converted to the format \"VXU\", only to \"vxu\"."},
        {R"({"request_id":"R","output_format":"vxu","compress_input":"zip"})",
         "\"input_format\" is missing in the request."},
    };
    for (const auto& [body, error] : cases)
        EXPECT_EQ(startError(body), error) << body;
}

} // namespace

} // namespace VX::Test
