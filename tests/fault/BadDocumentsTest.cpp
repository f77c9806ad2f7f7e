#include "src/player/Player.h"
#include "tests/support/Wall.h"

#include <QJsonArray>
#include <QLayout>

#include <thread>

using quillmark::lumen_deck::Player;
using wall::Answer;

namespace {

struct Named
{
    const char* name;
    QJsonDocument* (*function)(QWidget*, const QJsonDocument*);
};

const Named functions[] = {
#define LUMEN_DECK_WD(name, route) {#name, name},
#include "include/lumen_deck/functions.def"
};

struct NamedService
{
    const char* name;
    QJsonDocument* (*function)(const QJsonDocument*);
};

const NamedService services[] = {
#define LUMEN_DECK_D(name, route) {#name, name},
#include "include/lumen_deck/functions.def"
};

QByteArray nested(int depth)
{
    return QByteArray(depth, '[') + QByteArray(depth, ']');
}

// Ten thousand cells of which the last is none.
QByteArray manyCells()
{
    QByteArray cells = "[";
    for (int i = 0; i < 10'000; ++i)
        cells += R"({"left":0.1,"top":0.1,"width":0.1,"height":0.1},)";
    return cells + "1]";
}

class BadDocumentsTest : public wall::WallTest
{
protected:
    void SetUp() override
    {
        WallTest::SetUp();
        play();
        for (const char* value : {"null", "true", "[]", "{}", "\"\"", "\"\\ud800\"", "\"\\udc00\\ud800\"", "-1", "16",
                                  "1.5", "1e300", "-1e300", "9007199254740993", "{\"a\":[{}]}", "[[1],{},null]"})
            values_.push_back(value);
        values_.push_back(nested(500));
        values_.push_back("\"" + QByteArray(100'000, 'x') + "\"");
    }

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
        cells.append(static_cast<int>(wall::engineCalls().size()));
        return cells;
    }

    // An error changes nothing; everything else is a success that the function's leniency allows.
    void expectErrorOrNothing(const char* name, QJsonDocument* (*function)(QWidget*, const QJsonDocument*),
                              const QJsonDocument& document)
    {
        const QJsonArray before = state();
        const Answer answer = wall::take(function(&main(), &document));
        if (!answer.object.contains("errorCode"))
            return;
        EXPECT_EQ(state(), before) << name << " " << document.toJson(QJsonDocument::Compact).left(200).toStdString();
    }

    std::vector<QByteArray> values_;

private:
    const journal::Tolerated lenient_;
};

TEST_F(BadDocumentsTest, functionsOfAWindow)
{
    const char* keys[] = {"wndIndex", "url",      "auth",        "startTime", "buffNumberType", "volume",
                          "https",    "fileName", "packageType", "params",    "type",           "mode",
                          "width",    "windows",  "custom",      "rectInfo",  "drawInfo"};
    for (const Named& function : functions) {
        for (const QByteArray& value : values_) {
            expectErrorOrNothing(function.name, function.function, wall::json(value));
            expectErrorOrNothing(function.name, function.function, wall::json(R"({"wndIndex":0})"));
            for (const char* key : keys) {
                const QByteArray others = R"("wndIndex":9,"url":"","auth":"","fileName":"f","startTime":"","type":9,)";
                expectErrorOrNothing(function.name, function.function,
                                     wall::json("{" + others + "\"" + key + "\":" + value + "}"));
            }
        }
    }
}

// On a thread that may show no widgets, where a file dialog counts as cancelled.
TEST_F(BadDocumentsTest, functionsWithoutAWindow)
{
    const char* keys[] = {"localConfig", "uuid", "audioType", "url", "key", "type", "path", "downloadId", "fileList"};
    const auto callAll = [&](const NamedService& service) {
        wall::take(service.function(nullptr));
        for (const QByteArray& value : values_) {
            for (const char* key : keys) {
                const QJsonDocument document = wall::json(QByteArray("{\"") + key + "\":" + value + "}");
                wall::take(service.function(&document));
            }
        }
    };
    for (const NamedService& service : services) {
        if (service.function != LD_OpenDirectory) // would start the desktop's file manager
            std::thread(callAll, service).join();
    }
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
