#pragma once

#include <memory>

#include "sandbox/common/worker.h"

namespace sandbox {

/// The thread of posted tasks.
Worker& taskThread();

/// Holds an object of the plug-in by a reference of its own, from now to the last copy.
template <class Counted>
std::shared_ptr<Counted> holdReference(Counted* object) {
    object->addRef();
    return {object, [](Counted* held) {
                held->release();
            }};
}

} // namespace sandbox
