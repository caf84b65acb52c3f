#include "sandbox/check/offershape.h"

namespace sandbox::check {
namespace {

constexpr Member idMembers[]{{"id", Holds::text}};
constexpr Shape moduleId{"the id of a module", idMembers, true};

constexpr Member couplePlaceMembers[]{{"module_id", Holds::object, false, &moduleId}};
constexpr Shape couplePlace{"the id of a material", couplePlaceMembers, true};

constexpr Member coupleMembers[]{{"target_version", Holds::text},
                                 {"material_id", Holds::object, false, &couplePlace}};
constexpr Shape couple{"a material of the packet", coupleMembers, true};

constexpr Member moduleMembers[]{{"module_id", Holds::object, false, &moduleId}};
constexpr Shape packetModule{"a module of the packet", moduleMembers, true};

constexpr Member packetMembers[]{{"target_version", Holds::text},
                                 {"modules", Holds::list, false, &packetModule},
                                 {"materials", Holds::list, false, &couple}};
constexpr Shape packetDiff{"full_packet_diff", packetMembers, true};

constexpr Member metaMembers[]{
    {"file_id", Holds::text}, {"md5", Holds::text}, {"extends", Holds::anyObject}};
constexpr Shape metaOfRow{"the meta of a row", metaMembers, true};

constexpr Member rowMembers[]{{"meta", Holds::object, true, &metaOfRow}};
constexpr Shape rowOfAnswer{"a row of the answer", rowMembers, true};

constexpr Member answerMembers[]{{"metas", Holds::list, true, &rowOfAnswer},
                                 {"full_packet_diff", Holds::object, false, &packetDiff}};
constexpr Shape answer{"the answer", answerMembers, true};

} // namespace

const Shape& offerShape() {
    return answer;
}

} // namespace sandbox::check
