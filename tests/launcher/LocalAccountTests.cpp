#include "launcher/LocalAccount.h"

#include "tests/support/LogCapture.h"
#include "tests/support/TempConfig.h"

#include <VXMesh/Json.h>
#include <VXMesh/UserFolders.h>

#include <boost/process/child.hpp>
#include <boost/process/io.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <backend/SigningSecret.h>
#include <backend/accounts/AccountStore.h>
#include <backend/accounts/PasswordHash.h>

#include <array>
#include <iterator>
#include <string>
#include <vector>

namespace VX
{

namespace
{

namespace bp = boost::process;

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class LocalAccountTest : public testing::Test
{
protected:
    [[nodiscard]] std::optional<std::filesystem::path> provide_() const
    {
        return LocalAccount::provide(QX_BIN_DIR "/quorvix-backend", data_);
    }

    /// Whether the services would sign in with what is in the file.
    [[nodiscard]] bool isGood_(const std::filesystem::path& file) const
    {
        const auto credentials = deserializeJsonValue(file);
        if (!credentials || (*credentials)["email"] != LocalAccount::address)
            return false;
        const AccountSecrets secrets(loadOrCreateSecret(data_ / "link-key").value());
        const auto account =
            AccountStore::open(data_ / "accounts.sqlite", secrets).value()->find(LocalAccount::address).value();
        return account && account->isConfirmed &&
               isPasswordOf(account->passwordHash, (*credentials)["password"].asString());
    }

    const VX::Test::TempConfig config_{"Quorvix"};
    const VX::Test::LogCapture log_;
    const std::filesystem::path data_ = config_.folder().path() / "data/Quorvix/services";
    const std::filesystem::path file_ = getUserConfigDir() / "local-account.json";
};

TEST_F(LocalAccountTest, isMadeAtTheFirstStart)
{
    EXPECT_EQ(provide_(), file_);
    EXPECT_TRUE(isGood_(file_));
    EXPECT_EQ(VX::Test::modeOf(file_), 0600U);
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(LocalAccountTest, staysAsItIsAtLaterStarts)
{
    ASSERT_EQ(provide_(), file_);
    const std::string before = VX::Test::readFile(file_);
    EXPECT_EQ(provide_(), file_);
    EXPECT_EQ(VX::Test::readFile(file_), before);
    EXPECT_TRUE(isGood_(file_));
}

TEST_F(LocalAccountTest, isMadeAgainWhereTheServicesHaveLostIt)
{
    ASSERT_EQ(provide_(), file_);
    std::filesystem::remove_all(data_);
    EXPECT_EQ(provide_(), file_);
    EXPECT_TRUE(isGood_(file_));
}

TEST_F(LocalAccountTest, getsANewPasswordWhereItsFileIsGone)
{
    ASSERT_EQ(provide_(), file_);
    std::filesystem::remove(file_);
    EXPECT_EQ(provide_(), file_);
    EXPECT_TRUE(isGood_(file_));
}

class DamagedLocalAccount : public LocalAccountTest, public testing::WithParamInterface<std::string>
{
};

TEST_P(DamagedLocalAccount, getsANewPassword)
{
    ASSERT_EQ(provide_(), file_);
    config_.folder().write(file_, GetParam());
    EXPECT_EQ(provide_(), file_);
    EXPECT_TRUE(isGood_(file_));
}

INSTANTIATE_TEST_SUITE_P(LocalAccount, DamagedLocalAccount,
                         testing::Values("", "{\"email\":", "[]", R"({"email": "local@quorvix.localhost"})",
                                         R"({"email": "local@quorvix.localhost", "password": ""})",
                                         R"({"email": "ann@example.com", "password": "passw0rd!"})"));

TEST_F(LocalAccountTest, leavesOnlyItsFileAndItsLock)
{
    ASSERT_EQ(provide_(), file_);
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(file_.parent_path()))
        names.push_back(entry.path().filename());
    EXPECT_THAT(names, testing::UnorderedElementsAre("local-account.json", "local-account.lock"));
}

TEST_F(LocalAccountTest, losesNoFileToAServiceThatRefusesIt)
{
    ASSERT_EQ(provide_(), file_);
    std::filesystem::remove_all(data_);
    config_.folder().write(data_, "no folder");
    EXPECT_EQ(provide_(), std::nullopt);
    EXPECT_THAT(log_.texts(spdlog::level::warn), ElementsAre("There is no account at the services of this computer."));
    EXPECT_THAT(log_.texts(spdlog::level::debug), Contains(StartsWith("The account cannot be made: The data folder")));
    EXPECT_TRUE(std::filesystem::exists(file_));
}

TEST_F(LocalAccountTest, isNotThereWithoutTheServices)
{
    EXPECT_EQ(LocalAccount::provide(config_.folder().path() / "missing", data_), std::nullopt);
    EXPECT_THAT(log_.texts(spdlog::level::warn), ElementsAre("There is no account at the services of this computer."));
}

TEST_F(LocalAccountTest, isOneForProcessesThatStartAtOnce)
{
    std::array<bp::ipstream, 4> outputs;
    std::vector<bp::child> processes;
    processes.reserve(outputs.size());
    for (bp::ipstream& output : outputs)
        processes.emplace_back(QX_LOCAL_ACCOUNT_PROBE, QX_BIN_DIR "/quorvix-backend", data_.string(),
                               bp::std_out > output);
    for (bp::ipstream& output : outputs)
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(output), {}), file_.string());
    for (bp::child& process : processes)
        process.wait();
    EXPECT_TRUE(isGood_(file_));
}

} // namespace

} // namespace VX
