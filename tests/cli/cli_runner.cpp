#include "cli/cli_runner.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "testing/temporary_folder.h"

extern char** environ;

namespace ostrelle::testing {
namespace {

std::string readFile(const std::filesystem::path& path) {
    std::ifstream input(path, std::ios::binary);
    std::ostringstream text;
    text << input.rdbuf();
    return text.str();
}

// The few variables of this process that lead to no user file: where programs are, the language
// and time zone of texts, the temporary folder, and the sanitizers' settings.
bool passedOn(std::string_view entry) {
    constexpr std::array exact{"PATH", "TMPDIR", "TZ", "LANG", "LANGUAGE"};
    const std::string_view name = entry.substr(0, entry.find('='));
    return std::find(exact.begin(), exact.end(), name) != exact.end() || name.starts_with("LC_") ||
           name.ends_with("SAN_OPTIONS");
}

// A program started by a test sees these variables and the home folders of `home`, never the
// test process's own environment.
std::vector<std::string> environmentFor(const ScratchHome& home) {
    std::vector<std::string> entries;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (passedOn(*entry)) entries.emplace_back(*entry);
    }
    for (const auto& [variable, folder] : home.variables())
        entries.push_back(variable + "=" + folder.string());
    return entries;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

std::filesystem::path writeFile(const std::filesystem::path& folder, const std::string& name,
                                const std::string& contents) {
    const std::filesystem::path file = folder / name;
    std::ofstream(file, std::ios::binary) << contents;
    return file;
}

std::vector<std::string> CLIResult::outLines() const {
    std::vector<std::string> lines;
    std::istringstream stream(out);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

CLIResult runCLI(const std::vector<std::string>& arguments, const std::string& input,
                 const ScratchHome& home) {
    const TemporaryFolder io;
    const std::string inPath = writeFile(io.path(), "stdin", input).string();
    const std::string outPath = (io.path() / "stdout").string();
    const std::string errPath = (io.path() / "stderr").string();
    constexpr mode_t ownerOnly = 0600;

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, inPath.c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     ownerOnly);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     ownerOnly);

    std::string program = OSTRELLE_CLI_PATH;
    std::vector<std::string> owned{program};
    owned.insert(owned.end(), arguments.begin(), arguments.end());
    const std::vector<char*> argv = pointersTo(owned);
    std::vector<std::string> environment = environmentFor(home);
    const std::vector<char*> envp = pointersTo(environment);

    pid_t pid = 0;
    const int spawned = posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) throw std::runtime_error("cannot start " + program);

    int wait = 0;
    waitpid(pid, &wait, 0);
    CLIResult result;
    result.status = WIFEXITED(wait) ? WEXITSTATUS(wait) : -1;
    result.out = readFile(outPath);
    result.err = readFile(errPath);
    return result;
}

}  // namespace ostrelle::testing
