#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace zint {

/// A file descriptor that is closed in the end.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor();

    int get() const { return number_; }

private:
    int number_;
};

/// A pseudo-terminal that looks like a serial port to the program that opens it.
///
/// It stays up while that program closes and opens it again; what one session did not read lies there for the
/// next. Calls throw std::system_error where the system refuses.
class PseudoTerminal {
public:
    PseudoTerminal();

    /// Holds the port open, too, from now on: what is sent while no program has it open is then kept for the
    /// next.
    void holdOpen() { held_.emplace(openOtherSide()); }

    /// What a program opens.
    const std::string& path() const { return path_; }

    /// Becomes readable when the program writes or closes. While no program has the port open, there is
    /// nothing to wait on: look every now and then.
    int descriptor() const { return master_.get(); }

    bool isOpen() const { return open_; } ///< whether a program had the port open when last looked

    /// Looks whether a program has the port open. @return whether it has opened it since the last look
    bool takeOpening();

    /// The speed that the program has set, in bits per second; 1 stands for an unusual one.
    int bitsPerSecond() const;

    /// What the program has written, possibly nothing; what it wrote just before it closed the port is still
    /// there.
    std::string read();

    /// Sends as much as there is room for; the rest is lost, and all of it while no program has the port
    /// open.
    void write(std::string_view text);

    /// Waits for the program to read what was sent, as the end of the terminal would take it away.
    void waitUntilRead(std::chrono::milliseconds atMost) const;

private:
    int openOtherSide() const;

    Descriptor master_;
    std::optional<Descriptor> held_;
    std::string path_;
    bool open_ = false;
};

/// A symbolic link for as long as this lives.
class TemporaryLink {
public:
    /// Takes the place of another symbolic link, but of no other file. @throws std::system_error
    TemporaryLink(std::string path, std::string target);
    TemporaryLink(const TemporaryLink&) = delete;
    TemporaryLink& operator=(const TemporaryLink&) = delete;
    ~TemporaryLink();

private:
    std::string path_;
    std::string target_;
};

} // namespace zint
