#pragma once

namespace fakemodules {

/// Puts the sibling modules of a healthy client into the fake module table. Their
/// exports reach the FakeHost that stands at the time of the call.
void install();

} // namespace fakemodules
