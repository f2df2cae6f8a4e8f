#pragma once

#include "catalogue/design.h"
#include "parameters/parametersFile.h"

#include <string>

namespace zint {

/// Where the user's own parameters are.
ParametersFile userParametersFile();

/// defineBeside() with the user's own parameters; tells on standard error which are not defined.
/// @throws FileError
void defineOwn(Design& design, const std::string& path);

} // namespace zint
