#include "Freedesktop/Preview/PreviewFiles.h"

#include <QBuffer>
#include <QFile>
#include <QPainter>
#include <QtEndian>

#include <gtest/gtest.h>

#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace marrowick {

FileURL PreviewFiles::url(QByteArray const& name) const
{
    return FileURL((QFile::encodeName(folder_.path()) + '/' + name).toStdString());
}

FileURL PreviewFiles::write(QByteArray const& name, QByteArray const& content) const
{
    return writeSparse(name, content, content.size());
}

FileURL PreviewFiles::writeSparse(QByteArray const& name, QByteArray const& content, qint64 size) const
{
    auto const place = url(name);
    std::ofstream file(place.path(), std::ios::binary);
    EXPECT_TRUE(file.write(content.constData(), content.size()).flush());
    EXPECT_EQ(::truncate(place.path().c_str(), size), 0);
    return place;
}

FileURL PreviewFiles::makeFolder(QByteArray const& name) const
{
    auto const place = url(name);
    EXPECT_EQ(::mkdir(place.path().c_str(), 0755), 0);
    return place;
}

FileURL PreviewFiles::makeFifo(QByteArray const& name) const
{
    auto const place = url(name);
    EXPECT_EQ(::mkfifo(place.path().c_str(), 0600), 0);
    return place;
}

QByteArray imageFile(char const* format, QImage const& image)
{
    QByteArray content;
    QBuffer buffer(&content);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format));
    return content;
}

QImage twoColours(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter painter(&image);
    painter.fillRect(size.width() / 2, 0, size.width() - size.width() / 2, size.height(), Qt::blue);
    return image;
}

QByteArray pngHeader(QSize size)
{
    auto const number = [](quint32 value) {
        QByteArray bytes(4, '\0');
        qToBigEndian(value, bytes.data());
        return bytes;
    };
    auto const checksum = [](QByteArray const& bytes) {
        quint32 sum = 0xFFFFFFFF;
        for (auto const byte : bytes) {
            sum ^= static_cast<unsigned char>(byte);
            for (int bit = 0; bit < 8; ++bit)
                sum = sum & 1 ? (sum >> 1) ^ 0xEDB88320 : sum >> 1;
        }
        return sum ^ 0xFFFFFFFF;
    };
    auto const header = "IHDR" + number(static_cast<quint32>(size.width()))
        + number(static_cast<quint32>(size.height())) + QByteArray("\x08\x06\x00\x00\x00", 5);
    return "\x89PNG\r\n\x1a\n" + number(13) + header + number(checksum(header)) + number(1000) + "IDAT";
}

QByteArray jpegWithOrientation(QImage const& image, char orientation)
{
    QByteArray entry("Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0", 25);
    entry += orientation;
    entry += QByteArray(6, '\0');
    QByteArray length(2, '\0');
    qToBigEndian(static_cast<quint16>(entry.size() + 2), length.data());
    auto const plain = imageFile("jpeg", image);
    return plain.first(2) + "\xFF\xE1" + length + entry + plain.sliced(2);
}

QByteArray pdfFile(std::vector<QByteArray> const& objects, QByteArray const& trailer)
{
    QByteArray content = "%PDF-1.4\n";
    QByteArray table = "0000000000 65535 f \n";
    int number = 0;
    for (auto const& object : objects) {
        table += QByteArray::number(content.size()).rightJustified(10, '0') + " 00000 n \n";
        content += QByteArray::number(++number) + " 0 obj\n" + object + "\nendobj\n";
    }
    auto const count = QByteArray::number(number + 1);
    auto const start = QByteArray::number(content.size());
    return content + "xref\n0 " + count + '\n' + table + "trailer\n<< /Size " + count + " /Root 1 0 R " + trailer
        + " >>\nstartxref\n" + start + "\n%%EOF\n";
}

QByteArray pdfStream(QByteArray const& dictionary, QByteArray const& content)
{
    return "<< " + dictionary + " /Length " + QByteArray::number(content.size()) + " >>\nstream\n" + content
        + "\nendstream";
}

QByteArray pdfPages(std::vector<QByteArray> const& texts, QByteArray const& trailer)
{
    std::vector<QByteArray> objects { "<< /Type /Catalog /Pages 2 0 R >>", "",
        "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>" };
    QByteArray kids;
    for (auto const& text : texts) {
        auto const page = QByteArray::number(objects.size() + 1);
        auto const content = QByteArray::number(objects.size() + 2);
        kids += page + " 0 R ";
        objects.push_back("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 400 600] /Resources << /Font << /F 3 0 R >> >> "
                          "/Contents "
            + content + " 0 R >>");
        objects.push_back(pdfStream({},
            "0.9 0.95 1 rg 0 0 400 600 re f 0.1 0.2 0.6 rg 40 480 320 60 re f 0 g BT /F 24 Tf 40 420 Td (" + text
                + ") Tj ET"));
    }
    objects[1] = "<< /Type /Pages /Count " + QByteArray::number(texts.size()) + " /Kids [ " + kids + "] >>";
    return pdfFile(objects, trailer);
}

QByteArray endlessPdf()
{
    constexpr int depth = 12;
    constexpr int firstForm = 5;
    std::vector<QByteArray> objects { "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Count 1 /Kids [ 3 0 R ] >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Resources << /XObject << /X 5 0 R >> >> /Contents 4 0 R "
        ">>",
        pdfStream({}, "/X Do") };
    for (int level = 0; level < depth; ++level) {
        auto const next = QByteArray::number(firstForm + level + 1);
        objects.push_back(pdfStream(
            "/Type /XObject /Subtype /Form /BBox [0 0 200 200] /Resources << /XObject << /X " + next + " 0 R >> >>",
            QByteArray("/X Do ").repeated(50)));
    }
    objects.push_back(
        pdfStream("/Type /XObject /Subtype /Form /BBox [0 0 200 200]", QByteArray("0 0 m 200 200 l S ").repeated(20)));
    return pdfFile(objects);
}

}
