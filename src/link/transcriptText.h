#pragma once

#include <functional>
#include <string>
#include <string_view>

/// Transcripts: what an adapter was sent and what came back, as text that users can read and mail.
///
/// UTF-8; "# ..." is a comment, "> 0902" was sent, the lines below it came back. Each line stands for its
/// characters and a CR; one that ends in "\n" for CR LF at its end, one that ends in "\" for none. "\xNN" is
/// a byte that is no text. The prompt is ">" alone, which has no CR.
namespace zint {

struct TranscriptLine {
    enum class Kind { comment, command, reply };
    Kind kind = Kind::comment;
    std::string_view text; ///< as it stands; without the mark in front and, of a command, blanks around it
    std::string bytes;     ///< of commands and replies: what went over the wire, with the line end
};

/// Gives each line of a transcript to `take`, in their order. Any text has lines.
void readTranscriptLines(std::string_view transcript, const std::function<void(const TranscriptLine&)>& take);

/// Writes what was sent at once: a line, if it is anything.
void writeSent(std::string& transcript, std::string_view bytes);

/// Writes what has come, in as many lines as it takes. Read again, the lines are the same bytes.
void writeReceived(std::string& transcript, std::string_view bytes);

/// Writes a line that readers pass over. @param text in one line
void writeComment(std::string& transcript, std::string_view text);

/// A text in capitals without its blanks, as adapters read commands.
std::string compactCommand(std::string_view text);

} // namespace zint
