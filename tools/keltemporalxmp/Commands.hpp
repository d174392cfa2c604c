#pragma once
// Each command adds itself to the command line and says how to run it.

#include "Command.hpp"

namespace keltemporalxmp::tool {

CommandEntry AddTimeCommand(CLI::App& app);

}  // namespace keltemporalxmp::tool
