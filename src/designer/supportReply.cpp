#include "designer/supportReply.h"

#include "shared/module1.h"

namespace zint {
namespace {

constexpr std::string_view replyStart = "41 00 ";
constexpr std::string_view mode = "01";

} // namespace

bool isSupportReply(std::string_view reply) { return reply.starts_with(replyStart); }

std::string_view supportData(std::string_view reply)
{
    const std::string_view data = reply.substr(replyStart.size());
    return data.substr(0, data.find('\r'));
}

bool isUnsupported(std::string_view requestCode, std::string_view bits)
{
    if (!requestCode.starts_with(mode))
        return false;
    const auto pid = hexIn(requestCode.substr(mode.size())); // one that is too large lies beyond any reply
    return pid && textAt(bits, static_cast<std::size_t>(*pid) + 1, 1) == "0";
}

} // namespace zint
