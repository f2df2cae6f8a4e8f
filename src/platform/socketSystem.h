#pragma once

#include <QtGlobal>

#include <cstddef>
#include <string_view>

/// What a connection over a network needs of the system beyond the toolkit's socket class.
namespace zint {

/// Lets the system notice within 20 s that the other side has gone without a word, with requests on their way
/// or without. Where it has no such options, its own times hold, which may be hours.
void watchOver(qintptr socket);

/// @return how many characters the system took, possibly none
std::size_t sendNow(qintptr socket, std::string_view text);

} // namespace zint
