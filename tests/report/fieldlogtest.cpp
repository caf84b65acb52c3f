#include "tests/report/fieldlines.h"

// Logs as people send them: cut, mixed, with other things in front of the plug-in's text.

namespace {

using namespace sandbox::report;

class FieldLogTest : public testing::TestWithParam<FieldLog> {};

TEST_P(FieldLogTest, IsTold) {
    EXPECT_EQ(summaryOf(explainText(GetParam().log)), GetParam().summary);
}

INSTANTIATE_TEST_SUITE_P(
    Damaged, FieldLogTest,
    testing::Values(
        FieldLog{"Empty", "", ""}, FieldLog{"OfOthers", "12:00:00 something else\n\n", ""},
        FieldLog{"LineEndsOfWindows",
                 "20:12:54,789 INFO tid=0x1a update plugin, kelvar, task fetch, check ...\r\n"
                 "20:12:54,790 INFO tid=0x1b " KELVAR "task download, have local file: " A " \r\n"
                 "20:12:54,791 INFO tid=0x1b " MOVE(
                     A, "a") "20:12:54,792 INFO tid=0x1b "
                             "update plugin, queue, task finished, succ: 1 \r\n",
                 "1: aaaa placed; | files were placed"},
        FieldLog{"BeginsInMidRun", MOVE(A, "a") ENDS("1"), "1: aaaa placed; | files were placed"},
        FieldLog{"CutInATransfer", BEGIN FETCH(A, "a") "update plugin, kelvar, task down",
                 "1: aaaa untold; | the log does not tell how it ended"},
        FieldLog{"CutInAMove", BEGIN FETCH(A, "a") ALL("1", "0", "1") MOVE(A, "a"),
                 "1: aaaa untold; | the log does not tell how it ended"},
        FieldLog{"TwoRunsAndAShutGate",
                 BEGIN FETCH(A, "a") "update plugin, download task, perform err: 18 \n"
                                     "update plugin, queue, task finished, succ: 0 \n" KELVAR
                                     "task condition, check ...  \n" KELVAR
                                     "task condition, check times fail, so ignore. \n"
                                     "update plugin, queue, task finished, succ: 0 \n" BEGIN FETCH(
                                         A, "a") ALL("1", "0", "1") MOVE(A, "a") ENDS("1"),
                 "1: aaaa refused (download failed); | nothing was moved: not every file arrived\n"
                 "2: aaaa placed; | files were placed"},
        FieldLog{
            "NoUtf8", BEGIN KELVAR "task move, bad path: \xff\xfe\\x.dll , md5: " A " \n" ENDS("0"),
            "1: aaaa refused (target outside the client); | nothing was placed: every file was "
            "refused"},
        FieldLog{"OthersBetween",
                 BEGIN FETCH(
                     A, "a") "update plugin, pkg, check update ... \n"
                             "update plugin, pkg, task condition, check times fail, so ignore. \n"
                             "update plugin, queue, task finished, succ: 0 \n" FETCH(B, "b")
                                 MOVE(A, "a") MOVE(B, "b") ENDS("1"),
                 "1: aaaa placed; bbbb placed; | files were placed"},
        FieldLog{"AnEndOfAnotherTakenForOurs", // without threads the line before decides
                 BEGIN FETCH(A, "a") "update plugin, queue, task finished, succ: 0 \n" FETCH(B, "b")
                     MOVE(A, "a") MOVE(B, "b") ENDS("1"),
                 "1: aaaa placed; bbbb placed; | files were placed"},
        // The last line has no end: 1 may have been 18, and "succ:" stands without its value.
        FieldLog{"CutInANumber", BEGIN FETCH(A, "a") "update plugin, download task, perform err: 1",
                 "1: aaaa untold; | the log does not tell how it ended"},
        FieldLog{"CutAheadOfAValue",
                 BEGIN FETCH(A, "a") ALL("1", "0", "1")
                     MOVE(A, "a") "update plugin, update padding, padding count: 0 , succ count: 1 "
                                  "\nupdate plugin, queue, task finished, succ: ",
                 "1: aaaa placed; | the log does not tell how it ended"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Ended, FieldLogTest,
    testing::Values(
        FieldLog{"WithoutAddress", BEGIN KELVAR "task fetch, upgradePacketData nil . \n",
                 "1: | no address of the update platform for GetUpgradePacket"},
        FieldLog{"WithoutAddressLater",
                 BEGIN "update plugin, kelvar http, request: http://p/PacketV2/GetUpgradePacket , "
                       "data: {}\n" KELVAR "task fetch, fullPacketDiffData nil . \n",
                 "1: | no address of the update platform for GetFullPacketDiff"},
        FieldLog{"BehindTheQuestion", KELVAR "task fetch, fullPacketDiffData nil . \n",
                 "1: | GetFullPacketDiff has no usable answer; the log begins behind the question"},
        FieldLog{"WithoutLibcurl", BEGIN KELVAR "task download, check ... \n" QUEUE_ENDS("0"),
                 "1: | nothing was fetched: it follows that the client has no \"module.libcurl\""},
        FieldLog{"WithNothingOnOffer",
                 BEGIN "update plugin, kelvar http, request: http://p/MaterialV2/"
                       "BatchGetMaterialMeta , data: null\n \n" ALL("0", "0", "0") ENDS("0"),
                 "1: | nothing to place: no material was on offer, or the offer could not be read"},
        FieldLog{"WithAllDropped",
                 BEGIN KELVAR "task fetch, filter file ver faild, name: " A " \n" ALL("0", "0", "0")
                     ENDS("0"),
                 "1: aaaa refused (already up to date); | nothing to place: the filters dropped "
                 "every material"},
        FieldLog{
            "ByAStatus",
            BEGIN
            "update plugin, kelvar http, request: http://p/PacketV2/GetPacketMeta , data: {}\n"
            "update plugin, kelvar http, response error: 0 ,code: 503 \n" KELVAR
            "task fetch, getPacketMeta nil . \nupdate plugin, queue, task finished, succ: 0 \n",
            "1: | GetPacketMeta was answered with status 503"},
        FieldLog{
            "ByAWrongNumber",
            BEGIN ASKS(KEY("a")) KELVAR "fetch material meta, addr: http://s \n" KELVAR
                                        "task fetch, batchGetMaterialMetaData nil . \n",
            "1: /m/a left; | BatchGetMaterialMeta was answered for another number of materials "
            "than asked"},
        FieldLog{"WithoutAnswer", BEGIN ASKS(KEY("a")),
                 "1: /m/a untold; | the log shows no answer to BatchGetMaterialMeta"},
        FieldLog{
            "ByAWindow",
            BEGIN KELVAR
            "task download, have local file: " A " \n" KELVAR
            "task move, check ...\nupdate plugin, can restart tray, settingui is exist. \n" KELVAR
            "task move, can't move .  \nupdate plugin, queue, task finished, succ: 0 \n",
            "1: aaaa left; | nothing was moved: the window \"settingui\" of the client was open"},
        FieldLog{"ByAnUntoldWindow",
                 BEGIN KELVAR "task move, check ...\n" KELVAR "task move, can't move .  \n",
                 "1: | nothing was moved: a window of the client was open"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Named, FieldLogTest,
    testing::Values(FieldLog{"ByTheirOrder",
                             BEGIN ASKS(KEY("a") "," KEY("b")) FETCH(A, "x1") FETCH(B, "x2")
                                 ALL("2", "0", "2") MOVE(A, "x1") MOVE(B, "x2") ENDS("1"),
                             "1: /m/a placed; /m/b placed; | files were placed"},
                    FieldLog{
                        "NotWhereTheOrderIsOpen",
                        BEGIN ASKS(KEY("a") "," KEY("b")) KELVAR
                        "task fetch, filter file ver faild, name: " A " \n" FETCH(B, "x2")
                            ALL("1", "0", "1") MOVE(B, "x2") ENDS("1"),
                        "1: aaaa refused (already up to date); bbbb placed; | files were placed"}),
    nameOf);

} // namespace
