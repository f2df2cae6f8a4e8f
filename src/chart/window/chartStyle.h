#pragma once

#include <QIcon>
#include <QPalette>
#include <QPen>
#include <QSize>

#include <array>
#include <cstddef>

/// How a chart's lines look, so that they can be told apart on a light and on a dark background.
namespace zint {

/// Colours that differ for those who see all colours, for those who lack a kind of cones (by the matrices of
/// Machado, Oliveira and Fernandes 2009), and in lightness: any two by 0.12 in OKLab on light and by 0.10 on
/// dark, the first four by 0.17. Their contrast to the background is at least 3 and 4.
inline constexpr std::array<QRgb, 8> coloursOnLight{0x1111bb, 0xcc3322, 0x1199ee, 0x441111,
                                                    0xcc7799, 0x5544ff, 0x885588, 0x111155};
inline constexpr std::array<QRgb, 8> coloursOnDark{0x66eeff, 0xffff77, 0xdd33ff, 0x119933,
                                                   0xaadd00, 0x00cc88, 0x9977aa, 0xdd88ee};

/// A line that is one pixel wide and solid is drawn many times faster than any other.
enum class LineWidth { thin, wide };

/// @param style from 0; the first 32 have each a colour and dashes of their own
QPen chartPen(std::size_t style, LineWidth width, const QPalette& palette);

/// A colour between base and text. @param part 0: the base, 1: the text
QColor chartColour(double part, const QPalette& palette);

/// What lineSample() makes.
inline constexpr QSize lineSampleSize(24, 12);

/// A piece of a line, to stand beside its name.
QIcon lineSample(QPen pen, double devicePixelRatio);

} // namespace zint
