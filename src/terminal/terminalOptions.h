#pragma once

namespace zint {

enum class NumberBase { octal = 8, decimal = 10, hexadecimal = 16 };

/// What the output box shows of the replies.
enum class OutputMode {
    scroll,    ///< the last ones
    overwrite, ///< the last one
    append,    ///< all
};

/// How the terminal shows replies.
struct TerminalOptions {
    NumberBase base = NumberBase::hexadecimal;
    OutputMode mode = OutputMode::scroll;
    bool displayAckHdr = false;      ///< the bytes that repeat the command; in binary mode alone
    bool displayResponseLen = false; ///< as the adapter announces it; in binary mode alone
};

} // namespace zint
