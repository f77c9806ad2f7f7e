#include "host/wall/LocalSettings.h"

#include <QDir>
#include <QFileInfo>

namespace quillmark::lumen_wall {

namespace {

constexpr int kMostPictures = 50;

// The folder that the library's own folders stand in.
QString root()
{
    const QString named = qEnvironmentVariable("PWD");
    return named.isEmpty() ? QString("/opt/quillmark") : named;
}

QString folderObjection(const QString& path)
{
    const QFileInfo folder(path);
    if (!folder.isAbsolute())
        return "a folder is named from the root on";
    if (folder.exists())
        return folder.isDir() && folder.isWritable() ? QString() : "this is no folder that can be written to";
    const QFileInfo parent(folder.path());
    return parent.isDir() && parent.isWritable() ? QString() : "there is no such folder, and it cannot be made";
}

} // namespace

const std::vector<Setting>& settings()
{
    using Form = Setting::Form;
    static const std::vector<Setting> table{
        {"Folders", "recordPath", "Recordings, live", Form::Folder, "Web/RecordFiles"},
        {"Folders", "playbackFilePath", "Recordings, other", Form::Folder, "Web/PlaybackFiles"},
        {"Folders", "capturePath", "Pictures, live", Form::Folder, "Web/CaptureFiles"},
        {"Folders", "playbackPicPath", "Pictures, other", Form::Folder, "Web/PlaybackPics"},
        {"Folders", "downloadPath", "Downloads", Form::Folder, "Web/DownloadFiles"},
        {"Streams", "protocolType", "Transport", Form::Choice, "0", "TCP|UDP|Multicast|UDP, then TCP|HTTP|HTTPS"},
        {"Streams", "buffNumberType", "Buffer", Form::Choice, "2",
         "1 picture|3 pictures|6 pictures|15 pictures|as below"},
        {"Streams", "customBuffNumber", "Own buffer", Form::Number, "20"},
        {"Files", "packgeSize", "Recordings of", Form::Choice, "1", "256 MB|512 MB|1 GB"},
        {"Files", "captureFileFormat", "Pictures as", Form::Choice, "0", "JPEG|BMP"},
        {"Files", "playWndType", "New grids", Form::Choice, "0", "Fill|4 : 3|16 : 9|Original|1 : 1"},
        {"On the picture", "ivsMode", "Rules and targets", Form::Switch, "0"},
        {"On the picture", "osdPosInfo", "Positions", Form::Switch, "1"},
        {"On the picture", "osdPicInfo", "Information", Form::Switch, "1"},
        {"On the picture", "showFireBox", "Fire", Form::Switch, "0"},
        {"On the picture", "showFireDistance", "Distance of a fire", Form::Switch, "0"},
        {"On the picture", "showFireMaxTemperature", "Heat of a fire", Form::Switch, "0"},
        {"On the picture", "showFireMaxTemperaturePos", "Hottest point of a fire", Form::Switch, "0"},
        {"On the picture", "showTemperatureBox", "Temperature of areas", Form::Switch, "0"},
        {"On the picture", "showTemperatureLine", "Temperature of lines", Form::Switch, "0"},
        {"On the picture", "showTemperaturePoint", "Temperature of points", Form::Switch, "0"},
        {"On the picture", "captureIncludeTemperatureInfo", "Temperatures in saved pictures", Form::Switch, "0"},
    };
    return table;
}

QString standardOf(const Setting& setting)
{
    return setting.form == Setting::Form::Folder ? root() + '/' + setting.standard : QString(setting.standard);
}

QString objection(const Setting& setting, const QString& value)
{
    if (setting.form == Setting::Form::Folder)
        return folderObjection(value);
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    const int most = setting.form == Setting::Form::Number   ? kMostPictures
                     : setting.form == Setting::Form::Switch ? 1
                                                             : QString(setting.choices).count('|');
    const int least = setting.form == Setting::Form::Number ? 1 : 0;
    return isNumber && number >= least && number <= most ? QString() : "this is none of the choices";
}

QJsonObject readSettings(const Deck& deck)
{
    return deck.ask("LD_GetLocalConfig").toObject().value("localConfig").toObject();
}

// Read first: what is written back is all that the library has read. A write tells no failure.
bool writeSettings(Deck& deck, const QJsonObject& texts)
{
    readSettings(deck);
    deck.call("LD_SetLocalConfig", {{"localConfig", texts}});
    const QJsonObject written = readSettings(deck);
    for (auto text = texts.begin(); text != texts.end(); ++text) {
        if (written.value(text.key()) != text.value())
            return false;
    }
    return true;
}

} // namespace quillmark::lumen_wall
