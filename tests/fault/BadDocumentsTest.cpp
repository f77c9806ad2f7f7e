#include "tests/support/Functions.h"
#include "tests/support/Wall.h"

#include <QJsonArray>
#include <QLayout>

#include <thread>

using namespace wall;

namespace {

// Ten thousand cells of which the last is none.
QByteArray manyCells()
{
    return "[" + QByteArray(R"({"left":0.1,"top":0.1,"width":0.1,"height":0.1},)").repeated(10'000) + "1]";
}

class BadDocumentsTest : public WallTest
{
protected:
    void SetUp() override
    {
        WallTest::SetUp();
        play();
    }

    // clang-format off
    const QByteArrayList values_ = {
        "null", "true", "[]", "{}", R"("")", R"("\ud800")", R"("\udc00\ud800")", "-1", "16", "1.5", "1e300", "-1e300",
        "9007199254740993", R"({"a":[{}]})", "[[1],{},null]", QByteArray(500, '[') + QByteArray(500, ']'),
        "\"" + QByteArray(100'000, 'x') + "\""};
    // clang-format on

    // What a host can see of the wall, and what the engine has been told.
    QJsonArray state()
    {
        QJsonArray cells;
        for (int i = 0; i < main().layout()->count(); ++i) {
            const QWidget* cell = main().layout()->itemAt(i)->widget();
            const auto* player = cell->findChild<Player*>();
            cells.append(QJsonArray{cell->objectName(), cell->isHidden(),
                                    player ? player->playStatus() : Player::Stopped, player && player->saving(),
                                    player && player->https()});
        }
        cells.append(static_cast<int>(engineCalls().size()));
        return cells;
    }

    // An error changes nothing; everything else is a success that the function's leniency allows.
    void expectErrorOrNothing(std::string_view name, WithWidget function, const QByteArray& document)
    {
        const QJsonArray before = state();
        if (ask(function, document).object.contains("errorCode")) {
            EXPECT_EQ(state(), before) << name << " " << document.left(200).toStdString();
        }
    }
    const journal::Tolerated lenient_;
};

TEST_F(BadDocumentsTest, whatIsNoDocumentChangesNoWindow)
{
    for (const auto& [name, function] : functions::of<WithWidget>()) {
        take(function(&main(), nullptr));
        ask(function, "");
        ask(function, "[[[1]]]");
        EXPECT_TRUE(LD_WindowCount(&main()) == 4 && LD_IsWindowPlaying(&main(), 0)) << name;
    }
}

TEST_F(BadDocumentsTest, functionsOfAWindow)
{
    const char* keys[] = {"wndIndex", "url",      "auth",        "startTime", "buffNumberType", "volume",
                          "https",    "fileName", "packageType", "params",    "type",           "mode",
                          "width",    "windows",  "custom",      "rectInfo",  "drawInfo"};
    const QByteArray others = R"({"wndIndex":9,"url":"","auth":"","fileName":"f","startTime":"","type":9,")";
    for (const auto& [name, function] : functions::of<WithWidget>()) {
        ask(LD_ArrangeWindow, R"({"type":2})"); // an empty list is a layout of no windows
        expectErrorOrNothing(name, function, R"({"wndIndex":0})");
        for (const QByteArray& value : values_) {
            expectErrorOrNothing(name, function, value);
            for (const char* key : keys)
                expectErrorOrNothing(name, function, others + key + "\":" + value + "}");
        }
    }
}

// On a thread that may show no widgets, where a file dialog counts as cancelled.
TEST_F(BadDocumentsTest, functionsWithoutAWindow)
{
    const char* keys[] = {"localConfig", "uuid", "audioType", "url", "key", "type", "path", "downloadId", "fileList"};
    const auto callAll = [&](WithDocument service) {
        take(service(nullptr));
        for (const QByteArray& value : values_) {
            for (const char* key : keys)
                ask(service, QByteArray("{\"") + key + "\":" + value + "}");
        }
    };
    for (const auto& [name, service] : functions::of<WithDocument>())
        std::thread(callAll, service).join();
    EXPECT_FALSE(LocalInfo().GetLocalInfo("recordPath").isEmpty()) << "the settings can still be read";
}

TEST_F(BadDocumentsTest, aLayoutWithABadCellAmongTenThousand)
{
    const QJsonArray before = state();
    EXPECT_EQ(ask(LD_SetLayout, manyCells()).code(), 500);
    EXPECT_EQ(ask(LD_ArrangeWindow, R"({"custom":)" + manyCells() + "}").code(), 500);
    EXPECT_EQ(state(), before);
}

} // namespace
