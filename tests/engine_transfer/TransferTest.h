#pragma once

#include "tests/support/Engine.h"
#include "tests/support/HttpServer.h"

#include <gmock/gmock.h>

namespace transfer_test {

using namespace std::chrono_literals;
using engine_test::eventually;
using http_test::HttpServer;
using http_test::Login;
using http_test::Request;
using http_test::Response;
using http_test::Security;

struct Report
{
    int result = -1;
    int status = -1;
    int progress = -1;
};

template <int (*kAsk)(int, int*, int*)> Report reportOf(int id)
{
    Report report;
    report.result = kAsk(id, &report.status, &report.progress);
    return report;
}
constexpr auto downloadReport = &reportOf<TP_GetDownloadStatus>;
constexpr auto upgradeReport = &reportOf<TP_UpgradeStatus>;

// The report in which a job has ended, well or not.
template <class Ask> Report ended(int id, Ask ask)
{
    Report report;
    eventually([&] {
        report = ask(id);
        return report.status != TP_TRANSFER_OK || report.progress >= 100;
    });
    return report;
}

template <class Ask> std::string textOf(Ask ask)
{
    std::string text(102400, 'x');
    ask(text.data());
    return text.c_str();
}

inline std::string httpText()
{
    return textOf([](char* text) { EXPECT_EQ(TP_GetHTTPErrorInfo(text, 102400), 0); });
}

class TransferTest : public ::testing::Test
{
protected:
    TransferTest() { setenv("TIDE_PIPE_HTTP_TIMEOUT", "1", 1); }
    ~TransferTest() override
    {
        unsetenv("TIDE_PIPE_CA_FILE");
        unsetenv("TIDE_PIPE_TLS_VERIFY");
    }

    int download(const std::string& url, const std::string& name, const char* auth = "", const char* xml = "") const
    {
        return TP_StartDownload(url.c_str(), auth, (folder_ / name).c_str(), xml);
    }
    Report downloaded(const std::string& url, const std::string& name, const char* auth = "") const
    {
        return ended(download(url, name, auth), downloadReport);
    }

    engine_test::Folder folder_;
    HttpServer server_;
};

// Comes in pieces, after a pause each.
inline Response slow(const std::string& body, std::chrono::milliseconds pause, std::size_t pieceSize = 1000)
{
    return {200, body, {}, {}, {}, {}, pause, pieceSize};
}

// Bytes that do not repeat, so that a piece in the wrong place shows.
inline std::string patternOf(std::size_t size)
{
    std::string text;
    for (std::size_t line = 0; text.size() < size; ++line)
        text += std::to_string(line) + "\n";
    text.resize(size);
    return text;
}

} // namespace transfer_test
