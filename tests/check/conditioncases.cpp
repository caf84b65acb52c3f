#include "check/plantedcases.h"

// Conditions and programs.

namespace {

const char* const range = R"(%appver%>=\"1.0\"&&%appver%<\"9.0\")";
const char* const exec =
    R"((%process%=\"keeper.exe\" %param%=\"-a\")&&(%process%=\"keeper.exe\" %param%=\"\"))";
const char* const systemCheck = R"("check_sys": "%sysver%>=\"10.0.10240\"")";

} // namespace

std::vector<Case> conditionCases() {
    return {
        {"OtherTag", range, R"(%sysver%>=\"1.0\")", "expression-no-clause"},
        {"NoTag", range, R"(appver>=\"1.0\")", "expression-no-clause"},
        {"NoQuotes", range, "%appver%>=1.0", "expression-no-clause"},
        {"EmptyClause", range, R"(%appver%>=\"1.0\"&&&&%appver%<\"9.0\")", "expression-no-clause"},
        {"Blanks", range, R"(%appver% >= \"1.0\")", "expression-operator"},
        {"Operator", range, R"(%appver%=>\"1.0\")", "expression-operator"},
        {"Or", range, R"(%appver%>=\"1.0\"||%appver%<\"9.0\")", "expression-extra-text"},
        {"TwoLows", range, R"(%appver%>=\"1.0\"&&%appver%>\"1.1\")", "expression-clause-replaced"},
        {"EqualLost", range, R"(%appver%==\"1.0.0.1\"&&%appver%<\"9.0\")",
         "expression-clause-replaced"},
        {"Empty", range, R"(%appver%>=\"9.0\"&&%appver%<\"1.0\")", "expression-never"},
        {"EqualParts", range, R"(%appver%==\"1.0\")", "expression-never"},
        {"Letters", range, R"(%appver%>=\"1.x\")", "expression-version"},
        {"FourSystemParts", systemCheck, R"("check_sys": "%sysver%>=\"10.0.19045.0\"")",
         "expression-version"},
        {"SystemRange", systemCheck, R"("osver": ">=10.0.19045")", "osver-operator"},
        {"SystemParts", systemCheck, R"("osver": "10.0.19045.0")", "osver-form"},
        {"BothSystems", systemCheck, R"("osver": "10.0.19045", "check_sys": "%sysver%>\"10.0\"")",
         "check-sys-unused"},
        {"NoProgram", exec, R"((%param%=\"-a\"))", "exec-no-program"},
        {"ParameterFirst", exec, R"((%param%=\"-a\" %process%=\"keeper.exe\"))", "exec-param-lost"},
        {"ProgramBare", exec, R"((%process%=keeper.exe %param%=\"-a\"))", "exec-no-program"},
        {"TrailingEntry", exec, R"((%process%=\"keeper.exe\")&&()", "exec-no-program"},
        {"Merged", exec, R"((%process%=\"keeper.exe\") && (%process%=\"keeper.exe\"))",
         "exec-entries-merged"},
        {"ParameterBare", exec, R"((%process%=\"keeper.exe\" %param%=-a))", "exec-param-lost"},
        {"NoSuchProgram", exec, R"((%process%=\"tools\\keepr.exe\"))", "exec-program-unknown"},
    };
}
