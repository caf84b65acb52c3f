#include "check/plantedcases.h"

// Materials, each by itself and all together.

std::vector<Case> materialCases() {
    return {
        // Targets.
        {"Climbs", "\"pair/left.dat\"", "\"pair/../../left.dat\"", "target-refused"},
        {"Drive", "\"pair/left.dat\"", "\"c:left.dat\"", "target-refused"},
        {"Root", "\"pair/left.dat\"", "\"\\\\left.dat\"", "target-refused"},
        {"Nothing", "\"pair/left.dat\"", "\"\"", "target-refused"},
        {"Folder", "\"pair/left.dat\"", "\"pair/\"", "target-refused"},
        {"Device", "\"pair/left.dat\"", "\"pair/NUL.dat\"", "target-refused"},
        {"Letters_", "\"pair/left.dat\"", "\"pair/übrig.dat\"", "target-not-ascii"},
        {"LongTarget", "\"pair/left.dat\"", "\"pair/" + std::string(196, 'l') + "\"",
         "target-too-long"},
        {"SameTarget", "\"pair/right.dat\"", "\"PAIR\\\\.\\\\left.dat\"", "target-twice"},
        // Hashes, versions, sizes, parameters.
        {"HashIsPath", "\"path\": \"pair/left.dat\"",
         "\"path\": \"pair/left.dat\", \"md5\": \"../a\"", "hash-refused"},
        {"HashIsShort", "\"path\": \"pair/left.dat\"",
         "\"path\": \"pair/left.dat\", \"md5\": \"abc\"", "hash-form"},
        {"HashIsAnothers", "\"dependent\": \"pair\"},\n       \"file\": {\"size\": 900}",
         "\"dependent\": \"pair\",\n\"file_md5\": "
         "\"0123456789abcdef0123456789abcdef\"},\n\"file\": "
         "{\"size\": 900}",
         "hash-wrong", 1},
        {"SameVersion", "\"a\", \"version\": \"1.3.0.1600\"", "\"a\", \"version\": \"1.2.0.1500\"",
         "version-never-newer"},
        {"OldImage", "\"version\": \"1.3.0.1600\", \"size\": 9000",
         "\"version\": \"1.1.0.1\", \"size\": 9000", "version-never-newer", -2},
        {"OlderImage", "\"version\": \"1.3.0.1600\", \"size\": 9000",
         "\"version\": \"1.2.9.1\", \"size\": 9000", "version-not-the-files", -2},
        {"DataOfToday", "\"rules\", \"version\": \"1.3.0.1600\"",
         "\"rules\", \"version\": \"1.2.0.1500\"", "version-never-newer"},
        {"VersionOfLetters", "\"left\", \"version\": \"1.3.0.1600\"",
         "\"left\", \"version\": \"latest\"", "version-form"},
        {"Packet", "{\n    \"version\": \"1.3.0.1600\"", "{\n    \"version\": \"2.0.0.5\"",
         "packet-version", 1},
        {"Huge", "\"size\": 901", "\"size\": 2147483648", "size-32-bit"},
        {"ParameterName", "\"check_app\"", "\"checkApp\"", "parameter-misspelt"},
        {"NonCabWord", "{\"dependent\": \"pair\"},\n       \"file\": {\"size\": 901}",
         "{\"dependent\": \"pair\", \"non_cab\": \"true\"},\n\"file\": {\"size\": 901}",
         "non-cab-form"},
        {"NonCabEmpty", "{\"dependent\": \"pair\"},\n       \"file\": {\"size\": 901}",
         "{\"dependent\": \"pair\", \"non_cab\": \"\"},\n\"file\": {\"size\": 901}",
         "non-cab-wrong"},
        {"NonCab", "\"check_sys\"", "\"non_cab\": \"1\", \"check_sys\"", "non-cab-wrong"},
        // Cabinets.
        {"Method", "\"mszip\"", "\"zip\"", "cabinet-method"},
        {"OtherMember", "\"method\": \"mszip\"", "\"method\": \"mszip\", \"as\": \"rule.dat\"",
         "cabinet-member-missing"},
        {"MemberOutside", "\"notes.txt\"", "\"..\\\\notes.txt\"", "cabinet-member-outside"},
        {"MemberImage", "{\"name\": \"notes.txt\"}",
         "{\"name\": \"notes.txt\", \"kind\": \"pe\", \"version\": \"1.0\"}", "version-form"},
        {"MemberTwice", "\"notes.txt\"", "\"RULES.dat\"", "cabinet-member-twice"},
        {"MemberFolder", "\"notes.txt\"", "\"more\\\\notes.txt\"", "cabinet-member-folder"},
        // Together.
        {"Alone", "\"dependent\": \"pair\"},\n       \"file\": {\"size\": 901}",
         "\"dependent\": \"\"},\n\"file\": {\"size\": 901}", "group-of-one", -3},
        {"VirusModule", "\"/orvviruslib\": \"2026-11-20\", ", "", "viruslib-module", 5},
    };
}
