#include "chart/window/chartPicture.h"

#include "platform/text.h"
#include "shared/fileError.h"
#include "shared/textFile.h"

#include <QBuffer>
#include <QPdfWriter>
#include <QPrinter>

#include <algorithm>

namespace zint {
namespace {

bool endsWith(const std::string& path, const char* ending)
{
    return toQt(path).endsWith(QLatin1String(ending), Qt::CaseInsensitive);
}

/// As large as fits.
bool draw(ChartPlot& plot, QSize size, QPagedPaintDevice& paper)
{
    QCPPainter painter;
    if (!painter.begin(&paper))
        return false;
    const double scale = std::min(static_cast<double>(paper.width()) / size.width(),
                                  static_cast<double>(paper.height()) / size.height());
    painter.scale(scale, scale);
    painter.setMode(QCPPainter::pmVectorized);
    plot.toPainter(&painter, size.width(), size.height());
    return painter.end();
}

bool drawDocument(ChartPlot& plot, QSize size, QIODevice& file)
{
    QPdfWriter writer(&file);
    constexpr double pointsPerPixel = 0.75;
    writer.setPageSize(QPageSize(QSizeF(size) * pointsPerPixel, QPageSize::Point));
    writer.setPageMargins({});
    return draw(plot, size, writer);
}

} // namespace

bool isPictureName(const std::string& path) { return endsWith(path, ".png") || endsWith(path, ".pdf"); }

void writeChart(ChartPlot& plot, const std::string& path, double devicePixelRatio)
{
    if (!isPictureName(path))
        throw FileError("\"" + path + "\": the name of a picture ends in .png or .pdf.");
    QByteArray bytes;
    QBuffer file(&bytes);
    file.open(QIODevice::WriteOnly);
    const QSize size = plot.setOnPaper(true);
    const bool isDrawn =
        endsWith(path, ".pdf")
            ? drawDocument(plot, size, file)
            : plot.toPixmap(size.width(), size.height(), devicePixelRatio).save(&file, "PNG");
    plot.setOnPaper(false);
    if (!isDrawn)
        throw FileError("The picture can't be made; there may be too little memory.");
    replaceFile(path, [&bytes](std::ostream& stream) { stream.write(bytes.constData(), bytes.size()); });
}

bool printChart(ChartPlot& plot, QPrinter& printer)
{
    const bool isDrawn = draw(plot, plot.setOnPaper(true), printer);
    plot.setOnPaper(false);
    return isDrawn;
}

} // namespace zint
