#include "Freedesktop/Interface/Pictures.h"

#include "Freedesktop/Files/FolderWays.h"
#include "Freedesktop/Files/TimelyAnswers.h"

#include <QBuffer>
#include <QImageReader>
#include <QPixmap>
#include <QXmlStreamReader>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string>

namespace marrowick {

namespace {

constexpr qsizetype largestPicture = 4 * 1024 * 1024;
constexpr qsizetype largestSvg = 1024 * 1024;
constexpr int longestSide = 4096;
/// Enough for a menu on the densest of screens.
constexpr int keptSide = 64;

class Descriptor {
public:
    explicit Descriptor(int number)
        : number_(number)
    {
    }
    ~Descriptor()
    {
        if (number_ >= 0)
            close(number_);
    }
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;
    int number() const { return number_; }

private:
    int number_;
};

QSize fitted(QSize size)
{
    QSize const smaller = size.scaled(keptSide, keptSide, Qt::KeepAspectRatio);
    return smaller.expandedTo({ 1, 1 });
}

QImage decoded(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead())
        return {};
    auto const format = reader.format();
    bool const isSvg = format == "svg";
    // A compressed drawing tells nothing of its size.
    if (format == "svgz" || (isSvg && (content.size() > largestSvg || !isHarmlessSvg(content))))
        return {};
    QSize const size = reader.size();
    if (size.isEmpty() || (!isSvg && std::max(size.width(), size.height()) > longestSide))
        return {};
    if (isSvg || std::max(size.width(), size.height()) > keptSide)
        reader.setScaledSize(fitted(size));
    return reader.read();
}

/// Whether an element draws a picture that is not part of the text: opening it may wait, or have no end.
bool namesOtherFile(QXmlStreamReader const& element)
{
    if (element.name() != QLatin1String("image"))
        return false;
    auto const attributes = element.attributes();
    return std::any_of(attributes.begin(), attributes.end(), [](QXmlStreamAttribute const& attribute) {
        return attribute.name() == QLatin1String("href") && !attribute.value().startsWith(QLatin1String("data:"));
    });
}

/// Anybody may name a picture in a volume that does not answer.
std::optional<QByteArray> readInTime(std::string const& path)
{
    auto const volume = volumeOnTheWay(path);
    if (!volume)
        return readRegularFile(path.c_str(), largestPicture);
    auto const read = [path] { return readRegularFile(path.c_str(), largestPicture); };
    return answerInTime(*volume, patienceForItem, read).value_or(std::nullopt);
}

}

std::optional<QByteArray> readRegularFile(char const* path, qsizetype limit)
{
    Descriptor const file(open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status { };
    if (file.number() < 0 || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > limit)
        return std::nullopt;

    QByteArray content(static_cast<qsizetype>(status.st_size), Qt::Uninitialized);
    qsizetype filled = 0;
    while (filled < content.size()) {
        auto const count = read(file.number(), content.data() + filled, static_cast<size_t>(content.size() - filled));
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            break;
        filled += count;
    }
    content.truncate(filled);
    return content;
}

QIcon pictureIcon(char const* path)
{
    auto const content = readInTime(path);
    if (!content)
        return {};
    QImage const image = decoded(*content);
    return image.isNull() ? QIcon() : QIcon(QPixmap::fromImage(image));
}

bool isHarmlessSvg(QByteArray const& text)
{
    constexpr int mostReferences = 32;
    constexpr int deepestNesting = 256;

    QXmlStreamReader reader(text);
    int references = 0;
    int depth = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            if (++depth > deepestNesting)
                return false;
            if (reader.name() == QLatin1String("use") && ++references > mostReferences)
                return false;
            if (namesOtherFile(reader))
                return false;
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        case QXmlStreamReader::DTD:
            if (!reader.entityDeclarations().isEmpty())
                return false;
            break;
        case QXmlStreamReader::NoToken:
        case QXmlStreamReader::Invalid:
        case QXmlStreamReader::StartDocument:
        case QXmlStreamReader::EndDocument:
        case QXmlStreamReader::Characters:
        case QXmlStreamReader::Comment:
        case QXmlStreamReader::EntityReference:
            break;
        case QXmlStreamReader::ProcessingInstruction:
            // The renderer would read the file that it names.
            if (reader.processingInstructionTarget() == QLatin1String("xml-stylesheet"))
                return false;
            break;
        }
    }
    return !reader.hasError();
}

}
