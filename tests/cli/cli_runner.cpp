#include "cli/cli_runner.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

extern char** environ;

namespace ostrelle::testing {
namespace {

std::string readFile(const std::filesystem::path& path) {
    std::ifstream input(path, std::ios::binary);
    std::ostringstream text;
    text << input.rdbuf();
    return text.str();
}

}  // namespace

TempDir::TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "ostrelle-cli-test-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("cannot create a temporary folder");
    path_ = pattern;
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path TempDir::write(const std::string& name, const std::string& contents) const {
    const std::filesystem::path file = path_ / name;
    std::ofstream(file, std::ios::binary) << contents;
    return file;
}

std::vector<std::string> CLIResult::outLines() const {
    std::vector<std::string> lines;
    std::istringstream stream(out);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

CLIResult runCLI(const std::vector<std::string>& arguments, const std::string& input) {
    const TempDir io;
    const std::string inPath = io.write("stdin", input).string();
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
    std::vector<char*> argv;
    for (std::string& argument : owned) argv.push_back(argument.data());
    argv.push_back(nullptr);

    pid_t pid = 0;
    const int spawned = posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), environ);
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
