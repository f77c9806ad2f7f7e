#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace tide {

// What a request sends. Used by one thread at a time.
class HttpBody
{
public:
    virtual ~HttpBody() = default;

    virtual long long size() const = 0;
    virtual std::optional<std::size_t> read(char* buffer, std::size_t length) = 0; // nothing: it cannot be read
    virtual bool rewind() = 0; // a redirect or a log-in sends it again
};

class TextBody : public HttpBody
{
public:
    explicit TextBody(std::string text);

    long long size() const override { return static_cast<long long>(text_.size()); }
    std::optional<std::size_t> read(char* buffer, std::size_t length) override;
    bool rewind() override;

private:
    const std::string text_;
    std::size_t at_ = 0;
};

// A regular file, as long as it was when it was opened.
class FileBody : public HttpBody
{
public:
    FileBody() = default;
    ~FileBody() override;
    FileBody(const FileBody&) = delete;
    FileBody& operator=(const FileBody&) = delete;

    bool open(const std::string& path); // false with errno
    void close();

    long long size() const override { return size_; }
    std::optional<std::size_t> read(char* buffer, std::size_t length) override;
    bool rewind() override;

private:
    int file_ = -1;
    long long size_ = 0;
    long long left_ = 0;
};

} // namespace tide
