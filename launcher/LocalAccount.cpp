#include "launcher/LocalAccount.h"

#include <VXMesh/AtomicFile.h>
#include <VXMesh/Json.h>
#include <VXMesh/StringConvert.h>
#include <VXMesh/UserFolders.h>

#include <boost/interprocess/sync/file_lock.hpp>
#include <boost/interprocess/sync/scoped_lock.hpp>
#include <boost/process/args.hpp>
#include <boost/process/child.hpp>
#include <boost/process/io.hpp>
#include <spdlog/spdlog.h>

#include <exception>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace VX::LocalAccount
{

namespace
{

namespace bp = boost::process;

/// Runs the program with the file `input` as its standard input. @return its output
std::string run(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                const std::filesystem::path& input = "/dev/null")
{
    bp::ipstream output;
    bp::ipstream errors;
    bp::child child(program.string(), bp::args(arguments), bp::std_in<input.string(), bp::std_out> output,
                    bp::std_err > errors);
    const std::string text(std::istreambuf_iterator<char>(output), {});
    std::string reason;
    std::getline(errors, reason);
    child.wait();
    if (child.exit_code() != 0)
        throw std::runtime_error(reason);
    return text;
}

/// 24 letters and digits, 142 bits, and what the services ask of a password besides.
std::string makePassword()
{
    constexpr std::string_view characters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device source;
    std::uniform_int_distribution<std::size_t> distribution(0, characters.size() - 1);
    std::string password = "a1-";
    for (int i = 0; i < 24; ++i)
        password += characters[distribution(source)];
    return password;
}

bool hasCredentials(const std::filesystem::path& file)
{
    const auto credentials = deserializeJsonValue(file);
    return credentials && credentials->isObject() && (*credentials)["email"] == address &&
           (*credentials)["password"].isString() && !(*credentials)["password"].asString().empty();
}

void writePrivately(const std::filesystem::path& file, const std::string& text)
{
    const auto written = writeFileAtomically(file, text, privateFileMode);
    if (!written)
        throw std::runtime_error(written.error());
}

/// The password on its way to the program: not among the arguments, which everybody can list.
class PasswordFile
{
public:
    PasswordFile(std::filesystem::path path, const std::string& password)
        : path_(std::move(path))
    {
        writePrivately(path_, password + "\n");
    }

    ~PasswordFile()
    {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

    PasswordFile(const PasswordFile&) = delete;
    PasswordFile& operator=(const PasswordFile&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

void provideIn(const std::filesystem::path& file, const std::filesystem::path& backend,
               const std::filesystem::path& dataFolder)
{
    const std::string data = utf8string(dataFolder);
    const bool known = run(backend, {"user", "list", "--data", data}).find(address) != std::string::npos;
    if (known && hasCredentials(file))
        return;
    // An end of this process in between leaves no file, never one with the wrong password.
    std::filesystem::remove(file);
    const std::string password = makePassword();
    const PasswordFile input(file.parent_path() / "local-account.password", password);
    run(backend, {"user", known ? "reset" : "add", address, "--password-stdin", "--data", data}, input.path());
    Json::Value credentials(Json::objectValue);
    credentials["email"] = address;
    credentials["password"] = password;
    writePrivately(file, credentials.toStyledString());
}

} // namespace

std::optional<std::filesystem::path> provide(const std::filesystem::path& backend,
                                             const std::filesystem::path& dataFolder)
try
{
    const auto folder = getUserConfigDir();
    if (const auto created = createUserFolder(folder); !created)
        throw std::runtime_error(created.error());
    // Two first starts at once would each make a password, and one would keep the wrong one.
    const auto lockFile = folder / "local-account.lock";
    std::ofstream(lockFile, std::ios::app).close();
    boost::interprocess::file_lock fileLock(lockFile.c_str());
    const boost::interprocess::scoped_lock lock(fileLock);
    auto file = folder / "local-account.json";
    provideIn(file, backend, dataFolder);
    return file;
}
catch (const std::exception& error)
{
    spdlog::warn("There is no account at the services of this computer.");
    spdlog::debug("The account cannot be made: {}", error.what());
    return {};
}

} // namespace VX::LocalAccount
