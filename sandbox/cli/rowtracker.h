#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "sandbox/cli/built.h"

namespace sandbox {

enum class RowState {
    left,    ///< the run has said nothing final about it
    refused, ///< with a reason
    placed,
    waiting, ///< for the next restart
};

std::string wordOf(RowState state);

/// One offered material in one run.
struct Row {
    const BuiltMaterial* material = nullptr;
    RowState state = RowState::left;
    std::string reason;
};

/// Follows what the plug-in's log lines say about each material. A row is settled, and
/// the listener told, once nothing that follows can change it: a row of a group when the
/// group is through. One thread; the materials outlive the object.
class RowTracker {
public:
    using Listener = std::function<void(const Row&)>;

    RowTracker(const std::vector<const BuiltMaterial*>& offered, Listener settled);

    void see(const std::string& logText);
    /// The run is over: what is open is settled.
    void end() { settleOpen(); }

    const std::vector<Row>& all() const { return rows; }
    /// Whether the plug-in has said that it fetches the material of that hash.
    bool hasFetched(const std::string& md5) const { return fetched.count(md5) != 0; }

private:
    struct Rule;
    static const std::vector<Rule>& rules();

    Row* byMd5(const std::string& md5);
    Row* byTarget(const std::string& clientPath);
    void filtered(const std::string& rest, const char* reason);
    void attempted(const std::string& rest, const char* reason);
    void refuse(Row& row, const std::string& reason);
    void takeGroupBack(const Row& failed);
    void settleOpen();

    std::vector<Row> rows;
    std::vector<Row*> open;        ///< attempted, but their group is not through
    std::set<std::string> fetched; ///< hashes of the downloads that have begun
    Row* current = nullptr;        ///< that the lines without a name are about
    std::string refusal;           ///< why the next "not need move" comes
    Listener settled;
};

} // namespace sandbox
