#pragma once

#include "vehicle/adapterLines.h"
#include "vehicle/busProtocol.h"
#include "vehicle/bytes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

/// The frames of the buses, as an adapter prints them.
namespace zint {

/// What a line of a reply may be.
enum class LineForm {
    can11, ///< "7E8 06 41 00 ...", perhaps with the number of bytes behind the identifier: "7E8 8 06 41 ..."
    can29, ///< "18 DA F1 10 06 41 00 ...", likewise
    crcHeader,  ///< J1850: "48 6B 10 41 0C 1A F8 B2"
    sumHeader,  ///< ISO 9141-2: the same with a sum
    kwpHeader,  ///< ISO 14230-4: "84 F1 11 41 0C 1F 40 32", or with a length of its own: "80 F1 11 04 41 ..."
    plain,      ///< no headers: "41 0C 1A F8"; "00A", "0: ...", "1: ..."
    plainFrames ///< no headers, but the length byte and the numbers of CAN: "04 41 0C 1A F8"
};

inline constexpr std::array allLineForms = {
    LineForm::can11,     LineForm::can29, LineForm::crcHeader,   LineForm::sumHeader,
    LineForm::kwpHeader, LineForm::plain, LineForm::plainFrames,
};

/// The forms that a protocol's lines have; all of them where it is unknown.
std::span<const LineForm> formsOf(BusProtocol protocol);

bool hasHeader(LineForm form);

enum class FrameKind {
    whole,       ///< a message
    first,       ///< the first part of one, with its length
    consecutive, ///< a further part; in plain lines number 0 may be a first part
    length       ///< nothing but the length of a message that follows
};

struct Frame {
    FrameKind kind = FrameKind::whole;
    std::uint32_t unit =
        0;          ///< the CAN identifier, or the source's byte of the older buses; 0 without headers
    int number = 0; ///< of a consecutive part, 0 to 15
    std::size_t length = 0; ///< of the whole message
    Bytes data;
    bool isDamaged = false; ///< the checksum is wrong, or data are missing
};

/// A line as a frame of the form; nothing where it does not fit.
std::optional<Frame> frameIn(LineForm form, const HexLine& line);

/// The checksums behind the frames of the older buses: of ISO 9141-2 and ISO 14230-4, of J1850.
std::uint8_t sumOf(BytesView bytes);
std::uint8_t crcOf(BytesView bytes);

/// What reports call the sender of a frame.
std::string unitName(LineForm form, std::uint32_t unit);

} // namespace zint
