#pragma once

#include "tests/backend/support/BackendTestSupport.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <backend/Router.h>
#include <backend/SqliteDatabase.h>
#include <backend/telemetry/LogStore.h>
#include <backend/telemetry/TelemetryApi.h>
#include <net/HttpServer.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace VX::Test
{

/// The operations over a real server. The token "good" is Ann's, "other" is Bob's, and there are no more.
class TelemetryApiFixture : public ::testing::Test
{
public:
    TelemetryApiFixture() { api.addRoutes(router); }

    [[nodiscard]] static std::optional<std::string> userOf(const std::string& token)
    {
        if (token == "good")
            return "ann@example.com";
        return token == "other" ? std::optional<std::string>("Bob@example.com") : std::nullopt;
    }

    /// One column of all rows that `query` finds.
    [[nodiscard]] std::vector<std::string> stored(std::string_view query) const
    {
        std::vector<std::string> texts;
        auto database = SqliteDatabase::open(file).value();
        auto statement = database.prepare(query);
        while (statement.step().value())
            texts.push_back(statement.text(0));
        return texts;
    }

    TempDir folder;
    const std::filesystem::path file = folder.path() / "telemetry.sqlite";
    std::unique_ptr<LogStore> store = LogStore::open(file).value();
    TelemetryApi api{*store, userOf, [this] { return folder.path() / "batch"; }};
    Router router;
    std::unique_ptr<HttpServer> server = HttpServer::start({}, router).value();
    const Client client{server->port()};
};

} // namespace VX::Test
