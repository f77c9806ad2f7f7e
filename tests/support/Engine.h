#pragma once

#include "include/tide_pipe/tide_pipe.h"

#include <QTemporaryDir>
#include <QWidget>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

namespace engine_test {

template <class Condition> bool eventually(Condition isSo, std::chrono::milliseconds limit = std::chrono::seconds(20))
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!isSo() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return isSo();
}

// A folder that goes with the object.
class Folder
{
public:
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }
    std::string write(const std::string& name, const std::string& content) const // answers the path
    {
        std::ofstream(*this / name, std::ios::binary) << content;
        return *this / name;
    }
    std::string read(const std::string& name) const
    {
        std::ifstream file(*this / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::size_t count() const
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path_), {}));
    }

private:
    QTemporaryDir folder_;
    std::string path_ = folder_.path().toStdString();
};

// By the ffmpeg tool; `arguments` ends with the file that it makes.
inline void makeClip(const std::string& arguments)
{
    EXPECT_EQ(std::system(("ffmpeg -nostdin -v error -y " + arguments).c_str()), 0) << arguments;
}

// A window on the screen for streams.
class WindowTest : public ::testing::Test
{
protected:
    WindowTest()
    {
        window_.resize(320, 240);
        window_.show();
    }
    ~WindowTest() override { TP_SetMessageHandler(nullptr, nullptr); }

    int play(const std::string& url) const
    {
        return TP_Play(url.c_str(), "", 0, window_.winId(), "", "", 0, nullptr, nullptr, -1);
    }

    QWidget window_;
};

} // namespace engine_test
