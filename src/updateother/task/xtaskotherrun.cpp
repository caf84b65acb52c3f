#include "updateother/task/xtaskotherrun.h"

#include "host/hostmodules.h"
#include "host/log.h"

namespace {

constexpr const wchar_t* helperProgram = L"orvdefender.exe";
constexpr const wchar_t* helperParameters = L"--install";

} // namespace

void XTaskOtherRun::check(FinishCallback /*finish*/) {
    XLOG(logProgress, "update plugin, other, task run, check.");
    hostmodules::runProcess(helperProgram, helperParameters);
}
