#pragma once

#include <string>

namespace zint {

/// What the call that must fail says. Other exceptions than the given ones pass.
template <typename Error, typename Call>
std::string failureOf(const Call& call)
{
    try {
        call();
    } catch (const Error& error) {
        return error.what();
    }
    return "no failure";
}

} // namespace zint
