#pragma once

#include <json/value.h>

#include <net/HttpServer.h>

#include <string>

namespace VX
{

/// An answer with `document` as its body, without blanks, in plain ASCII.
[[nodiscard]] HttpResponse jsonAnswer(const Json::Value& document, int status = 200);

/// The answer {"result": RESULT}.
[[nodiscard]] HttpResponse resultAnswer(const Json::Value& result);

/// The answer {"result":null,"error":{"message":MESSAGE}}.
[[nodiscard]] HttpResponse errorAnswer(int status, const std::string& message);

/// The same for a failure of the service itself: status 507 where the disk is full, else 500.
[[nodiscard]] HttpResponse failureAnswer(const std::string& message);

} // namespace VX
