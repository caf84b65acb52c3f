#include "sandbox/cli/follower.h"

#include "sandbox/cli/notes.h"

namespace sandbox {

Follower::Follower(const Folders& folders, const RunWatchers& all)
    : tail(folders.events()), watchers(all) {
    tail.skip(); // what an earlier run has left
}

void Follower::follow() {
    for (nlohmann::json& event : tail.next()) {
        showPlatform();
        show(event);
        see(std::move(event));
    }
    showPlatform();
}

std::vector<nlohmann::json> Follower::finish() {
    follow();
    for (const PlatformEvent& event : held) {
        watchers.view.platform(event);
    }
    watchers.tracker.end();
    watchers.view.end();
    return std::move(kept);
}

void Follower::see(nlohmann::json event) {
    programs += isKind(event, "process") && event.value("started", false) ? 1 : 0;
    if (watchers.script != nullptr) {
        watchers.script->see(event);
    }
    if (watchers.isJudged) { // a host that is kept running tells without end
        kept.push_back(std::move(event));
    }
}

void Follower::show(const nlohmann::json& event) {
    if (!isKind(event, "log")) {
        watchers.view.host(event);
        return;
    }
    const std::string text = event.value("text", "");
    watchers.tracker.see(text);
    watchers.view.log(text);
    switch (ends.see(event)) {
    case RunEnds::What::begins:
        watchers.view.beginRun();
        break;
    case RunEnds::What::ends:
        watchers.view.endRun();
        tell("runEnded");
        break;
    case RunEnds::What::packageEnds:
        tell("packageEnded");
        break;
    case RunEnds::What::nothing:
        break;
    }
}

void Follower::tell(const char* kind) {
    if (watchers.script != nullptr) {
        watchers.script->see({{"kind", kind}});
    }
}

void Follower::showPlatform() {
    for (PlatformEvent& event : watchers.feed.take()) {
        held.push_back(std::move(event));
    }
    while (!held.empty() && hasBegun(held.front())) {
        watchers.view.platform(held.front());
        held.pop_front();
    }
}

bool Follower::hasBegun(const PlatformEvent& event) const {
    const BuiltMaterial* material =
        event.kind == PlatformEvent::Kind::transfer ? watchers.view.byFileId(event.text) : nullptr;
    return material == nullptr || watchers.tracker.hasFetched(material->offered.md5);
}

} // namespace sandbox
