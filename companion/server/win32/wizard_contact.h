#pragma once

#include <memory>

#include "server/progress_reporter.h"

namespace nqp::companion {

// A new wizard object of the player's, in an apartment of the calling thread; the system starts the
// wizard's process when none runs. Null when it cannot.
std::unique_ptr<WizardContact> FindWizard();

}  // namespace nqp::companion
