#include "app/portTest.h"

#include <utility>

namespace zint {
namespace {

std::string lineOf(const ConnectionDoctor& doctor)
{
    const Diagnosis& found = doctor.diagnosis();
    if (doctor.isRunning())
        return runningText(found);
    if (firstToDo(found))
        return sentenceOf(found);
    const std::string speed =
        found.bitsPerSecond ? " at " + std::to_string(*found.bitsPerSecond) + " bits per second" : "";
    return found.adapter + " answers" + speed + ".";
}

} // namespace

PortTest::PortTest(SettingsStore& settings, const PortList& system, int bitsPerSecond)
    : directory_(settings, system), bitsPerSecond_(bitsPerSecond)
{
}

void PortTest::begin(PortNumber port, const std::string& location, Tell tell)
{
    stop();
    tell_ = std::move(tell);
    directory_.assignForThisRun(port, location);
    run_.emplace(ports_, port);
    run_->gate.onError = [this](const std::string& text, const std::string&) { tell_(text); };
    run_->doctor.onChanged = [this] {
        if (const std::string line = lineOf(run_->doctor); !line.empty())
            tell_(line);
    };
    run_->gate.run([this, port, location] {
        run_->doctor.begin({.port = port,
                            .location = location,
                            .bitsPerSecond = bitsPerSecond_,
                            .detected = directory_.detected()},
                           ConnectionDoctor::Scope::quick);
    });
}

void PortTest::stop()
{
    tell_ = [](const std::string&) {};
    if (run_)
        run_->gate.run([this] { run_->doctor.unload(); });
}

} // namespace zint
