#include <iostream>

#include "sandbox/cli/clientfile.h"
#include "sandbox/platform/hostprocess.h"

/// A program of the client that does nothing but leave a trace of its start. Status 1 when
/// it cannot.
int main(int count, char** arguments) {
    try {
        const auto program = sandbox::executableFile();
        sandbox::leaveTrace(sandbox::runOf(program), program,
                            sandbox::ownArguments(count, arguments));
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << "\n";
        return 1;
    }
}
