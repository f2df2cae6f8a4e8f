#pragma once

namespace zint {

/// The tools that the launcher opens.
enum class Tool { codes, doctor, dtcEditor, pollDesigner, pollRunner, scanner, terminal, vehicleReport };

} // namespace zint
