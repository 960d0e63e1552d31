#include "core/picture/modJPEG.h"

#include "core/base/text.h"
#include "core/picture/ijl.h"
#include "core/platform/dialogs/dialogs.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace veltrona::modJPEG {

namespace {

struct ErrorText {
    std::int32_t code;
    const char *text;
};

constexpr ErrorText errorTexts[] = {
    {0, ""},
    {1, ""},
    {2, ""},
    {-1, "Exception detected"},
    {-2, "Invalid encoder"},
    {-3, "Unsupported subsampling"},
    {-4, "Unsupported bytes per pixel"},
    {-5, "Memory Error"},
    {-6, "Bad huffman table"},
    {-7, "Bad quant table"},
    {-8, "Invalid JPEG properties specified"},
    {-9, "An error occored while closing the file"},
    {-10, "Invalid file name"},
    {-11, "EOF Error"},
    {-12, "Prog Not Supported"},
    {-13, "Error - NOT JPEG"},
    {-14, "Error - COMP"},
    {-15, "Error - SOF"},
    {-16, "Error - DNL"},
    {-17, "Error - NO HUF"},
    {-18, "Error - NO QUAN"},
    {-19, "Error - NO FRAME"},
    {-20, "Error - MULT FRAME"},
    {-21, "Error - DATA"},
    {-22, "Error - NO IMAGE"},
    {-23, "File Error"},
    {-24, "Internal Error"},
    {-25, "Bad RST Marker"},
    {-26, "Thumbnail - DIB Too Small"},
    {-27, "Thumbnail - DIB Wrong Color"},
    {-99, "Reserved"},
};

/// The text of a code; for one of libjpeg's own, the text that it has left.
QString codecText(std::int32_t code, const ijl::JPEG_CORE_PROPERTIES &record) {
    const bool isOfLibrary = code >= ijl::firstCodeOfLibrary && record.message[0] != '\0';
    return isOfLibrary ? QString::fromLocal8Bit(record.message) : ijlErrorText(code);
}

bool mayReplace(const QString &fileName) {
    return dialogs().message(MessageStyle::YesNoExclamation, u"  Confirm File Overwrite"_s,
                             fileName + u"\rThis file already exists.\r\r"
                                        "Replace existing file?"_s) == Answer::Yes;
}

bool encode(const cJPEG &picture, const QString &fileName, std::int32_t quality,
            std::int32_t &errNumber, QString &errDescription, QString *reason, int handle) {
    ijl::JPEG_CORE_PROPERTIES record{};
    errNumber = ijl::ijlInit(&record);
    if (errNumber != 0) {
        errDescription =
            u"Failed to initialise the IJL library - "_s + codecText(errNumber, record);
        return false;
    }
    const QByteArray name = QFile::encodeName(fileName);
    record.DIBBytes = picture.DIBSectionBitsPtr();
    record.DIBWidth = picture.Width();
    record.DIBHeight = -picture.Height();
    record.DIBPadBytes = picture.BytesPerScanLine() - picture.Width() * 3;
    record.JPGFile = name.constData();
    record.handle = handle;
    record.JPGWidth = picture.Width();
    record.JPGHeight = picture.Height();
    record.jquality = quality;
    errNumber = ijl::ijlWrite(&record, ijl::IJL_JFILE_WRITEWHOLEIMAGE);
    if (errNumber != 0)
        errDescription = u"ijlWrite Error - "_s + codecText(errNumber, record);
    if (reason)
        *reason = QString::fromLocal8Bit(record.message);
    ijl::ijlFree(&record);
    return errNumber == 0;
}

} // namespace

bool saveJPEG(const cJPEG &picture, const QString &FileName, std::int32_t quality, bool prompt,
              std::int32_t &errNumber, QString &errDescription, QString *reason, int handle) {
    errNumber = 0;
    errDescription.clear();
    if (!picture.PictureLoaded()) {
        errNumber = -1;
        errDescription = u"No picture loaded to save."_s;
        return false;
    }
    // A device of that name stays.
    if (handle < 0 && QFileInfo(FileName).isFile()) {
        if (prompt && !mayReplace(FileName))
            return true;
        QFile::remove(FileName);
    }
    return encode(picture, FileName, std::clamp(quality, 1, 100), errNumber, errDescription, reason,
                  handle);
}

QString ijlErrorText(std::int32_t code) {
    const auto *found = std::ranges::find(errorTexts, code, &ErrorText::code);
    return QLatin1String(found == std::end(errorTexts) ? "Unknown Error" : found->text);
}

} // namespace veltrona::modJPEG
