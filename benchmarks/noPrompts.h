#pragma once

#include "measure.h"
#include "shared/prompts.h"

#include <optional>
#include <string>
#include <vector>

/// A measured run is not told anything unless it fails, and not asked.
struct NoPrompts final : zint::Prompts {
    void message(const std::string& text, const std::string&, const std::string&) override
    {
        fail(text.c_str());
    }
    std::optional<std::string> input(const std::string&, const std::string&, const std::string&) override
    {
        return {};
    }
    std::optional<std::size_t> choose(const std::string&, const std::string&,
                                      const std::vector<std::string>&) override
    {
        return {};
    }
    bool confirm(const std::string&, const std::string&) override { return false; }
};
