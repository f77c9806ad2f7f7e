#pragma once

#include "include/tide_pipe/tide_pipe.h"
#include "tests/support/HttpServer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

namespace transfer_test {

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

inline Report downloadReport(int id)
{
    Report report;
    report.result = TP_GetDownloadStatus(id, &report.status, &report.progress);
    return report;
}

inline Report upgradeReport(int id)
{
    Report report;
    report.result = TP_UpgradeStatus(id, &report.status, &report.progress);
    return report;
}

// The report in which a job has ended, well or not.
template <class Ask> Report ended(int id, Ask ask)
{
    Report report = ask(id);
    for (int turn = 0; turn < 3000 && report.status == TP_TRANSFER_OK && report.progress < 100; ++turn) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        report = ask(id);
    }
    return report;
}

inline std::string httpText()
{
    std::string text(102400, '\0');
    EXPECT_EQ(TP_GetHTTPErrorInfo(text.data(), static_cast<int>(text.size())), 0);
    return text.c_str();
}

class TransferTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::string name = std::filesystem::temp_directory_path() / "transferXXXXXX";
        folder_ = mkdtemp(name.data());
        setenv("TIDE_PIPE_HTTP_TIMEOUT", "1", 1);
    }
    void TearDown() override
    {
        std::filesystem::remove_all(folder_);
        unsetenv("TIDE_PIPE_CA_FILE");
        unsetenv("TIDE_PIPE_TLS_VERIFY");
    }

    std::string path(const std::string& name) const { return folder_ + "/" + name; }
    std::string fileOf(const std::string& name, const std::string& content) const
    {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }
    std::string content(const std::string& name) const
    {
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::size_t fileCount() const
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder_), {}));
    }

    int download(const std::string& url, const std::string& name, const char* auth = "", const char* xml = "") const
    {
        return TP_StartDownload(url.c_str(), auth, path(name).c_str(), xml);
    }
    Report downloaded(const std::string& url, const std::string& name, const char* auth = "") const
    {
        return ended(download(url, name, auth), downloadReport);
    }

private:
    std::string folder_;
};

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
