#pragma once

#include "engine/transfer/TransferJob.h"

namespace tide {

struct UploadOrder
{
    std::string url;
    std::string statusUrl; // empty: the upload is all there is
    Credential credential;
    std::string path;
    HttpMethod method = HttpMethod::Post;
    std::string contentType; // empty: application/octet-stream
    std::chrono::seconds limit{0};
    std::string upgradeFlag; // told to the device in the header "Upgrade-Flag", unless it is empty
};

// Sends one file. With a status address the second half of the progress is the device's own: the address is asked until
// the device says that it is done.
class UploadJob : public TransferJob
{
public:
    UploadJob(TransferKind kind, UploadOrder order);

    // Before run: BAD_REQUEST or FILE_ERROR where it cannot even begin.
    TransferResult prepare();

protected:
    TransferResult work(HttpClient& client) override;

private:
    HttpRequest request();
    HttpRequest statusRequest() const;
    TransferResult followDevice(HttpClient& client);

    const UploadOrder order_;
    FileBody body_;
};

} // namespace tide
