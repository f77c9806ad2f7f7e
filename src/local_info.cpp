#include "src/local_info.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QMap>
#include <QSaveFile>
#include <QTextStream>
#include <QVariant>

#include <memory>
#include <mutex>

namespace {

using Settings = QMap<QString, QVariant>;

constexpr const char* kFileName = "local.json";
constexpr const char* kConfigFolder = ".HarborKit";
constexpr int kLeftoverAgeSeconds = 60;

// Parents come before what they hold: one level is made at a time.
constexpr const char* kWorkingFolders[] = {
    "Web",           "Web/RecordFiles", "Web/CaptureFiles",  "Web/PlaybackFiles",       "Web/PlaybackPics",
    "Web/SecenPics", "Web/ViewPics",    "Web/DownloadFiles", "Web/InteligentFaceFiles",
};

struct Default
{
    const char* key;
    const char* value;
};

constexpr Default kFolderDefaults[] = {
    {"recordPath", "Web/RecordFiles"},         {"capturePath", "Web/CaptureFiles"},
    {"playbackFilePath", "Web/PlaybackFiles"}, {"playbackPicPath", "Web/PlaybackPics"},
    {"downloadPath", "Web/DownloadFiles"},     {"snapScenePicPath", "Web/SecenPics"},
    {"snapViewPicPath", "Web/ViewPics"},       {"FaceSnapPicPath", "Web/InteligentFaceFiles"},
};

constexpr Default kTextDefaults[] = {
    {"protocolType", "0"},
    {"streamType", "0"},
    {"packgeSize", "1"},
    {"playWndType", "0"},
    {"buffNumberType", "2"},
    {"ivsMode", "0"},
    {"realPlayAll", "0"},
    {"captureFileFormat", "0"},
    {"osdPosInfo", "1"},
    {"osdPicInfo", "1"},
    {"showWizard", ""},
    {"secretKey", ""},
    {"showFireBox", ""},
    {"showFireDistance", "0"},
    {"showFireMaxTemperature", "0"},
    {"showFireMaxTemperaturePos", "0"},
    {"showTemperaturePoint", "0"},
    {"showTemperatureLine", "0"},
    {"showTemperatureBox", "0"},
    {"captureIncludeTemperatureInfo", "0"},
};

constexpr int kDefaultCustomBuffNumber = 20;

// One for the process: the file, and the settings last read from it, which a write starts from.
struct SharedConfig
{
    std::mutex lock;
    Settings settings; // guarded by lock
};

SharedConfig& shared()
{
    static SharedConfig instance;
    return instance;
}

QString configFolder(const auxiliary& tools)
{
    return tools.GetUserHomePath() + "/" + kConfigFolder;
}

QString configPath(const auxiliary& tools)
{
    return configFolder(tools) + "/" + kFileName;
}

Settings defaultSettings(const QString& root)
{
    Settings settings{{"customBuffNumber", kDefaultCustomBuffNumber}};
    for (const Default& text : kTextDefaults)
        settings[text.key] = QString(text.value);
    for (const Default& folder : kFolderDefaults)
        settings[folder.key] = root + "/" + folder.value;
    return settings;
}

// What a writer that was killed has left beside the file. The age spares a writer of another process.
void removeLeftovers(const QString& folder)
{
    const QDateTime limit = QDateTime::currentDateTime().addSecs(-kLeftoverAgeSeconds);
    const QFileInfoList found = QDir(folder).entryInfoList({QString(kFileName) + ".*"}, QDir::Files);
    for (const QFileInfo& leftover : found) {
        if (leftover.lastModified() < limit)
            QFile::remove(leftover.filePath());
    }
}

// Latin-1 on the stream, so that each byte of the document is one byte of the file.
bool writeFile(const auxiliary& tools, const Settings& settings)
{
    QJsonDocument document;
    tools.CreateJson(&settings, &document);
    tools.CheckDirectory(configFolder(tools));
    removeLeftovers(configFolder(tools));
    QSaveFile file(configPath(tools));
    file.setDirectWriteFallback(true);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    const QString text = QString::fromLatin1(document.toJson());
    QTextStream stream(&file);
    stream.setCodec("ISO-8859-1");
    stream << text;
    stream.flush();
    if (file.size() != text.size()) // a disk that fills up takes a part and reports no error
        file.cancelWriting();
    return file.commit();
}

void makeWorkingFolders(const auxiliary& tools)
{
    for (const char* folder : kWorkingFolders)
        tools.CheckDirectory(tools.GetUserHomePath() + "/" + folder);
}

bool writeDefaults(const auxiliary& tools)
{
    makeWorkingFolders(tools);
    return writeFile(tools, defaultSettings(tools.GetUserHomePath()));
}

struct Reading
{
    bool isRead = false;
    QString text;
    QJsonDocument document;
    Settings settings;
};

Reading readFile(const auxiliary& tools)
{
    QFile file(configPath(tools));
    if (!file.exists() && !writeDefaults(tools))
        return {};
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    Reading reading;
    reading.isRead = true;
    reading.text = QString::fromUtf8(file.readAll().constData());
    reading.document = QJsonDocument::fromJson(reading.text.toUtf8());
    tools.ParseJson(&reading.document, &reading.settings);
    return reading;
}

// What counts while the file cannot be read.
Settings lastKnown(const auxiliary& tools)
{
    return shared().settings.isEmpty() ? defaultSettings(tools.GetUserHomePath()) : shared().settings;
}

// The complaint about a broken text waits until the lock is free: the host may have put its own handler behind the log.
Reading readShared(const auxiliary& tools)
{
    Reading reading;
    {
        const std::lock_guard lock(shared().lock);
        reading = readFile(tools);
        if (reading.isRead)
            shared().settings = reading.settings;
        else
            reading.settings = lastKnown(tools);
    }
    if (reading.isRead && reading.document.isNull())
        tools.getJsonDocumentFromString(reading.text);
    return reading;
}

} // namespace

QString LocalInfo::GetLocalInfo(const QString& key) const
{
    return readShared(tools_).settings.value(key).toString();
}

QJsonDocument* LocalInfo::ReadLocalFile() const
{
    const Reading reading = readShared(tools_);
    Settings keys{{"errorModule", "getLocalConfig"}, {"errorCode", -1}, {"localConfig", ""}};
    if (reading.isRead)
        keys = {{"errorModule", ""}, {"errorCode", 0}, {"localConfig", QVariant(reading.document)}};
    auto answer = std::make_unique<QJsonDocument>();
    tools_.CreateJson(&keys, answer.get());
    return answer.release();
}

int LocalInfo::WriteLocalFile(const QJsonDocument* document) const
{
    if (!document || !document->isObject())
        return -1;
    const std::lock_guard lock(shared().lock);
    tools_.MergeJson(document->object().value("localConfig").toObject(), shared().settings);
    return writeFile(tools_, shared().settings) ? 0 : -1;
}

int LocalInfo::CreatLocalInfo() const
{
    const std::lock_guard lock(shared().lock);
    return writeDefaults(tools_) ? 0 : -1;
}

void LocalInfo::CreatLocalInfoFolder() const
{
    makeWorkingFolders(tools_);
}
