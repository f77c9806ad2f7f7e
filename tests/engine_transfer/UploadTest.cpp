#include "tests/engine_transfer/TransferTest.h"

#include <atomic>

#include <sys/stat.h>

namespace transfer_test {

class UploadTest : public TransferTest
{
protected:
    // A device that answers its status address with each of `reports`, the last one for ever.
    void serveReports(std::vector<Response> reports)
    {
        auto asked = std::make_shared<std::atomic<std::size_t>>(0);
        server_.on("/status",
                   [reports, asked](const Request&) { return reports[std::min((*asked)++, reports.size() - 1)]; });
        server_.on("/upload", Response{200});
    }

    const std::string source_ = folder_.write("source", patternOf(100000));
};

std::string uploadText(int id)
{
    return textOf([id](char* text) { TP_GetUploadErrorInfo(id, text); });
}

TEST_F(UploadTest, sendsTheFileWithEveryLogin)
{
    HttpServer server(Security::Tls);
    setenv("TIDE_PIPE_CA_FILE", folder_.write("ca.pem", server.certificate()).c_str(), 1);
    const std::string file = patternOf(2 << 20); // large enough for "100-continue"
    const std::string source = folder_.write("source", file);
    for (const auto& [page, login] :
         {std::pair("/none", Login::None), std::pair("/basic", Login::Basic), std::pair("/digest", Login::Digest)}) {
        server.on(page, [&](const Request& request) { return Response{request.body == file ? 200 : 400, "damaged"}; });
        server.protect(page, login, "user", "secret");
        EXPECT_EQ(TP_Upload(server.url(page).c_str(), "user:secret", source.c_str(), "text/plain", 0), 0) << httpText();
        EXPECT_EQ(server.requests(page).back().headers.at("content-type"), "text/plain");
        EXPECT_EQ(server.requests(page).back().method, "POST");
    }
    EXPECT_EQ(TP_Upload(server.url("/basic").c_str(), "user:secret", source.c_str(), "", TP_UPLOAD_PUT), 0);
    EXPECT_EQ(server.requests("/basic").back().method, "PUT");
    EXPECT_EQ(server.requests("/basic").back().headers.at("content-type"), "application/octet-stream");
    server.on("/moved", Response{301, "", {{"Location", server.url("/digest")}}});
    EXPECT_EQ(TP_Upload(server.url("/moved").c_str(), "user:secret", source.c_str(), "", 0), 0) << httpText();
}

TEST_F(UploadTest, refusalsAreNamedInTheServersWords)
{
    server_.on("/full", Response{507, std::string(200000, 'w')});
    server_.on("/no", Response{400, "wrong model"});
    server_.on("/yes", Response{204});
    server_.protect("/locked", Login::Digest, "user", "secret");
    const auto send = [&](const char* page) {
        return TP_Upload(server_.url(page).c_str(), "user:wrong", source_.c_str(), "", 0);
    };
    EXPECT_EQ(send("/locked"), -TP_TRANSFER_UNAUTHORIZED);
    EXPECT_EQ(TP_GetLastError(), 12U);
    EXPECT_EQ(send("/full"), -TP_TRANSFER_SERVER_ERROR);
    EXPECT_EQ(httpText(), std::string(102399, 'w'));
    std::string other = "unset";
    std::thread([&] { other = httpText(); }).join();
    EXPECT_EQ(other, "");

    for (const auto& [page, result, words] :
         {std::tuple("/no", -TP_TRANSFER_REFUSED, "wrong model"), std::tuple("/yes", 0, "")}) {
        EXPECT_EQ(TP_ImportDeviceConfig(server_.url(page).c_str(), "", source_.c_str()), result);
        EXPECT_EQ(textOf(TP_GetIpcImportErrorInfo), words);
    }

    EXPECT_EQ(TP_ExportDeviceConfig(server_.url("/no").c_str(), "", (folder_ / "config").c_str()),
              -TP_TRANSFER_REFUSED);
    EXPECT_EQ(folder_.count(), 1U);
    server_.on("/config", Response{200, "the configuration"});
    EXPECT_EQ(TP_ExportDeviceConfig(server_.url("/config").c_str(), "", (folder_ / "config").c_str()), 0);
    EXPECT_EQ(folder_.read("config"), "the configuration");
    EXPECT_EQ(httpText(), "");
}

TEST_F(UploadTest, unusableFilesAndHeadersAreRefused)
{
    const std::string url = server_.url("/x");
    ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    for (const std::string& name :
         {folder_ / "pipe", folder_ / "none", folder_ / ".", std::string(), std::string(10000, 'n')})
        EXPECT_EQ(TP_Upload(url.c_str(), "", name.c_str(), "", 0), -TP_TRANSFER_FILE_ERROR) << name;
    EXPECT_EQ(TP_Upload(url.c_str(), "", source_.c_str(), "a\r\nX-Evil: 1", 0), -TP_TRANSFER_BAD_REQUEST);
    EXPECT_EQ(TP_StartUpgrade(url.c_str(), "", "", source_.c_str(), "\n", ""), -TP_TRANSFER_BAD_REQUEST);
    EXPECT_EQ(TP_StartAsynUpload(url.c_str(), "gopher://x", "", source_.c_str(), "", 0), -TP_TRANSFER_BAD_REQUEST);
    EXPECT_TRUE(server_.requests().empty());
}

TEST_F(UploadTest, upgradeFollowsTheDevice)
{
    serveReports({{200, R"({"statusCode": 200, "Progress": "20"})"},
                  {503, "restarting"},
                  {200, "status: running, progress= 5"},
                  {200, "<report><status>0</status><progress>100</progress></report>"}});
    const auto upgrade = [&](const char* page) {
        return TP_StartUpgrade(server_.url(page).c_str(), server_.url("/status").c_str(), "", source_.c_str(), "keep",
                               "");
    };
    int most = 0; // but for the end
    const auto watched = [&](int id) {
        const Report report = upgradeReport(id);
        most = report.progress < 100 ? std::max(most, report.progress) : most;
        return report;
    };
    EXPECT_EQ(ended(upgrade("/upload"), watched).status, TP_TRANSFER_OK);
    EXPECT_EQ(most, 60);
    EXPECT_EQ(server_.requests("/upload").at(0).headers.at("upgrade-flag"), "keep");
    EXPECT_EQ(server_.requests("/status").size(), 4U);

    for (const char* fault : {"status=7\nreason=wrong model", "progress=100 status: -1"}) {
        serveReports({{200, fault}});
        EXPECT_EQ(ended(upgrade("/upload"), upgradeReport).status, TP_TRANSFER_DEVICE_FAILED);
        EXPECT_EQ(httpText(), fault);
    }
    serveReports({{200, "progress=99999999999999999999"}});
    EXPECT_EQ(ended(upgrade("/upload"), upgradeReport).status, TP_TRANSFER_OK);
    const int refused = upgrade("/none");
    EXPECT_EQ(ended(refused, upgradeReport).status, TP_TRANSFER_NOT_FOUND);
    EXPECT_EQ(downloadReport(refused).result, -1);
    EXPECT_EQ(TP_StopUpgrade(refused), 0);
    EXPECT_EQ(TP_StopUpgrade(refused), -1);
    EXPECT_EQ(upgradeReport(17).result, -1);
}

TEST_F(UploadTest, uploadKeepsItsErrorTextUntilItIsStopped)
{
    serveReports({{200, R"({"progress":10})"}, {404, "gone"}});
    const int id = TP_StartAsynUpload(server_.url("/upload").c_str(), server_.url("/status").c_str(), "",
                                      source_.c_str(), nullptr, 0);
    ASSERT_GT(id, 0);
    EXPECT_EQ(uploadText(id), "");
    eventually([&] { return !uploadText(id).empty(); }, 3s);
    EXPECT_EQ(uploadText(id), "gone");
    EXPECT_EQ(TP_StopAsynUpload(id), 0);
    EXPECT_EQ(TP_StopAsynUpload(id), -1);
    EXPECT_EQ(uploadText(id), "");
    EXPECT_EQ(TP_GetUploadErrorInfo(id, nullptr), -1);
}

} // namespace transfer_test
