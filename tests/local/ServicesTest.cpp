#include "tests/local/LocalFiles.h"
#include "tests/support/Functions.h"
#include "tests/support/Threads.h"
#include "tests/support/Wall.h"

namespace local_test {

QJsonObject failed(const char* module, int code)
{
    return {{"errorModule", module}, {"errorCode", code}};
}

QJsonObject succeeded(QJsonObject answer)
{
    answer["errorModule"] = "";
    answer["errorCode"] = 0;
    return answer;
}

// A request, what the engine is asked for first, and the answer.
struct Step
{
    Operation operation;
    QByteArray request;
    std::string asked;
    QJsonObject answer;
};

void expect(std::initializer_list<Step> steps)
{
    for (const Step& step : steps) {
        const std::size_t before = engine_double::calls().size();
        EXPECT_EQ(call(step.operation, step.request), step.answer) << step.request.toStdString() << step.asked;
        const std::vector<std::string> calls = wall::engineCalls(before);
        EXPECT_EQ(calls.empty() ? "" : calls[0], step.asked);
    }
}

// The upload and upgrade ids of the process go from test to test; each begins with both stopped.
class ServicesTest : public RootFolder
{
protected:
    ServicesTest()
    {
        LD_StopAsynUpload(nullptr);
        LD_StopUpgrade(nullptr);
        engine_double::reset();
    }
};

TEST_F(ServicesTest, stringsGoThroughTheEngine)
{
    const journal::Tolerated wrongTypes;
    engine_double::giveText("TP_Encrypt", "secret text");
    engine_double::giveText("TP_Decrypt", "ключ");
    expect({{LD_SetSecretKey, R"({"keyType":2,"key":"größe"})", "TP_SetSecretKey(2, größe)", kNull}});
    const QByteArray plain = R"({"type":3,"originalKey":"plain"})";
    const std::pair<const char*, const char*> flags[] = {
        {"true", "0"}, {"1", "1"}, {R"("1")", "1"}, {"0", "0"}, {R"("true")", "1"}};
    for (const auto& [flag, expected] : flags) {
        call(LD_SetOriginalString, QByteArray(R"({"key":"k","encrypted":)") + flag + "}");
        expect({{LD_GetEncryptString, plain, std::string("TP_Encrypt(3, plain, pointer, pointer, 0, ") + expected + ")",
                 succeeded({{"encryptString", "secret text"}})}});
    }
    expect({{LD_GetDecryptString, R"({"key":""})", "", failed("GetDecryptString", -1)},
            {LD_GetDecryptString, R"({"key":"x","encrypted":1})", "TP_Decrypt(0, x, pointer, pointer, 0, 1)",
             succeeded({{"decryptString", "ключ"}})}});
    for (const char* name : {"TP_SetSecretKey", "TP_Encrypt", "TP_Decrypt"})
        engine_double::answer(name, -4);
    EXPECT_EQ(call(LD_SetSecretKey), failed("SetSecretKey", -4));
    EXPECT_EQ(call(LD_GetEncryptString), failed("GetEncryptString", -4));
    EXPECT_EQ(call(LD_GetDecryptString, R"({"key":"x"})"), failed("GetDecryptString", -4));
}

TEST_F(ServicesTest, programsAndTheirDataAreNeverSent)
{
    for (const char* const name : {"/f.exe", "/f.dat", "/f.exe\\u0000.txt"}) {
        const QByteArray request = QByteArray(R"({"filepath":")") + name + R"(","filename":")" + name + "\"}";
        expect({{LD_UploadFile, request, "", failed("UploadFile", -1)},
                {LD_StartAsynUpload, request, "", failed("startAsynUpload", -1)},
                {LD_ImportDeviceConfig, request, "", failed("ImportDeviceConfig", -1)},
                {LD_StartUpgrade, request, "", failed("StartUpgrade", -1)}});
    }
    expect({{LD_UploadFile, R"({"filepath":"/f.EXE","uploadUrl":"u","iReserve":1})", "TP_Upload(u, , /f.EXE, , 1)",
             kNull}});
}

TEST_F(ServicesTest, uploadHasOneSlot)
{
    const journal::Tolerated wrongTypes;
    const QByteArray request =
        R"({"uploadUrl":"u","statusUrl":"s","auth":"a","filepath":"/f","pReserve":7,"iReserve":1})";
    const std::string start = "TP_StartAsynUpload(u, s, a, /f, 7, 1)";
    engine_double::giveText("TP_GetUploadErrorInfo", "too large");
    engine_double::answer("TP_StartAsynUpload", 5);
    expect({{LD_GetUploadErrorInfo, "{}", "", kNull},
            {LD_StartAsynUpload, request, start, kNull},
            {LD_GetUploadErrorInfo, "{}", "TP_GetUploadErrorInfo(5, pointer)", succeeded({{"errorInfo", "too large"}})},
            {LD_StopAsynUpload, "{}", "TP_StopAsynUpload(5)", kNull},
            {LD_StopAsynUpload, "{}", "", kNull},
            {LD_GetUploadErrorInfo, "{}", "", kNull}});
    engine_double::answer("TP_StartAsynUpload", -5);
    expect({{LD_StartAsynUpload, request, start, failed("startAsynUpload", -5)},
            {LD_GetUploadErrorInfo, "{}", "", kNull}});
}

TEST_F(ServicesTest, importAndUploadAnswerTheirOutcome)
{
    const auto uploadFailed = [](int code) {
        return QJsonObject{{"errorModule", "UploadFile"}, {"errorCode", code}, {"errorInfo", "no room"}};
    };
    engine_double::giveText("TP_GetHTTPErrorInfo", "no room");
    engine_double::giveText("TP_GetIpcImportErrorInfo", "wrong model");
    engine_double::answer("TP_Upload", -8);
    EXPECT_EQ(call(LD_ImportDeviceConfig), failed("ImportDeviceConfig", -1));
    EXPECT_EQ(call(LD_ImportDeviceConfig, R"({"filename":"/c"})")["errorCode"], 0);
    EXPECT_EQ(call(LD_GetIpcImportErrorInfo)["errorInfo"], "wrong model");
    EXPECT_EQ(call(LD_UploadFile), uploadFailed(-1));
    EXPECT_EQ(call(LD_UploadFile, R"({"filepath":"/c"})"), uploadFailed(-8));
}

TEST_F(ServicesTest, exportsAskForAPath)
{
    const auto flagged = [](const char* module, int code, int ret) {
        return QJsonObject{{"errorModule", module}, {"errorCode", code}, {"ret", ret}};
    };
    for (const Operation operation : {LD_ExportDeviceConfig, LD_ExportDeviceLog})
        EXPECT_EQ(call(operation)["ret"], 0);
    EXPECT_EQ(call(LD_Download)["errorModule"], "Download");
    const QByteArray request = R"({"downloadUrl":"u","auth":"a","method":1})";
    {
        DialogUser user([&](QFileDialog& dialog) { dialog.reject(); });
        expect({{LD_Download, request, "", flagged("ExportDeviceConfig", 0, 1)}});
    }
    const std::string chosen = "TP_ExportDeviceConfig(u, a, " + root().toStdString() + "/config)";
    for (const int result : {0, -6}) {
        engine_double::answer("TP_ExportDeviceConfig", result);
        DialogUser user([&](QFileDialog& dialog) { choose(dialog, root() + "/config"); });
        expect(
            {{LD_ExportDeviceConfig, request, chosen, result == 0 ? kNull : flagged("ExportDeviceConfig", result, 0)}});
    }
    DialogUser user([&](QFileDialog& dialog) { choose(dialog, root() + "/file"); });
    expect({{LD_Download, R"({"method":2})", "", flagged("ExportFile", -1, 0)},
            {LD_ExportDeviceLog, R"({"fileType":7,"filename":""})", "", flagged("ExportDeviceLog", 0, 1)},
            {LD_ExportDeviceLog, R"({"fileType":7,"filename":"/x"})", "", flagged("ExportDeviceLog", -1, 0)}});
}

TEST_F(ServicesTest, downloadsGoToTheFolderOfTheDayAndNowhereElse)
{
    // Asks for a download with these keys too.
    const auto expectCall = [&](const QByteArray& more, const std::string& asked) {
        const std::size_t before = engine_double::calls().size();
        const QJsonObject answer =
            call(LD_StartDownload,
                 R"({"downloadUrl":"http://cam/f","auth":"a","downloadXml":"<x/>","filename":"f")" + more + "}");
        EXPECT_EQ(answer["errorModule"], "startAsyncDownload");
        EXPECT_EQ(answer["errorInfo"], "words");
        EXPECT_EQ(wall::engineCalls(before).at(0), asked);
    };
    const std::string day = wall::dayFolder("DownloadFiles").toStdString();
    const std::string start = "TP_StartDownload(http://cam/f, a, ";
    engine_double::giveText("TP_GetHTTPErrorInfo", "words");
    expectCall("", start + day + "/f, <x/>)");
    expectCall(R"(,"packageType":5)", "TP_StartDownloadEx(http://cam/f, a, " + day + "/f, 5, <x/>)");
    expectCall(R"(,"filename":"a..b")", start + day + "/a..b, <x/>)");
    expectCall(R"(,"filename":"x/../y")", start + day + "/x/../y, <x/>)");
    expectCall(R"(,"fileType":"snapmachine")", start + wall::dayFolder("ViewPics").toStdString() + "/f, <x/>)");

    const QString faces = wall::dayFolder("InteligentFaceFiles");
    EXPECT_EQ(call(LD_StartDownload, R"({"downloadUrl":"http://cam/f","fileType":"faceSnap"})")["errorCode"], -3);
    QDir().mkpath(faces);
    expectCall(R"(,"fileType":"faceSnap")", start + faces.toStdString() + "/cam/f, <x/>)");
    const QJsonObject refused{
        {"downloadId", -1}, {"errorCode", -1}, {"errorInfo", "the file name leaves the folder of the day"}};
    for (const char* const name : {"../f", "../../../etc/f", "x/../../f"})
        expect({{LD_StartDownload, QByteArray(R"({"filename":")") + name + "\"}", "", refused}});
}

TEST_F(ServicesTest, downloadsArePolledById)
{
    const QByteArray request = R"({"downloadId":7})";
    const std::string poll = "TP_GetDownloadStatus(7, pointer, pointer)";
    const QJsonObject noProgress = failed("GetDownloadProgress", -1);
    engine_double::give("TP_GetDownloadStatus", {0, 40});
    expect({{LD_GetDownloadProgress, request, poll, {{"downloadProgress", "40"}}}});
    engine_double::give("TP_GetDownloadStatus", {-2, 40});
    const QJsonObject info{{"downloadStatus", "4294967294"}, {"downloadProgress", "40"}};
    expect({{LD_GetDownloadStatus, request, poll, {{"downloadStatus", "4294967294"}}},
            {LD_GetDownloadInfo, request, poll, info},
            {LD_GetDownloadInfo, R"({"other":1})", "TP_GetDownloadStatus(0, pointer, pointer)", info},
            {LD_GetDownloadProgress, request, poll, noProgress},
            {LD_StopDownload, request, "TP_StopDownload(7)", kNull}});
    engine_double::answer("TP_GetDownloadStatus", -9);
    engine_double::answer("TP_StopDownload", -1);
    expect({{LD_GetDownloadStatus, request, poll, failed("GetDownloadStatus", -9)},
            {LD_GetDownloadProgress, request, poll, noProgress},
            {LD_StopDownload, request, "TP_StopDownload(7)", failed("StopDownload", -1)}});
    const QByteArray none = R"({"downloadId":-1})";
    expect({{LD_GetDownloadStatus, none, "", failed("GetDownloadStatus", -1)},
            {LD_GetDownloadInfo, none, "", failed("GetDownloadInfo", -1)},
            {LD_GetDownloadProgress, none, "", noProgress},
            {LD_StopDownload, none, "", failed("StopDownload", -1)}});
}

TEST_F(ServicesTest, upgradeHasOneSlot)
{
    const QByteArray request = R"("upgradeUrl":"u","statusUrl":"s","auth":"a","pReserve":"p","filepath":"/f"})";
    const std::string start = "TP_StartUpgrade(u, s, a, /f, null, null)";
    const std::string poll = "TP_UpgradeStatus(4, pointer, pointer)";
    engine_double::answer("TP_StartUpgrade", 4);
    engine_double::give("TP_UpgradeStatus", {0, 30});
    expect({{LD_StartUpgrade, "{" + request, start, kNull},
            {LD_StartUpgrade, R"({"upgradeFlag":"keep",)" + request, "TP_StartUpgrade(u, s, a, /f, keep, p)", kNull},
            {LD_UpgradeStatus, "{}", poll, succeeded({{"upgradeStatus", "0"}})},
            {LD_UpgradeProgress, "{}", poll, succeeded({{"upgradeProgress", "30"}, {"upgradeStatus", "0"}})}});
    engine_double::give("TP_UpgradeStatus", {3, 30});
    engine_double::lastError(13);
    engine_double::answer("TP_StartUpgrade", -2);
    expect({{LD_UpgradeStatus, "{}", poll, {{"errorModule", "UpgradeStatus"}, {"errorCode", "3"}}},
            {LD_UpgradeProgress, "{}", poll, failed("UpgradeProgress", 13)},
            {LD_StartUpgrade, "{}", "", failed("StartUpgrade", 13)}, // an empty request tells the last error
            {LD_StartUpgrade, "{" + request, start, failed("StartUpgrade", 13)}});
    call(LD_UpgradeStatus);
    EXPECT_EQ(engine_double::calls("TP_UpgradeStatus").back().arguments.at(0), "13");
    LD_StopUpgrade(nullptr);
    LD_StopUpgrade(nullptr);
    EXPECT_EQ(engine_double::calls("TP_StopUpgrade").size(), 1U);
}

TEST_F(ServicesTest, anyThreadMayCallWithAnyRequest)
{
    const journal::Tolerated wrongTypes;
    const QByteArray longName = "\"" + QByteArray(10000, 'n') + "\"";
    const QByteArray wild[] = {
        "{}",
        R"({"filepath":)" + longName + R"(,"filename":)" + longName + R"(,"fileType":)" + longName +
            R"(,"downloadId":1e300})",
        R"({"filepath":[1],"filename":true,"fileType":1e9,"downloadId":"7","encrypted":null})",
    };
    onThreads(4, [&](int) {
        for (const QByteArray& request : wild) {
            for (const auto& [name, operation] : functions::of<Operation>()) {
                call(operation, request);
                LD_Release(operation(nullptr));
            }
        }
    });
    EXPECT_EQ(call(LD_GetLocalConfig)["errorCode"], 0);
}

} // namespace local_test
