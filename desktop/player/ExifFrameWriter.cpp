#include "desktop/player/ExifFrameWriter.h"

#include "common/FileReplacement.h"
#include "common/StepError.h"
#include "common/textRules.h"

#include <QBuffer>
#include <QDateTime>
#include <QImage>
#include <cmath>
#include <exiv2/exiv2.hpp>

namespace velmorant {

namespace {

constexpr int jpegQuality = 95;

std::string exifTime(std::int64_t seconds) {
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC)
        .toString("yyyy:MM:dd HH:mm:ss")
        .toStdString();
}

/// Degrees, minutes and seconds to a ten-thousandth, as EXIF keeps an angle.
std::string exifAngle(double degrees) {
    const auto parts = std::llround(std::fabs(degrees) * 3600.0 * 10000.0);
    const long long whole = parts / (3600LL * 10000LL);
    const long long minutes = parts / (60LL * 10000LL) % 60;
    const long long seconds = parts % (60LL * 10000LL);
    return std::to_string(whole) + "/1 " + std::to_string(minutes) + "/1 " +
           std::to_string(seconds) + "/10000";
}

void addTime(Exiv2::ExifData& exif, const FrameDetails& details) {
    const auto moment = details.utcSeconds ? details.utcSeconds : details.cameraSeconds;
    if (!moment)
        return;
    const std::string time = exifTime(*moment);
    exif["Exif.Photo.DateTimeOriginal"] = time;
    exif["Exif.Image.DateTime"] = time;
    if (!details.utcSeconds)
        return; // the recorder's own clock: its zone is not known
    exif["Exif.Photo.OffsetTimeOriginal"] = "+00:00";
    exif["Exif.Photo.OffsetTime"] = "+00:00";
}

void addPlace(Exiv2::ExifData& exif, const FrameDetails& details) {
    if (!details.longitude || !details.latitude)
        return;
    exif["Exif.GPSInfo.GPSVersionID"] = "2 3 0 0";
    exif["Exif.GPSInfo.GPSMapDatum"] = "WGS-84";
    exif["Exif.GPSInfo.GPSLatitudeRef"] = *details.latitude < 0 ? "S" : "N";
    exif["Exif.GPSInfo.GPSLatitude"] = exifAngle(*details.latitude);
    exif["Exif.GPSInfo.GPSLongitudeRef"] = *details.longitude < 0 ? "W" : "E";
    exif["Exif.GPSInfo.GPSLongitude"] = exifAngle(*details.longitude);
    if (details.heading) {
        exif["Exif.GPSInfo.GPSImgDirectionRef"] = "T";
        exif["Exif.GPSInfo.GPSImgDirection"] =
            std::to_string(std::llround(*details.heading * 100.0)) + "/100";
    }
    if (details.utcSeconds) {
        const QDateTime moment = QDateTime::fromSecsSinceEpoch(*details.utcSeconds, Qt::UTC);
        exif["Exif.GPSInfo.GPSDateStamp"] = moment.toString("yyyy:MM:dd").toStdString();
        const QTime time = moment.time();
        exif["Exif.GPSInfo.GPSTimeStamp"] = std::to_string(time.hour()) + "/1 " +
                                            std::to_string(time.minute()) + "/1 " +
                                            std::to_string(time.second()) + "/1";
    }
}

} // namespace

QByteArray ExifFrameWriter::withDetails(const QByteArray& picture, const FrameDetails& details) {
    try {
        const auto* bytes = reinterpret_cast<const Exiv2::byte*>(picture.constData());
        auto image = Exiv2::ImageFactory::open(bytes, static_cast<long>(picture.size()));
        image->readMetadata();
        Exiv2::ExifData exif;
        exif["Exif.Image.Software"] = "Velmorant DVR Tools";
        addTime(exif, details);
        addPlace(exif, details);
        image->setExifData(exif);
        image->writeMetadata();
        Exiv2::BasicIo& io = image->io();
        io.open();
        const Exiv2::DataBuf written = io.read(static_cast<long>(io.size()));
        return {reinterpret_cast<const char*>(written.pData_),
                static_cast<qsizetype>(written.size_)};
    } catch (const Exiv2::AnyError& failure) {
        throw StepError(std::string("The picture's details cannot be written: ") + failure.what());
    }
}

void ExifFrameWriter::saveFrame(const std::string& path, const FrameDetails& details) {
    const std::optional<DecodedFrame> frame = m_player.decodedFrame();
    if (!frame)
        throw StepError(path + ": there is no picture to save");
    const QImage image(frame->rgb.data(), frame->width, frame->height, qsizetype{3} * frame->width,
                       QImage::Format_RGB888);
    const bool png = path.size() >= 4 && equalsIgnoringCase(path.substr(path.size() - 4), ".png");
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, png ? "PNG" : "JPEG", png ? -1 : jpegQuality))
        throw StepError(path + ": the picture cannot be encoded");
    replaceFile(path, withDetails(bytes, details).toStdString());
}

} // namespace velmorant
