#include "tests/engine_transfer/TransferTest.h"

#include <atomic>
#include <csignal>

namespace transfer_test {

class DownloadTest : public TransferTest
{
protected:
    // The first answers break off. `rest` says what the server makes of the later ones.
    void breakFile(const std::string& file, int breaks, std::function<Response(const Request&)> rest = {})
    {
        server_.on("/file", [=, calls = std::make_shared<std::atomic<int>>(0)](const Request& request) {
            Response response = (*calls)++ > 0 && rest ? rest(request) : http_test::rangeOf(request, file);
            if (*calls <= breaks)
                response.cutAfter = response.body.size() / 2;
            return response;
        });
    }
};

TEST_F(DownloadTest, allComeWholeSeveralAtATime)
{
    const std::string big = patternOf(3 << 20);
    server_.on("/big", Response{200, big});
    server_.on("/empty", Response{});
    server_.on("/slow", slow("text", 100ms));
    server_.on("/endless", Response{200, "", {}, [left = 3]() mutable { return left-- > 0 ? "piece" : ""; }});
    const struct
    {
        std::string page, name, content;
    } rows[] = {{"/big", "a", big},
                {"/big", "b", big},
                {"/big", "c", big},
                {"/empty", "empty", ""},
                {"/endless", "endless", "piecepiecepiece"}};
    std::vector<int> ids;
    for (const auto& row : rows)
        ids.push_back(download(server_.url(row.page), row.name));
    for (int index = 0; index < 34; ++index) // more than run at a time
        ids.push_back(download(server_.url("/slow"), std::to_string(index)));
    EXPECT_EQ(TP_StopDownload(download(server_.url("/slow"), "stopped")), 0);
    for (const int id : ids)
        EXPECT_EQ(ended(id, downloadReport).progress, 100) << httpText();
    for (const auto& row : rows)
        EXPECT_TRUE(folder_.read(row.name) == row.content) << row.name;
    EXPECT_EQ(folder_.count(), 39U);
    EXPECT_EQ(TP_StopDownload(ids[0]), 0);
    EXPECT_LT(TP_StopDownload(ids[0]), 0);
    EXPECT_EQ(downloadReport(ids[0]).result, -1);
    EXPECT_EQ(downloadReport(ids[1]).result, 0);
}

TEST_F(DownloadTest, requestCarriesBodyAndPackageType)
{
    server_.on("/x", [](const Request& request) { return Response{200, request.method + " " + request.body}; });
    const int id = TP_StartDownloadEx(server_.url("/x").c_str(), nullptr, (folder_ / "x").c_str(), 5, "<search/>");
    EXPECT_EQ(ended(id, downloadReport).progress, 100);
    EXPECT_EQ(folder_.read("x"), "POST <search/>");
    const auto headers = server_.requests("/x").at(0).headers;
    EXPECT_EQ(headers.at("package-type"), "5");
    EXPECT_EQ(headers.at("content-type"), "application/xml");
    EXPECT_EQ(headers.count("authorization"), 0U);
}

TEST_F(DownloadTest, logsInAndKeepsTheCredentialFromOthers)
{
    HttpServer other;
    other.on("/file", Response{200, "from the other"});
    for (const auto& [name, login] : {std::pair("basic", Login::Basic), std::pair("digest", Login::Digest)}) {
        const std::string page = std::string("/") + name;
        server_.on(page, [&](const Request&) { return Response{302, "", {{"Location", other.url("/file")}}}; });
        server_.protect(page, login, "user", "pass:word");
        EXPECT_EQ(downloaded(server_.url(page), name, "user:pass:word").progress, 100);
        EXPECT_EQ(folder_.read(name), "from the other");
        EXPECT_EQ(downloaded(server_.url(page), "wrong", "user:wrong").status, TP_TRANSFER_UNAUTHORIZED);
        EXPECT_EQ(httpText(), "Who are you?");
    }
    for (const Request& request : other.requests())
        EXPECT_EQ(request.headers.count("authorization"), 0U);
    EXPECT_EQ(folder_.count(), 2U);
}

// Every fault has its status and its words, and leaves no file.
TEST_F(DownloadTest, faultsHaveNames)
{
    server_.on("/500", Response{500, "disk on fire"});
    server_.on("/503", Response{503});
    server_.on("/418", Response{418, "teapot"});
    server_.on("/loop", Response{302, "", {{"Location", server_.url("/loop")}}});
    server_.on("/toFile", Response{302, "", {{"Location", "file:///etc/passwd"}}});
    server_.on("/silent", slow("never in time", 2s));
    const struct
    {
        std::string url;
        int status;
        std::string words;
    } cases[] = {
        {server_.url("/none"), TP_TRANSFER_NOT_FOUND, "No such page here."},
        {server_.url("/500"), TP_TRANSFER_SERVER_ERROR, "disk on fire"},
        {server_.url("/503"), TP_TRANSFER_SERVER_ERROR, "HTTP status 503"},
        {server_.url("/418"), TP_TRANSFER_REFUSED, "teapot"},
        {server_.url("/loop"), TP_TRANSFER_REDIRECTED_TOO_OFTEN, "redirects"},
        {server_.url("/toFile"), TP_TRANSFER_BAD_REQUEST, "file"},
        {"http://127.0.0.1:1/", TP_TRANSFER_CANNOT_CONNECT, "connect"},
        {"http://no.such.host.invalid/", TP_TRANSFER_CANNOT_CONNECT, "resolve"},
        {server_.url("/silent"), TP_TRANSFER_TIMEOUT, ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(downloaded(c.url, "x").status, c.status) << c.url;
        EXPECT_THAT(httpText(), ::testing::HasSubstr(c.words)) << c.url;
    }
    EXPECT_EQ(folder_.count(), 0U);
}

TEST_F(DownloadTest, brokenLineIsTakenUpWhereItBroke)
{
    breakFile(patternOf(400000), 2);
    EXPECT_EQ(downloaded(server_.url("/file"), "x").progress, 100) << httpText();
    EXPECT_TRUE(folder_.read("x") == patternOf(400000));
    const auto requests = server_.requests();
    ASSERT_EQ(requests.size(), 3U);
    EXPECT_EQ(requests[1].headers.at("range"), "bytes=200000-");
    EXPECT_EQ(requests[2].headers.at("range"), "bytes=300000-");
}

TEST_F(DownloadTest, otherAnswersThanTheRestAreMadeGood)
{
    const std::string file = patternOf(100000);
    const auto always = [](Response response) { return [=](const Request&) { return response; }; };
    const auto otherRange = [&](const char* range) { return always({206, "xx", {{"Content-Range", range}}}); };
    const std::function<Response(const Request&)> rests[] = {
        always({200, file}), // no ranges known
        otherRange("bytes 5-6/100000"),
        otherRange("bytes 50000-50001/50002"), // another file by now
        always({416}),
        [&](const Request& request) { // ranges, but little ones
            Response rest = http_test::rangeOf(request, file);
            rest.body.resize(std::min<std::size_t>(rest.body.size(), 20000));
            return rest;
        },
    };
    for (const auto& rest : rests) {
        breakFile(file, 1, [&](const Request& request) {
            return request.headers.count("range") != 0 ? rest(request) : Response{200, file};
        });
        EXPECT_EQ(downloaded(server_.url("/file"), "x").progress, 100) << httpText();
        EXPECT_TRUE(folder_.read("x") == file);
    }
}

TEST_F(DownloadTest, givesUpAServerThatAlwaysBreaksAndOneThatLies)
{
    breakFile(patternOf(1000), 1000, [](const Request&) { return Response{200, "short"}; });
    EXPECT_EQ(downloaded(server_.url("/file"), "x").status, TP_TRANSFER_LINE_CUT);
    server_.on("/more", Response{200, "some bytes", {}, {}, 1000});
    server_.on("/less", Response{200, "some bytes", {}, {}, 4});
    EXPECT_EQ(downloaded(server_.url("/more"), "x").status, TP_TRANSFER_LINE_CUT);
    EXPECT_EQ(folder_.count(), 0U);
    EXPECT_EQ(downloaded(server_.url("/less"), "less").progress, 100);
    EXPECT_EQ(folder_.read("less"), "some");
}

TEST_F(DownloadTest, stopEndsASlowOneAndRemovesItsPart)
{
    server_.on("/slow", slow(patternOf(100000), 50ms));
    const int id = download(server_.url("/slow"), "x");
    while (downloadReport(id).progress < 5)
        std::this_thread::sleep_for(5ms);
    EXPECT_EQ(folder_.read("x"), "");
    EXPECT_EQ(download(server_.url("/slow"), "x"), -TP_TRANSFER_FILE_ERROR);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(TP_StopDownload(id), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - before, 300ms);
    EXPECT_EQ(folder_.count(), 0U);
}

TEST_F(DownloadTest, badOrdersAreRefusedAtOnce)
{
    const std::string good = "http://127.0.0.1:1/";
    for (const char* url : {"", "file:///etc/passwd", "ftp://127.0.0.1/", "http://a b/\r\nX: y", "not an address",
                            "http://127.0.0.1/\x01", "http://"})
        EXPECT_EQ(download(url, "x"), -TP_TRANSFER_BAD_REQUEST) << url;
    EXPECT_EQ(TP_StartDownload(nullptr, nullptr, nullptr, nullptr), -TP_TRANSFER_BAD_REQUEST);
    EXPECT_EQ(download(good, "x", "user:pass\r\nX-Evil: 1"), -TP_TRANSFER_BAD_REQUEST);
    for (const std::string& name :
         {std::string(), std::string("no/such/folder"), std::string(10000, 'n'), std::string(".")})
        EXPECT_EQ(download(good, name), -TP_TRANSFER_FILE_ERROR) << name;
    EXPECT_NE(httpText(), "");
    EXPECT_EQ(TP_GetLastError(), 9U);
    EXPECT_EQ(folder_.count(), 0U);
    int number = 0;
    EXPECT_EQ(TP_GetDownloadStatus(1001, nullptr, &number), -1);
    EXPECT_EQ(TP_GetHTTPErrorInfo(nullptr, 10), -1);
    EXPECT_EQ(TP_GetHTTPErrorInfo(reinterpret_cast<char*>(&number), -1), -1);
}

TEST_F(DownloadTest, certificatesAreVerified)
{
    HttpServer server(Security::Tls);
    server.on("/x", Response{200, patternOf(300000)});
    EXPECT_EQ(downloaded(server.url("/x"), "x").status, TP_TRANSFER_NOT_TRUSTED);
    EXPECT_TRUE(server.requests().empty());
    setenv("TIDE_PIPE_TLS_VERIFY", "off", 1);
    EXPECT_EQ(downloaded(server.url("/x"), "x").progress, 100);
    unsetenv("TIDE_PIPE_TLS_VERIFY");
    setenv("TIDE_PIPE_CA_FILE", folder_.write("ca.pem", server.certificate()).c_str(), 1);
    EXPECT_EQ(downloaded(server.url("/x"), "y").progress, 100);
    HttpServer plain;
    server.on("/down", Response{302, "", {{"Location", plain.url("/x")}}});
    EXPECT_EQ(downloaded(server.url("/down"), "z").status, TP_TRANSFER_BAD_REQUEST);
    HttpServer stranger(Security::Tls);
    EXPECT_EQ(downloaded(stranger.url("/x"), "z").status, TP_TRANSFER_NOT_TRUSTED);
}

// In a process of its own, which has the address and the path of the first one.
void endInTheMiddle(void (*end)())
{
    const int id = TP_StartDownload(std::getenv("CHILD_URL"), "", std::getenv("CHILD_FILE"), "");
    while (downloadReport(id).progress < 5)
        std::this_thread::sleep_for(5ms);
    end();
}

TEST_F(DownloadTest, processThatEndsLeavesNoFileAndAKilledOneAPartThatTheNextTakesOver)
{
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    server_.on("/slow", slow(patternOf(100000), 50ms));
    setenv("CHILD_URL", server_.url("/slow").c_str(), 0);
    setenv("CHILD_FILE", (folder_ / "x").c_str(), 0);
    EXPECT_EXIT(endInTheMiddle([] { std::exit(0); }), ::testing::ExitedWithCode(0), "");
    EXPECT_EQ(folder_.count(), 0U);
    EXPECT_EXIT(endInTheMiddle([] { std::raise(SIGKILL); }), ::testing::KilledBySignal(SIGKILL), "");
    EXPECT_EQ(folder_.count(), 1U);
    EXPECT_FALSE(std::filesystem::exists(folder_ / "x"));
    server_.on("/slow", slow(patternOf(100000), 0ms));
    EXPECT_EQ(downloaded(server_.url("/slow"), "x").progress, 100);
    EXPECT_EQ(folder_.read("x"), patternOf(100000));
    EXPECT_EQ(folder_.count(), 1U);
}

} // namespace transfer_test
