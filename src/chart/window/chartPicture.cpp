#include "chart/window/chartPicture.h"

#include "platform/text.h"
#include "shared/fileError.h"
#include "shared/textFile.h"

#include <QBuffer>
#include <QImage>
#include <QPdfWriter>
#include <QPrinter>

#include <memory>

namespace zint {
namespace {

bool endsWith(const std::string& path, const char* ending)
{
    return toQt(path).endsWith(QLatin1String(ending), Qt::CaseInsensitive);
}

bool drawImage(ChartLines& lines, QIODevice& file, double ratio)
{
    QImage image;
    const auto imageOf = [&](QSize size) -> QPaintDevice& {
        return image = QImage(size * ratio, QImage::Format_RGB32);
    };
    return lines.drawOn(imageOf) && image.save(&file, "PNG");
}

bool drawDocument(ChartLines& lines, QIODevice& file)
{
    QPdfWriter writer(&file);
    constexpr double pointsPerPixel = 0.75;
    return lines.drawOn([&](QSize size) -> QPaintDevice& {
        writer.setPageSize(QPageSize(QSizeF(size) * pointsPerPixel, QPageSize::Point));
        writer.setPageMargins({});
        return writer;
    });
}

} // namespace

bool isPictureName(const std::string& path) { return endsWith(path, ".png") || endsWith(path, ".pdf"); }

void writeChart(ChartLines& lines, const std::string& path, double devicePixelRatio)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!(endsWith(path, ".pdf") ? drawDocument(lines, buffer) : drawImage(lines, buffer, devicePixelRatio)))
        throw FileError("The picture can't be made; there may be too little memory.");
    replaceFile(path, [&bytes](std::ostream& stream) { stream.write(bytes.constData(), bytes.size()); });
}

bool printChart(ChartLines& lines, QPrinter& printer)
{
    return lines.drawOn([&printer](QSize) -> QPaintDevice& { return printer; });
}

} // namespace zint
