#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace zint {

/// A file descriptor that is closed in the end.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept;
    Descriptor& operator=(Descriptor&& other) noexcept;
    ~Descriptor() { reset(); }

    int get() const { return number_; }
    bool valid() const { return number_ >= 0; }
    void reset(int number = -1);

private:
    int number_;
};

/// A pseudo-terminal that looks like a serial port to the program that opens it.
///
/// It stays up while that program closes and opens it again. As on a real port, what was sent to one session
/// is not there for the next. Calls throw std::system_error where the system refuses.
class PseudoTerminal {
public:
    PseudoTerminal();

    /// What a program opens.
    const std::string& path() const { return path_; }

    int dataDescriptor() const { return master_.get(); } ///< readable when the program has written something
    int openingDescriptor() const
    {
        return watch_.get();
    } ///< readable when it has opened the port; may be -1

    /// Whether a program has opened the port since the last call. Ask before reading: what it has written
    /// since then belongs to the new session. What it left unread before is dropped.
    bool takeOpening();

    /// What the program has written, possibly nothing.
    std::string read();

    /// Sends as much as there is room for; the rest is lost, as on a line that nobody reads.
    void write(std::string_view text);

    /// Waits for the program to read what was sent, as closing would take it away.
    void waitUntilRead(std::chrono::milliseconds atMost) const;

private:
    Descriptor master_;
    Descriptor slave_; // kept open, so that the line survives while no program has it open
    Descriptor watch_;
    std::string path_;
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
