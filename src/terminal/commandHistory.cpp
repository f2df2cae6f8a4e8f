#include "terminal/commandHistory.h"

#include <sstream>

namespace zint {
namespace {

constexpr const char* section = "Terminal";
constexpr const char* key = "commands"; // one a line

} // namespace

CommandHistory::CommandHistory(SettingsStore& settings) : settings_(settings)
{
    std::istringstream lines(settings_.get(section, key));
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty())
            keep(line);
    }
    position_ = commands_.size();
}

void CommandHistory::add(const std::string& command)
{
    if (!command.empty() && (commands_.empty() || commands_.back() != command)) {
        keep(command);
        std::string lines;
        for (const std::string& line : commands_)
            lines += line + '\n';
        settings_.save(section, key, lines);
    }
    position_ = commands_.size();
}

std::string CommandHistory::older(const std::string& shown)
{
    keepIfTyped(shown);
    while (position_ > 0) {
        --position_;
        if (commands_[position_] != shown) // a key that changes nothing would seem broken
            return commands_[position_];
    }
    return shown;
}

std::string CommandHistory::newer(const std::string& shown)
{
    keepIfTyped(shown);
    while (position_ < commands_.size()) {
        ++position_;
        const std::string& next = position_ < commands_.size() ? commands_[position_] : typed_;
        if (next != shown)
            return next;
    }
    return shown;
}

void CommandHistory::keep(const std::string& command)
{
    commands_.push_back(command);
    if (commands_.size() > most)
        commands_.pop_front();
}

void CommandHistory::keepIfTyped(const std::string& shown)
{
    if (position_ == commands_.size() || commands_[position_] != shown)
        typed_ = shown;
}

} // namespace zint
