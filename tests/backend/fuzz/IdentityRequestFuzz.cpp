#include <backend/accounts/IdentityRequest.h>
#include <backend/pages/HtmlText.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string body(reinterpret_cast<const char*>(data), size);
    for (const char* operation : {"InitiateAuth", "SignUp", "ConfirmSignUp", "ForgotPassword", "ConfirmForgotPassword",
                                  "ResendConfirmationCode", "Other"})
    {
        const auto request = VX::IdentityRequest::parse({.operation = operation, .body = body, .peer = {}});
        if (!request && (request.error().type.empty() || request.error().message.empty()))
            std::abort();
    }
    // The forms of the pages carry the same values.
    for (const auto& [name, value] : VX::parseForm(body))
        if (VX::parseForm(VX::urlEscaped(name) + "=" + VX::urlEscaped(value)).at(name) != value)
            std::abort();
    return 0;
}
