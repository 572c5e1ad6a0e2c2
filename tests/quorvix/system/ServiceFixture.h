#pragma once

#include "tests/backend/accounts/support/AccountTestSupport.h"
#include "tests/backend/system/BackendProcess.h"
#include "tests/support/TempConfig.h"
#include "tests/support/WaitUntil.h"
#include <quorvix/setup/Deployment.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXViewer/Viewer.h>
#include <VXViewer/WebRequests.h>

#include <gtest/gtest.h>

#include <backend/SqliteDatabase.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace VX::Test
{

/// The application's own clients against a quorvix-backend of their own.
class ServiceFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        // Its answer says that it has its databases.
        ASSERT_EQ(Client(backend_.port()).send("GET", "/healthz").status, 200);
        resetDeployment();
        ASSERT_TRUE(setDeployment(withEmbeddedServices({}, backend_.port())));
        getViewerInstance().reset();
    }

    void TearDown() override
    {
        WebRequests::reset();
        getViewerInstance().reset();
        resetDeployment();
    }

    /// The code of the newest message.
    [[nodiscard]] std::string newestCode_() const { return codeIn(newestMail(data_ / "outbox")); }

    /// The first column of what the telemetry service has stored.
    [[nodiscard]] std::vector<std::string> stored_(std::string_view query) const
    {
        std::vector<std::string> texts;
        auto database = SqliteDatabase::open(data_ / "telemetry.sqlite").value();
        auto statement = database.prepare(query);
        while (statement.step().value())
            texts.push_back(statement.text(0));
        return texts;
    }

    /// The names of all actions that it has.
    [[nodiscard]] std::vector<std::string> actions_() const
    {
        return stored_("SELECT name FROM actions ORDER BY session, id");
    }

    /// Sends what is gathered until the service has so many actions.
    [[nodiscard]] bool waitForActions_(std::size_t count) const
    {
        return waitUntil(
            [&]
            {
                SessionLogs::flushIfNeeded(true);
                return actions_().size() >= count;
            });
    }

    const TempConfig config_{"Quorvix"};
    const TempDir folder_;
    const std::filesystem::path data_ = folder_.path() / "data";
    BackendProcess backend_{data_, folder_.path() / "log", {}};
};

} // namespace VX::Test
