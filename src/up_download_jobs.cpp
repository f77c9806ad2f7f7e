#include "src/up_download.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/transfer_answers.h"

#include <QDate>
#include <QDir>
#include <QJsonObject>
#include <QUrl>

using namespace quillmark::lumen_deck::detail;

namespace {

constexpr int kNoFolder = -3;
constexpr const char* kStartDownload = "startAsyncDownload";
constexpr const char* kStartUpgrade = "StartUpgrade";

// Values as the host reads them: the 32 bits without a sign, in decimal.
QString decimal(int value)
{
    return QString::number(static_cast<unsigned>(value));
}

struct JobState
{
    int result = kRefused;
    int status = 1; // stays, and makes the job look failed, where the engine writes none
    int progress = 0;

    bool isInOrder() const { return result == 0 && status == 0; }
};

JobState downloadState(int id)
{
    JobState state;
    if (id >= 0)
        state.result = TP_GetDownloadStatus(id, &state.status, &state.progress);
    return state;
}

JobState upgradeState(int id)
{
    JobState state;
    state.result = TP_UpgradeStatus(id, &state.status, &state.progress);
    return state;
}

bool makeFolder(const QString& path)
{
    return !path.isEmpty() && (QDir(path).exists() || QDir().mkdir(path));
}

// The folder above may be one that could not be made when the settings were.
bool makeFolder(const QString& path, const LocalInfo& localInfo)
{
    if (makeFolder(path))
        return true;
    localInfo.CreatLocalInfoFolder();
    return makeFolder(path);
}

// The folder that a kind of file goes to, instead of the user's download folder.
QString fixedFolder(const QString& fileType)
{
    static const QMap<QString, QString> folders = {{"snapmachine", "Web/ViewPics"},
                                                   {"faceSnap", "Web/InteligentFaceFiles"}};
    return folders.value(fileType);
}

QString dayFolder(const QString& folder)
{
    return folder + "/" + QDate::currentDate().toString("yyyy-MM-dd");
}

// Face pictures lie in a folder a device, named by its host.
QString targetFolder(const QString& day, const TransferRequest& request)
{
    if (request.text("fileType") != "faceSnap")
        return day;
    return day + "/" + QUrl(QString::fromUtf8(request.bytes("downloadUrl"))).host();
}

bool leavesFolder(const QString& path, const QString& folder)
{
    const QString inside = QDir::cleanPath(folder);
    const QString cleaned = QDir::cleanPath(path);
    return cleaned != inside && !cleaned.startsWith(inside + "/");
}

QJsonDocument* downloadFailed(int code, const QString& text)
{
    return new QJsonDocument(QJsonObject{{"downloadId", code}, {"errorCode", code}, {"errorInfo", text}});
}

int startInEngine(const TransferRequest& request, const QByteArray& path)
{
    constexpr int kPackage = 5;
    const QByteArray url = request.bytes("downloadUrl");
    const QByteArray auth = request.bytes("auth");
    const QByteArray xml = request.bytes("downloadXml");
    if (request.number("packageType") == kPackage)
        return TP_StartDownloadEx(url.constData(), auth.constData(), path.constData(), kPackage, xml.constData());
    return TP_StartDownload(url.constData(), auth.constData(), path.constData(), xml.constData());
}

} // namespace

QJsonDocument* UpDownload::StartDownload(const QJsonDocument* document)
{
    const TransferRequest request(document);
    const QString configured = localInfo_.GetLocalInfo("downloadPath");
    const QString fixed = fixedFolder(request.text("fileType"));
    if (fixed.isEmpty() && !makeFolder(configured, localInfo_))
        return statusAnswer(kStartDownload, kNoFolder);
    const QString day = dayFolder(fixed.isEmpty() ? configured : tools_.GetUserHomePath() + "/" + fixed);
    const QString target = targetFolder(day, request);
    const QString path = target + "/" + request.path("filename");
    if (leavesFolder(target, day) || leavesFolder(path, target))
        return downloadFailed(kRefused, "the file name leaves the folder of the day");
    if (!makeFolder(target, localInfo_))
        return statusAnswer(kStartDownload, kNoFolder);
    const int id = startInEngine(request, path.toLocal8Bit());
    if (id < 0)
        return downloadFailed(id, httpErrorText());
    {
        const std::lock_guard lock(lock_);
        downloads_[id] = true;
    }
    return new QJsonDocument(QJsonObject{
        {"errorCode", 0}, {"errorModule", kStartDownload}, {"downloadId", id}, {"errorInfo", httpErrorText()}});
}

QJsonDocument* UpDownload::StopDownload(const QJsonDocument* document)
{
    const int id = TransferRequest(document).number("downloadId");
    if (id < 0 || TP_StopDownload(id) < 0)
        return statusAnswer("StopDownload", kRefused);
    const std::lock_guard lock(lock_);
    downloads_.remove(id);
    return nullptr;
}

QJsonDocument* UpDownload::GetDownloadProgress(const QJsonDocument* document) const
{
    const JobState state = downloadState(TransferRequest(document).number("downloadId"));
    if (state.result < 0 || state.status != 0)
        return statusAnswer("GetDownloadProgress", kRefused);
    return new QJsonDocument(QJsonObject{{"downloadProgress", decimal(state.progress)}});
}

QJsonDocument* UpDownload::GetDownloadStatus(const QJsonDocument* document) const
{
    const JobState state = downloadState(TransferRequest(document).number("downloadId"));
    if (state.result < 0)
        return statusAnswer("GetDownloadStatus", state.result);
    return new QJsonDocument(QJsonObject{{"downloadStatus", decimal(state.status)}});
}

QJsonDocument* UpDownload::GetDownloadInfo(const QJsonDocument* document) const
{
    const JobState state = downloadState(TransferRequest(document).number("downloadId"));
    if (state.result < 0)
        return statusAnswer("GetDownloadInfo", state.result);
    return new QJsonDocument(
        QJsonObject{{"downloadStatus", decimal(state.status)}, {"downloadProgress", decimal(state.progress)}});
}

QJsonDocument* UpDownload::StartUpgrade(const QJsonDocument* document)
{
    if (isEmptyDocument(document) && read(upgradeId_) >= 0)
        return statusAnswer(kStartUpgrade, write(upgradeId_, static_cast<int>(TP_GetLastError())));
    const TransferRequest request(document);
    const QString path = chosenPath(request.path("filepath"), auxiliary::AskForSaveName, "D:\\");
    if (isForbiddenFile(path))
        return statusAnswer(kStartUpgrade, kRefused);
    const QByteArray flag = request.bytes("upgradeFlag");
    const QByteArray reserve = request.bytes("pReserve");
    const int id =
        TP_StartUpgrade(request.bytes("upgradeUrl").constData(), request.bytes("statusUrl").constData(),
                        request.bytes("auth").constData(), path.toLocal8Bit().constData(),
                        flag.isEmpty() ? nullptr : flag.constData(), flag.isEmpty() ? nullptr : reserve.constData());
    if (id < 0)
        return statusAnswer(kStartUpgrade, write(upgradeId_, static_cast<int>(TP_GetLastError())));
    write(upgradeId_, id);
    return nullptr;
}

void UpDownload::StopUpgrade()
{
    const int id = take(upgradeId_);
    if (id >= 0)
        TP_StopUpgrade(id);
}

QJsonDocument* UpDownload::UpgradeStatus() const
{
    const JobState state = upgradeState(read(upgradeId_));
    QJsonObject answer{{"upgradeStatus", decimal(state.status)}};
    if (!state.isInOrder())
        answer = {{"errorModule", "UpgradeStatus"}, {"errorCode", decimal(state.status)}};
    tools_.doresult(answer);
    return new QJsonDocument(answer);
}

QJsonDocument* UpDownload::UpgradeProgress() const
{
    const JobState state = upgradeState(read(upgradeId_));
    if (!state.isInOrder())
        return statusAnswer("UpgradeProgress", static_cast<int>(TP_GetLastError()));
    QJsonObject answer{{"upgradeProgress", decimal(state.progress)}, {"upgradeStatus", decimal(state.status)}};
    tools_.doresult(answer);
    return new QJsonDocument(answer);
}
