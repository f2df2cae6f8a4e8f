#pragma once

#include <QPalette>
#include <QPen>
#include <QPixmap>

#include <cstddef>

/// How a chart's lines look, so that they can be told apart on a light and on a dark background.
namespace zint {

/// Colour and dashes of a line. The first styles differ in their colours, those after them in their dashes.
/// @param style from 0
QPen chartPen(std::size_t style, const QPalette& palette);

/// A colour between base and text. @param part 0: the base, 1: the text
QColor chartColour(double part, const QPalette& palette);

/// What lineSample() makes.
constexpr QSize lineSampleSize(20, 12);

/// A piece of a line, to stand beside its name.
QPixmap lineSample(QPen pen, double devicePixelRatio);

} // namespace zint
