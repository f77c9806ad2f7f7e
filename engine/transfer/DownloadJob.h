#pragma once

#include "engine/transfer/PartFile.h"
#include "engine/transfer/TransferJob.h"

namespace tide {

struct DownloadOrder
{
    std::string url;
    Credential credential;
    std::string path;
    std::string body;              // sent as XML with a POST; a GET where it is empty
    int packageType = 0;           // told to the server in the header "Package-Type", unless it is 0
    std::chrono::seconds limit{0}; // for all tries together; 0 is none
};

// Fetches one file. A line that breaks is taken up again where it broke, if the server gives the rest of the same
// file, and else from the start.
class DownloadJob : public TransferJob
{
public:
    explicit DownloadJob(DownloadOrder order);

    // Before run: BAD_REQUEST or FILE_ERROR where it cannot even begin.
    TransferResult prepare();

protected:
    TransferResult work(HttpClient& client) override;

private:
    HttpRequest request();
    std::chrono::seconds timeLeft() const;
    bool isOutOfTime() const;
    TransferResult finish(const HttpAnswer& answer);
    HttpAnswer fetch(HttpClient& client);
    void judge(HttpAnswer& answer);
    bool begin(const HttpHead& head);
    bool take(const HttpHead& head, std::string_view bytes);
    bool keep(bool isDone); // notes why the file could not be written

    const DownloadOrder order_;
    TextBody body_;
    PartFile file_;
    std::string fileTrouble_;
    std::chrono::steady_clock::time_point begun_;
    std::string validator_;  // ETag or Last-Modified: names this very file
    long long offset_ = 0;   // where the present answer begins in the file
    long long total_ = 0;    // 0 while it is not known
    bool hasBegun_ = false;  // the present answer has given its first bytes
    bool isForeign_ = false; // it is not the rest of our file
};

} // namespace tide
