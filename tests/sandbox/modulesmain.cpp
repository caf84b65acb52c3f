#include <cstring>
#include <gtest/gtest.h>

#include "moduleslab.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/platform/childprocess.h"
#include "sandbox/platform/hostprocess.h"

namespace fs = std::filesystem;

namespace {

/// The program that tests have started: tells its process number and its arguments.
int leaveTrace(const std::vector<std::string>& arguments) {
    return sandbox::writeJson(
               sandbox::pathOf(arguments[1]),
               {{"process", sandbox::processNumber()}, {"arguments", {arguments[2], arguments[3]}}})
               ? EXIT_SUCCESS
               : EXIT_FAILURE;
}

int runInRunFolder(int argc, char** argv) {
    const fs::path program = sandbox::executableFile();
    const sandbox::Folders folders = lab::layOut(program.parent_path());
    auto child = sandbox::ChildProcess::start(folders.client() / program.filename(),
                                              {argv + 1, argv + argc}, fs::current_path());
    const int status = child ? child->wait() : EXIT_FAILURE;
    fs::remove_all(folders.root());
    return status;
}

} // namespace

// What is thrown here is to end the run as failed. NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
    if (argc == 5 && std::strcmp(argv[1], "--leave-trace") == 0) {
        return leaveTrace(sandbox::ownArguments(argc, argv));
    }
    const bool inRunFolder = fs::exists(sandbox::processFolders().config());
    const bool lists = argc > 1 && std::strstr(argv[1], "--gtest_list_tests") != nullptr;
    if (!inRunFolder && !lists) {
        return runInRunFolder(argc, argv);
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
