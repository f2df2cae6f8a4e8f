#pragma once

namespace zint {

/// Lets check boxes and radio buttons be seen under dark colours. Called once, when the application object
/// exists.
void useOutlinedBoxes();

} // namespace zint
