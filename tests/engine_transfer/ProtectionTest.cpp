#include "include/tide_pipe/tide_pipe.h"
#include "tests/support/Threads.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>

namespace transfer_test {

// Nothing where it is refused.
std::optional<std::string> call(decltype(&TP_Encrypt) operation, const std::string& text, int type = 0,
                                bool encrypted = false)
{
    std::string out(1024, '\x7f');
    out.back() = '#';
    int length = -1;
    if (operation(type, text.c_str(), out.data(), &length, 0, encrypted) == 0)
        return out.substr(0, static_cast<std::size_t>(length));
    EXPECT_EQ(out.find_first_not_of('\x7f'), 1023U);
    return std::nullopt;
}

constexpr auto encrypt = [](const std::string& text, auto... how) { return call(TP_Encrypt, text, how...); };
constexpr auto decrypt = [](const std::string& text, auto... how) { return call(TP_Decrypt, text, how...); };

TEST(ProtectionTest, textsComeBackUnderTheSameSecretAndType)
{
    ASSERT_EQ(TP_SetSecretKey(1, "first"), 0);
    for (const std::string& text : {std::string(), std::string("rtsp://камера/1"), std::string(720, 'x')}) {
        const std::string hidden = encrypt(text, 3).value();
        EXPECT_NE(hidden, encrypt(text, 3));
        EXPECT_THAT(hidden, ::testing::MatchesRegex("[A-Za-z0-9+/=]+"));
        for (const bool flag : {false, true})
            EXPECT_EQ(decrypt(hidden, 3, flag), text);
        EXPECT_FALSE(decrypt(hidden, 4));
        EXPECT_EQ(decrypt(encrypt(hidden, 3, true).value(), 3), text);
    }
    EXPECT_FALSE(encrypt(std::string(721, 'x')));
    EXPECT_EQ(TP_GetLastError(), 15U);

    const std::string kept = encrypt("kept").value();
    for (const auto& [id, secret] : {std::pair(1, "second"), {2, "first"}}) {
        TP_SetSecretKey(id, secret);
        EXPECT_FALSE(decrypt(kept));
    }
    TP_SetSecretKey(1, "first");
    EXPECT_EQ(decrypt(kept), "kept");
}

TEST(ProtectionTest, everyTamperedTextIsRefused)
{
    ASSERT_EQ(TP_SetSecretKey(0, "secret"), 0);
    const std::string good = encrypt("a text").value();
    for (std::size_t at = 0; at < good.size(); at += 5) {
        std::string bad = good;
        bad[at] = bad[at] == 'A' ? 'B' : 'A';
        EXPECT_FALSE(decrypt(bad)) << bad;
    }
    for (const std::string& bad : {std::string(), good + " ", " " + good, good + "====", good.substr(0, 8), good + good,
                                   good + "\n", std::string(100000, 'A'), std::string("=="), std::string("!!!!")})
        EXPECT_FALSE(decrypt(bad)) << bad.substr(0, 200);
    EXPECT_LT(TP_SetSecretKey(0, ""), 0);
    EXPECT_LT(TP_SetSecretKey(0, nullptr), 0);
    EXPECT_LT(TP_SetSecretKey(0, std::string(5000, 'k').c_str()), 0);
    EXPECT_LT(TP_Encrypt(0, nullptr, nullptr, nullptr, 0, false), 0);
    EXPECT_EQ(decrypt(good), "a text");
}

TEST(ProtectionTest, manyThreadsProtectWhileTheSecretChanges)
{
    TP_SetSecretKey(0, "same");
    onThreads(4, [](int number) {
        for (int turn = 0; turn < 3; ++turn) {
            if (number == 0)
                TP_SetSecretKey(0, "same");
            EXPECT_EQ(decrypt(encrypt("text").value()), "text");
        }
    });
}

} // namespace transfer_test
