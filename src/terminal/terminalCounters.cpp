#include "terminal/terminalCounters.h"

#include "link/linkCounters.h"
#include "shared/textFile.h"

namespace zint {

std::string TerminalCounters::line() const
{
    return LinkCounters{.bytesIn = bytesIn, .bytesOut = bytesOut, .errors = totalErrors}.text();
}

std::string TerminalCounters::statistics() const
{
    const std::string end(lineEnd);
    return "Bytes In: " + std::to_string(bytesIn) + end +                  //
           "   Messages Recvd:" + std::to_string(messagesReceived) + end + //
           end +                                                           //
           "Bytes Out: " + std::to_string(bytesOut) + end +                //
           "   Commands Sent:" + std::to_string(commandsSent) + end +      //
           end +                                                           //
           "Total Errors: " + std::to_string(totalErrors) + end +          //
           "   Msg Underflow: " + std::to_string(messageUnderflow) + end + //
           "   Cmd failed: " + std::to_string(commandFailed) + end +       //
           "   Cmd syntax err: " + std::to_string(commandSyntaxErrors);
}

} // namespace zint
