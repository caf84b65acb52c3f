#include "sandbox/platform/messagebox.h"

namespace sandbox {

void answerMessageBoxes() {}

} // namespace sandbox
