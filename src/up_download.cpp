#include "src/up_download.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/transfer_answers.h"

#include <QJsonObject>

#include <utility>

using namespace quillmark::lumen_deck::detail;

namespace {

constexpr const char* kHomeFolder = "home/";
constexpr const char* kDriveFolder = "D:\\";
constexpr const char* kExcelFilter = "Excel (*.xls)";
constexpr const char* kTextFilter = "TXT (*.txt)";
constexpr const char* kCancelledSave = "/";

QByteArray local(const QString& path)
{
    return path.toLocal8Bit();
}

// The engine has no such export: what is left of it is the choice of a path.
QJsonDocument* answerWithoutEngine(const char* module, const QString& path)
{
    return path.isEmpty() ? flagAnswer(module, 0, 1) : flagAnswer(module, kRefused, 0);
}

QString logFilter(int fileType)
{
    switch (fileType) {
    case 0:
        return kTextFilter;
    case 1:
        return kExcelFilter;
    case 2:
        return QString("%1;;%2").arg(kExcelFilter, kTextFilter);
    default:
        return {};
    }
}

} // namespace

int UpDownload::read(const int& id) const
{
    const std::lock_guard lock(lock_);
    return id;
}

int UpDownload::write(int& id, int value)
{
    const std::lock_guard lock(lock_);
    return id = value;
}

int UpDownload::take(int& id)
{
    const std::lock_guard lock(lock_);
    return std::exchange(id, -1);
}

QString UpDownload::chosenPath(const QString& path, int dialog, const QString& directory) const
{
    QString selectedFilter;
    return path.isEmpty() ? tools_.getAllTypeFileName(dialog, directory, "", selectedFilter) : path;
}

QJsonDocument* UpDownload::StartAsynUpload(const QJsonDocument* document)
{
    constexpr const char* kModule = "startAsynUpload";
    const TransferRequest request(document);
    const QString path = chosenPath(request.path("filepath"), auxiliary::AskForOpenName, kHomeFolder);
    if (isForbiddenFile(path))
        return statusAnswer(kModule, kRefused);
    const int id = TP_StartAsynUpload(request.bytes("uploadUrl").constData(), request.bytes("statusUrl").constData(),
                                      request.bytes("auth").constData(), local(path).constData(),
                                      request.bytes("pReserve").constData(), request.number("iReserve"));
    write(uploadId_, id);
    return id < 0 ? statusAnswer(kModule, id) : nullptr;
}

void UpDownload::StopAsynUpload()
{
    const int id = take(uploadId_);
    if (id >= 0)
        TP_StopAsynUpload(id);
}

QJsonDocument* UpDownload::GetUploadErrorInfo() const
{
    const int id = read(uploadId_);
    if (id < 0)
        return nullptr;
    const QByteArray text = engineText([id](char* buffer) {
        TP_GetUploadErrorInfo(id, buffer);
        return true;
    });
    QJsonObject answer{{"errorInfo", QString::fromLatin1(text)}};
    tools_.doresult(answer);
    return new QJsonDocument(answer);
}

QJsonDocument* UpDownload::GetIpcImportErrorInfo() const
{
    const QByteArray text = engineText([](char* buffer) {
        TP_GetIpcImportErrorInfo(buffer);
        return true;
    });
    QJsonObject answer{{"errorInfo", QString::fromLatin1(text)}};
    tools_.doresult(answer);
    return new QJsonDocument(answer);
}

QJsonDocument* UpDownload::ImportDeviceConfig(const QJsonDocument* document) const
{
    constexpr const char* kModule = "ImportDeviceConfig";
    if (isEmptyDocument(document))
        return statusAnswer(kModule, kRefused);
    const TransferRequest request(document);
    const QString path = chosenPath(request.path("filename"), auxiliary::AskForOpenName, kDriveFolder);
    if (isForbiddenFile(path))
        return statusAnswer(kModule, kRefused);
    return statusAnswer(kModule, TP_ImportDeviceConfig(request.bytes("uploadUrl").constData(),
                                                       request.bytes("auth").constData(), local(path).constData()));
}

QJsonDocument* UpDownload::UploadFile(const QJsonDocument* document) const
{
    constexpr const char* kModule = "UploadFile";
    if (isEmptyDocument(document))
        return textAnswer(kModule, kRefused);
    const TransferRequest request(document);
    const QString path = chosenPath(request.path("filepath"), auxiliary::AskForSaveName, kDriveFolder);
    if (isForbiddenFile(path))
        return statusAnswer(kModule, kRefused);
    const int result =
        TP_Upload(request.bytes("uploadUrl").constData(), request.bytes("auth").constData(), local(path).constData(),
                  request.bytes("contentType").constData(), request.number("iReserve"));
    return result < 0 ? textAnswer(kModule, result) : nullptr;
}

QJsonDocument* UpDownload::ExportDeviceConfig(const QJsonDocument* document) const
{
    constexpr const char* kModule = "ExportDeviceConfig";
    if (isEmptyDocument(document))
        return flagAnswer(kModule, kRefused, 0);
    const TransferRequest request(document);
    QString selectedFilter;
    const QString path =
        tools_.getAllTypeFileName(auxiliary::AskForSaveName, kHomeFolder + request.path("filename"),
                                  request.number("fileType") == 1 ? kExcelFilter : "*", selectedFilter);
    if (path == kCancelledSave)
        return flagAnswer(kModule, 0, 1);
    if (path.section('/', 1, 1).isEmpty())
        return flagAnswer(kModule, kRefused, 0);
    const int result = TP_ExportDeviceConfig(request.bytes("downloadUrl").constData(),
                                             request.bytes("auth").constData(), local(path).constData());
    return result < 0 ? flagAnswer(kModule, result, 0) : nullptr;
}

QJsonDocument* UpDownload::ExportDeviceLog(const QJsonDocument* document) const
{
    constexpr const char* kModule = "ExportDeviceLog";
    if (isEmptyDocument(document))
        return flagAnswer(kModule, kRefused, 0);
    const TransferRequest request(document);
    const QString filter = logFilter(request.number("fileType"));
    QString selectedFilter;
    return answerWithoutEngine(
        kModule, filter.isEmpty()
                     ? request.path("filename")
                     : tools_.getAllTypeFileName(auxiliary::AskForSaveName, kDriveFolder, filter, selectedFilter));
}

QJsonDocument* UpDownload::ExportFile(const QJsonDocument* document) const
{
    constexpr const char* kModule = "ExportFile";
    if (isEmptyDocument(document))
        return flagAnswer(kModule, kRefused, 0);
    QString selectedFilter;
    return answerWithoutEngine(kModule,
                               tools_.getAllTypeFileName(auxiliary::AskForSaveName, kDriveFolder, "*", selectedFilter));
}

QJsonDocument* UpDownload::Download(const QJsonDocument* document) const
{
    constexpr int kExportFile = 2;
    if (isEmptyDocument(document))
        return textAnswer("Download", kRefused);
    const bool isFile = TransferRequest(document).number("method") == kExportFile;
    return isFile ? ExportFile(document) : ExportDeviceConfig(document);
}
