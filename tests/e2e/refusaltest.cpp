#include "e2e/sandbox.h"

// A scenario that cannot mean what it says is refused ahead of its first step.

namespace e2e {
namespace {

#define ADDED(member) R"([{"op":"add","path":"/)" member "}]"

INSTANTIATE_TEST_SUITE_P(
    Refused, Scenario,
    testing::Values(
        Case{"Member", "small.json", ADDED(R"(client/filez","value":[])"), sandboxFailed,
             "client: there is no member \"filez\""},
        Case{"Expectation", "small.json", ADDED(R"(phases/0/expect/material","value":{})"),
             sandboxFailed, "phase \"a run\", expect: there is no member \"material\""},
        Case{"Home", "small.json", ADDED(R"(client/config","value":{"homeDirectory":"/"})"),
             sandboxFailed, "client, config: there is no member \"homeDirectory\""},
        Case{"Kind", "small.json", ADDED(R"(platform/version","value":1)"), sandboxFailed,
             "platform: member \"version\" is of the wrong kind"},
        Case{"FaultThatNeverCame", "small.json",
             ADDED(R"(phases/0/faults","value":[{"on":"core","attempt":2,"fault":"refused"}])"),
             different, "platform: the fault refused on core, attempt 2 never took effect"},
        Case{"Fault", "small.json",
             ADDED(R"(phases/0/faults","value":[{"on":"core","fault":"cutt"}])"), sandboxFailed,
             "there is no fault \"cutt\"; known are status, silent"},
        Case{"Step", "small.json", ADDED(R"(phases/0/ui","value":["fetch"])"), sandboxFailed,
             "ui: there is no command \"fetch\""},
        Case{"StepOfTwo", "small.json",
             ADDED(R"(phases/0/ui","value":[{"wait":100,"waitLog":"a"}])"), sandboxFailed,
             "does not do just one thing"},
        Case{"StepOfOther", "small.json", ADDED(R"(phases/0/ui","value":[{"waitEnd":"kelvar"}])"),
             sandboxFailed, "only of the package"},
        Case{"Set", "small.json", ADDED(R"(phases/0/set","value":{"login":{"tokn":true}})"),
             sandboxFailed, "there is no \"tokn\" of a login"},
        Case{"SetInstances", "small.json",
             ADDED(R"(phases/0/ui","value":[{"set":{"instances":[1]}}])"), sandboxFailed,
             "instances cannot be [1]"},
        Case{"ExpectedKind", "small.json", ADDED(R"(phases/0/expect/downloads","value":"core")"),
             sandboxFailed, "\"downloads\" is an array of texts or a number"},
        Case{"PackageVersion", "small.json",
             ADDED(R"(upgrade","value":{"package":{"version":"1.4","size":1}})"), sandboxFailed,
             "a version of four parts, not \"1.4\""},
        Case{"Package", "small.json", ADDED(R"(upgrade","value":{"package":{"sise":1}})"),
             sandboxFailed, "the package: there is no member \"sise\""},
        Case{"Offer", "small.json", ADDED(R"(phases/0/offers","value":["cor"])"), sandboxFailed,
             "offers: there is no material \"cor\""},
        Case{"Name", "small.json", ADDED(R"(platform/materials/0/name","value":"../core")"),
             sandboxFailed, "no plain name: ../core"},
        Case{"NameOfAnother", "small.json",
             ADDED(R"(platform/materials/0/name","value":"package")"), sandboxFailed,
             "the material's name has another meaning in faults: package"},
        Case{"Login", "small.json", ADDED(R"(client/config","value":{"login":{"phone":7}})"),
             sandboxFailed, "client, config, phone cannot be 7, but a text"},
        Case{"LoginKind", "small.json", ADDED(R"(client/config","value":{"login":true})"),
             sandboxFailed, "client, config: member \"login\" is no object"},
        Case{"System", "small.json", ADDED(R"(client/config","value":{"os":{"major":-1}})"),
             sandboxFailed, "client, config, os: \"major\" is a number of 32 bits, not -1"},
        Case{"SystemMember", "small.json", ADDED(R"(client/config","value":{"os":{"bild":1}})"),
             sandboxFailed, "client, config, os: there is no member \"bild\""},
        Case{"TimeOut", "small.json",
             ADDED(R"(client/config","value":{"httpTimeoutMs":4294967296})"), sandboxFailed,
             "\"httpTimeoutMs\" is a number of 32 bits, not 4294967296"},
        Case{"Keeper", "small.json",
             ADDED(R"(client/held","value":[{"file":"helper.exe","by":"helper.exe"}])"),
             sandboxFailed, "\"by\" is no file of the client of kind holder: \"helper.exe\""},
        Case{"Kept", "group-waiting.json", ADDED(R"(client/held/0/file","value":"none.dll")"),
             sandboxFailed, "a held file: \"file\" is no file that the client has: \"none.dll\""},
        Case{"InUse", "small.json", ADDED(R"(phases/0/faults","value":[
                 {"on":"client","fault":"in-use","file":"engine\\core.dll","by":"keeper.exe"}])"),
             sandboxFailed, "phase \"a run\", in-use on client: \"by\" is no file of the client"},
        Case{"File", "small.json", ADDED(R"(client/files/0/path","value":"a\\..\\..\\b")"),
             sandboxFailed, "not below the client's folder: \"a\\..\\..\\b\""},
        Case{"Folder", "small.json", ADDED(R"(client/folders","value":["/b"])"), sandboxFailed,
             "not below the client's folder: \"/b\""}),
    nameOf);

} // namespace
} // namespace e2e
