#include "include/lumen_deck/lumen_deck.h"
#include "tests/double/EngineDouble.h"
#include "tests/local/Dialogs.h"
#include "tests/local/LocalFiles.h"
#include "tests/support/Functions.h"

#include <QDate>
#include <QJsonArray>

#include <thread>
#include <vector>

namespace local_test {

using Arguments = std::vector<std::string>;
using Operation = QJsonDocument* (*)(const QJsonDocument*);

const QJsonObject kNull{{"null", true}};

QJsonObject failed(const char* module, int code)
{
    return {{"errorModule", module}, {"errorCode", code}};
}

QJsonObject call(Operation operation, const QJsonObject& request = {})
{
    const QJsonDocument document(request);
    return objectOf(operation(&document));
}

QJsonObject succeeded(QJsonObject answer)
{
    answer["errorModule"] = "";
    answer["errorCode"] = 0;
    return answer;
}

// The upload and upgrade ids of the process go from test to test; each begins with both stopped.
class ServicesTest : public RootFolder
{
protected:
    void SetUp() override
    {
        RootFolder::SetUp();
        LD_StopAsynUpload(nullptr);
        LD_StopUpgrade(nullptr);
        engine_double::reset();
    }
    void TearDown() override
    {
        engine_double::reset();
        RootFolder::TearDown();
    }

    static Arguments last(const std::string& name)
    {
        const auto calls = engine_double::calls(name);
        return calls.empty() ? Arguments() : calls.back().arguments;
    }
    static std::size_t count(const std::string& name) { return engine_double::calls(name).size(); }
    std::string dayFolder(const char* folder) const
    {
        return (root() + "/" + folder + "/" + QDate::currentDate().toString("yyyy-MM-dd")).toStdString();
    }
};

TEST_F(ServicesTest, stringsGoThroughTheEngine)
{
    const journal::Tolerated wrongTypes;
    EXPECT_EQ(call(LD_SetSecretKey, {{"keyType", 2}, {"key", "größe"}}), kNull);
    EXPECT_EQ(last("TP_SetSecretKey"), (Arguments{"2", "größe"}));
    engine_double::answer("TP_SetSecretKey", -4);
    EXPECT_EQ(call(LD_SetSecretKey), failed("SetSecretKey", -4));

    const std::pair<QJsonValue, const char*> flags[] = {{true, "0"}, {1, "1"}, {"1", "1"}, {0, "0"}, {"true", "1"}};
    engine_double::giveText("TP_Encrypt", "secret text");
    for (const auto& [flag, expected] : flags) {
        call(LD_SetOriginalString, {{"encrypted", flag}, {"key", "k"}});
        EXPECT_EQ(call(LD_GetEncryptString, {{"type", 3}, {"originalKey", "plain"}}),
                  succeeded({{"encryptString", "secret text"}}));
        EXPECT_EQ(last("TP_Encrypt").at(5), expected);
    }
    EXPECT_EQ(last("TP_Encrypt").at(0), "3");
    EXPECT_EQ(last("TP_Encrypt").at(1), "plain");
    engine_double::answer("TP_Encrypt", 9);
    EXPECT_EQ(call(LD_GetEncryptString), failed("GetEncryptString", 9));

    const QJsonObject refused = failed("GetDecryptString", -1);
    EXPECT_EQ(call(LD_GetDecryptString, {{"key", ""}}), refused);
    EXPECT_EQ(count("TP_Decrypt"), 0U);
    engine_double::giveText("TP_Decrypt", "ключ");
    EXPECT_EQ(call(LD_GetDecryptString, {{"key", "x"}, {"encrypted", 1}})["decryptString"], QString::fromUtf8("ключ"));
    EXPECT_EQ(last("TP_Decrypt").at(5), "1");
    engine_double::answer("TP_Decrypt", -1);
    EXPECT_EQ(call(LD_GetDecryptString, {{"key", "x"}}), refused);
}

TEST_F(ServicesTest, programsAndTheirDataAreNeverSent)
{
    const QString names[] = {"/f.exe", "/f.dat", QString("/f.exe") + QChar(0) + ".txt"};
    for (const QString& name : names) {
        const QJsonObject request{{"filepath", name}, {"filename", name}};
        EXPECT_EQ(call(LD_UploadFile, request), failed("UploadFile", -1));
        EXPECT_EQ(call(LD_StartAsynUpload, request)["errorModule"], "startAsynUpload");
        EXPECT_EQ(call(LD_ImportDeviceConfig, request)["errorCode"], -1);
        EXPECT_EQ(call(LD_StartUpgrade, request), failed("StartUpgrade", -1));
    }
    EXPECT_TRUE(engine_double::calls().empty());
    EXPECT_EQ(call(LD_UploadFile, {{"filepath", "/f.EXE"}, {"uploadUrl", "u"}, {"iReserve", 1}}), kNull);
    EXPECT_EQ(last("TP_Upload"), (Arguments{"u", "", "/f.EXE", "", "1"}));
}

TEST_F(ServicesTest, uploadHasOneSlot)
{
    const journal::Tolerated wrongTypes;
    engine_double::giveText("TP_GetUploadErrorInfo", "too large");
    const QJsonObject request{{"uploadUrl", "u"}, {"statusUrl", "s"}, {"auth", "a"},
                              {"filepath", "/f"}, {"pReserve", 7},    {"iReserve", 1}};
    EXPECT_EQ(call(LD_GetUploadErrorInfo), kNull);
    EXPECT_EQ(call(LD_StartAsynUpload, request), kNull);
    EXPECT_EQ(last("TP_StartAsynUpload"), (Arguments{"u", "s", "a", "/f", "7", "1"}));
    EXPECT_EQ(call(LD_GetUploadErrorInfo), succeeded({{"errorInfo", "too large"}}));
    LD_StopAsynUpload(nullptr);
    LD_StopAsynUpload(nullptr);
    EXPECT_EQ(count("TP_StopAsynUpload"), 1U);
    EXPECT_EQ(call(LD_GetUploadErrorInfo), kNull);
    engine_double::answer("TP_StartAsynUpload", -5);
    EXPECT_EQ(call(LD_StartAsynUpload, request), failed("startAsynUpload", -5));
    EXPECT_EQ(call(LD_GetUploadErrorInfo), kNull);
}

TEST_F(ServicesTest, importAndUploadAnswerTheirOutcome)
{
    engine_double::giveText("TP_GetHTTPErrorInfo", "no room");
    engine_double::giveText("TP_GetIpcImportErrorInfo", "wrong model");
    EXPECT_EQ(call(LD_ImportDeviceConfig), failed("ImportDeviceConfig", -1));
    EXPECT_EQ(call(LD_ImportDeviceConfig, {{"filename", "/c"}})["errorCode"], 0);
    EXPECT_EQ(call(LD_GetIpcImportErrorInfo)["errorInfo"], "wrong model");
    EXPECT_EQ(call(LD_UploadFile),
              (QJsonObject{{"errorModule", "UploadFile"}, {"errorCode", -1}, {"errorInfo", "no room"}}));
    engine_double::answer("TP_Upload", -8);
    EXPECT_EQ(call(LD_UploadFile, {{"filepath", "/c"}}),
              (QJsonObject{{"errorModule", "UploadFile"}, {"errorCode", -8}, {"errorInfo", "no room"}}));
}

TEST_F(ServicesTest, exportsAskForAPath)
{
    const auto flagged = [](const char* module, int code, int ret) {
        return QJsonObject{{"errorModule", module}, {"errorCode", code}, {"ret", ret}};
    };
    for (const Operation operation : {LD_ExportDeviceConfig, LD_ExportDeviceLog})
        EXPECT_EQ(call(operation)["ret"], 0);
    EXPECT_EQ(call(LD_Download)["errorModule"], "Download");
    const QJsonObject request{{"downloadUrl", "u"}, {"auth", "a"}, {"method", 1}};
    {
        DialogUser user([&](QFileDialog& dialog) { dialog.reject(); });
        EXPECT_EQ(call(LD_Download, request), flagged("ExportDeviceConfig", 0, 1));
        EXPECT_EQ(count("TP_ExportDeviceConfig"), 0U);
    }
    for (const int result : {0, -6}) {
        engine_double::answer("TP_ExportDeviceConfig", result);
        DialogUser user([&](QFileDialog& dialog) { choose(dialog, root() + "/config"); });
        EXPECT_EQ(call(LD_ExportDeviceConfig, request), result == 0 ? kNull : flagged("ExportDeviceConfig", result, 0));
        EXPECT_EQ(last("TP_ExportDeviceConfig"), (Arguments{"u", "a", (root() + "/config").toStdString()}));
    }
    DialogUser user([&](QFileDialog& dialog) { choose(dialog, root() + "/file"); });
    EXPECT_EQ(call(LD_Download, {{"method", 2}}), flagged("ExportFile", -1, 0));
    EXPECT_EQ(call(LD_ExportDeviceLog, {{"fileType", 7}, {"filename", ""}}), flagged("ExportDeviceLog", 0, 1));
    EXPECT_EQ(call(LD_ExportDeviceLog, {{"fileType", 7}, {"filename", "/x"}}), flagged("ExportDeviceLog", -1, 0));
}

TEST_F(ServicesTest, downloadsGoToTheFolderOfTheDay)
{
    engine_double::giveText("TP_GetHTTPErrorInfo", "words");
    const QJsonObject request{
        {"downloadUrl", "http://cam/f"}, {"auth", "a"}, {"downloadXml", "<x/>"}, {"filename", "f"}};
    const QJsonObject answer = call(LD_StartDownload, request);
    EXPECT_EQ(answer["errorModule"], "startAsyncDownload");
    EXPECT_EQ(answer["errorCode"], 0);
    EXPECT_EQ(answer["errorInfo"], "words");
    const std::string day = dayFolder("Web/DownloadFiles");
    EXPECT_EQ(last("TP_StartDownload"), (Arguments{"http://cam/f", "a", day + "/f", "<x/>"}));

    const auto with = [&](const char* key, const QJsonValue& value) {
        QJsonObject changed = request;
        changed[key] = value;
        return changed;
    };
    call(LD_StartDownload, with("packageType", 5));
    EXPECT_EQ(last("TP_StartDownloadEx"), (Arguments{"http://cam/f", "a", day + "/f", "5", "<x/>"}));
    for (const char* name : {"a..b", "x/../y"}) {
        call(LD_StartDownload, with("filename", name));
        EXPECT_EQ(last("TP_StartDownload").at(2), day + "/" + name);
    }
    call(LD_StartDownload, with("fileType", "snapmachine"));
    EXPECT_EQ(last("TP_StartDownload").at(2), dayFolder("Web/ViewPics") + "/f");
    EXPECT_EQ(call(LD_StartDownload, with("fileType", "faceSnap"))["errorCode"], -3);
    QDir().mkpath(QString::fromStdString(dayFolder("Web/InteligentFaceFiles")));
    call(LD_StartDownload, with("fileType", "faceSnap"));
    EXPECT_EQ(last("TP_StartDownload").at(2), dayFolder("Web/InteligentFaceFiles") + "/cam/f");
}

TEST_F(ServicesTest, downloadsThatCannotBeginSaySo)
{
    const QJsonObject noFolder = failed("startAsyncDownload", -3);
    const QJsonDocument lost = json(R"({"localConfig":{"downloadPath":"/proc/no/folder"}})");
    EXPECT_EQ(call(LD_StartDownload)["errorCode"], 0);
    const std::size_t before = count("TP_StartDownload");
    for (const char* name : {"../f", "../../../etc/f", "x/../../f"}) {
        const QJsonObject refused = call(LD_StartDownload, {{"filename", name}});
        EXPECT_EQ(refused["errorCode"], -1);
        EXPECT_EQ(refused["downloadId"], -1);
    }
    LD_SetLocalConfig(&lost);
    EXPECT_EQ(call(LD_StartDownload, {{"filename", "f"}}), noFolder);
    EXPECT_EQ(count("TP_StartDownload"), before);
    EXPECT_EQ(call(LD_StartDownload, {{"fileType", "snapmachine"}})["errorCode"], 0);
    engine_double::answer("TP_StartDownload", -11);
    engine_double::giveText("TP_GetHTTPErrorInfo", "No space left on device");
    EXPECT_EQ(call(LD_StartDownload, {{"fileType", "snapmachine"}}),
              (QJsonObject{{"downloadId", -11}, {"errorCode", -11}, {"errorInfo", "No space left on device"}}));
}

TEST_F(ServicesTest, downloadsArePolledById)
{
    const QJsonObject request{{"downloadId", 7}};
    engine_double::give("TP_GetDownloadStatus", {0, 40});
    EXPECT_EQ(call(LD_GetDownloadProgress, request), (QJsonObject{{"downloadProgress", "40"}}));
    engine_double::give("TP_GetDownloadStatus", {-2, 40});
    EXPECT_EQ(call(LD_GetDownloadStatus, request), (QJsonObject{{"downloadStatus", "4294967294"}}));
    EXPECT_EQ(call(LD_GetDownloadInfo, request),
              (QJsonObject{{"downloadStatus", "4294967294"}, {"downloadProgress", "40"}}));
    EXPECT_EQ(call(LD_GetDownloadProgress, request)["errorCode"], -1);
    EXPECT_EQ(last("TP_GetDownloadStatus").at(0), "7");
    call(LD_GetDownloadInfo, {{"other", 1}});
    EXPECT_EQ(last("TP_GetDownloadStatus").at(0), "0");

    engine_double::answer("TP_GetDownloadStatus", -9);
    EXPECT_EQ(call(LD_GetDownloadStatus, request), failed("GetDownloadStatus", -9));
    EXPECT_EQ(call(LD_GetDownloadProgress, request)["errorCode"], -1);
    const std::size_t before = count("TP_GetDownloadStatus");
    const QJsonObject none{{"downloadId", -1}};
    for (const Operation poll : {LD_GetDownloadStatus, LD_GetDownloadInfo, LD_GetDownloadProgress, LD_StopDownload})
        EXPECT_EQ(call(poll, none)["errorCode"], -1);
    EXPECT_EQ(count("TP_GetDownloadStatus"), before);
    EXPECT_EQ(call(LD_StopDownload, request), kNull);
    engine_double::answer("TP_StopDownload", -1);
    EXPECT_EQ(call(LD_StopDownload, request), failed("StopDownload", -1));
}

TEST_F(ServicesTest, upgradeHasOneSlot)
{
    const QJsonObject request{
        {"upgradeUrl", "u"}, {"statusUrl", "s"}, {"auth", "a"}, {"pReserve", "p"}, {"filepath", "/f"}};
    EXPECT_EQ(call(LD_StartUpgrade, request), kNull);
    EXPECT_EQ(last("TP_StartUpgrade"), (Arguments{"u", "s", "a", "/f", "null", "null"}));
    QJsonObject flagged = request;
    flagged["upgradeFlag"] = "keep";
    call(LD_StartUpgrade, flagged);
    EXPECT_EQ(last("TP_StartUpgrade"), (Arguments{"u", "s", "a", "/f", "keep", "p"}));

    engine_double::give("TP_UpgradeStatus", {0, 30});
    EXPECT_EQ(call(LD_UpgradeStatus), succeeded({{"upgradeStatus", "0"}}));
    EXPECT_EQ(call(LD_UpgradeProgress), succeeded({{"upgradeProgress", "30"}, {"upgradeStatus", "0"}}));
    engine_double::give("TP_UpgradeStatus", {3, 30});
    engine_double::lastError(13);
    EXPECT_EQ(call(LD_UpgradeStatus), (QJsonObject{{"errorModule", "UpgradeStatus"}, {"errorCode", "3"}}));
    EXPECT_EQ(call(LD_UpgradeProgress), failed("UpgradeProgress", 13));

    const QJsonObject lastError = failed("StartUpgrade", 13);
    EXPECT_EQ(call(LD_StartUpgrade), lastError); // an empty request tells the last error
    EXPECT_EQ(count("TP_StartUpgrade"), 2U);
    engine_double::answer("TP_StartUpgrade", -2);
    EXPECT_EQ(call(LD_StartUpgrade, request), lastError);
    call(LD_UpgradeStatus);
    EXPECT_EQ(last("TP_UpgradeStatus").at(0), "13");
    LD_StopUpgrade(nullptr);
    LD_StopUpgrade(nullptr);
    EXPECT_EQ(count("TP_StopUpgrade"), 1U);
}

TEST_F(ServicesTest, anyThreadMayCallWithAnyRequest)
{
    const journal::Tolerated wrongTypes;
    const QString longName(10000, 'n');
    const QJsonObject wild[] = {
        {},
        {{"filepath", longName}, {"filename", longName}, {"fileType", longName}, {"downloadId", 1e300}},
        {{"filepath", QJsonArray{1}}, {"filename", true}, {"fileType", 1e9}, {"downloadId", "7"}, {"encrypted", {}}},
    };
    std::vector<std::thread> threads;
    for (int index = 0; index < 4; ++index) {
        threads.emplace_back([&] {
            for (const QJsonObject& request : wild) {
                for (const auto& [name, operation] : functions::of<Operation>()) {
                    call(operation, request);
                    LD_Release(operation(nullptr));
                }
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(call(LD_GetLocalConfig)["errorCode"], 0);
}

} // namespace local_test
