#include "include/tide_pipe/tide_pipe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace transfer_test {

struct Outcome
{
    int result = 0;
    int length = -1;
    std::string text;
};

Outcome call(decltype(&TP_Encrypt) operation, const std::string& text, int type = 0, bool encrypted = false)
{
    std::string out(1024, '\x7f');
    out.back() = '#';
    Outcome outcome;
    outcome.result = operation(type, text.c_str(), out.data(), &outcome.length, 0, encrypted);
    outcome.text = outcome.result == 0 ? out.c_str() : "";
    EXPECT_TRUE(outcome.result == 0 || out.find_first_not_of('\x7f') == 1023U);
    return outcome;
}

constexpr auto encrypt = [](const std::string& text, auto... how) { return call(TP_Encrypt, text, how...); };
constexpr auto decrypt = [](const std::string& text, auto... how) { return call(TP_Decrypt, text, how...); };

TEST(ProtectionTest, textsComeBackUnderTheSameSecretAndType)
{
    ASSERT_EQ(TP_SetSecretKey(1, "first"), 0);
    for (const std::string& text : {std::string(), std::string("rtsp://камера/1"), std::string(720, 'x')}) {
        const Outcome first = encrypt(text, 3);
        const Outcome second = encrypt(text, 3);
        ASSERT_EQ(first.result, 0);
        EXPECT_NE(first.text, second.text);
        EXPECT_EQ(first.length, static_cast<int>(first.text.size()));
        EXPECT_TRUE(std::all_of(first.text.begin(), first.text.end(), [](char c) {
            return std::isalnum(static_cast<unsigned char>(c)) || strchr("+/=", c);
        }));
        for (const bool flag : {false, true})
            EXPECT_EQ(decrypt(first.text, 3, flag).text, text);
        EXPECT_LT(decrypt(first.text, 4).result, 0);
        EXPECT_EQ(decrypt(encrypt(first.text, 3, true).text, 3).text, text);
    }
    EXPECT_LT(encrypt(std::string(721, 'x')).result, 0);
    EXPECT_EQ(TP_GetLastError(), 15U);

    const std::string kept = encrypt("kept").text;
    TP_SetSecretKey(1, "second");
    EXPECT_LT(decrypt(kept).result, 0);
    TP_SetSecretKey(2, "first");
    EXPECT_LT(decrypt(kept).result, 0);
    TP_SetSecretKey(1, "first");
    EXPECT_EQ(decrypt(kept).text, "kept");
}

TEST(ProtectionTest, everyTamperedTextIsRefused)
{
    ASSERT_EQ(TP_SetSecretKey(0, "secret"), 0);
    const std::string good = encrypt("a text").text;
    for (std::size_t at = 0; at < good.size(); at += 5) {
        std::string bad = good;
        bad[at] = bad[at] == 'A' ? 'B' : 'A';
        EXPECT_LT(decrypt(bad).result, 0) << bad;
    }
    for (const std::string& bad : {std::string(), good + " ", " " + good, good + "====", good.substr(0, 8), good + good,
                                   good + "\n", std::string(100000, 'A'), std::string("=="), std::string("!!!!")})
        EXPECT_LT(decrypt(bad).result, 0) << bad.substr(0, 200);
    EXPECT_LT(TP_SetSecretKey(0, ""), 0);
    EXPECT_LT(TP_SetSecretKey(0, nullptr), 0);
    EXPECT_LT(TP_SetSecretKey(0, std::string(5000, 'k').c_str()), 0);
    EXPECT_LT(TP_Encrypt(0, nullptr, nullptr, nullptr, 0, false), 0);
    EXPECT_EQ(decrypt(good).text, "a text");
}

TEST(ProtectionTest, manyThreadsProtectWhileTheSecretChanges)
{
    TP_SetSecretKey(0, "same");
    std::vector<std::thread> threads;
    for (int index = 0; index < 4; ++index) {
        threads.emplace_back([index] {
            for (int turn = 0; turn < 3; ++turn) {
                if (index == 0)
                    TP_SetSecretKey(0, "same");
                EXPECT_EQ(decrypt(encrypt("text").text).text, "text");
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace transfer_test
