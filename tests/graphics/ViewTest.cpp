#include "tests/graphics/Shapes.h"

#include "src/WindowDirectory.h"
#include "tests/double/EngineDouble.h"
#include "tests/support/GlCanvas.h"

#include <thread>

using namespace shapes;

namespace {

std::shared_ptr<GraphicsBase> shape(G::GraphicsType type, int id = -1)
{
    if (type == G::Grid)
        return make(type, R"({"gridColNum":22,"gridRowNum":18})");
    const QByteArray points = type == G::Rectangle ? "[[0,0],0,[1,1],0]" : type == G::Point ? "[0,0]" : "[[0,0],[1,1]]";
    return make(type, R"({"points":)" + points + R"(,"id":)" + QByteArray::number(id) + "}");
}

using List = std::vector<std::pair<int, int>>; // types and ids

List listed(const Window& window)
{
    List list;
    for (const auto& shape : window->getGraphics())
        list.emplace_back(shape->type(), shape->id);
    return list;
}

} // namespace

TEST(View, aShapeTakesTheSlotOfItsIdOrKind)
{
    const Window window({100, 100});
    EXPECT_EQ(UseGraphicsView(&*window), window.operator->()) << "made once";
    for (const auto& added :
         {shape(G::Grid), shape(G::Polygon, 5), shape(G::Line, 3), shape(G::Point), shape(G::Point)})
        window->addGraphics(added);
    EXPECT_EQ(listed(window), (List{{G::Grid, -1}, {G::Polygon, 5}, {G::Line, 3}, {G::Point, -1}, {G::Point, -1}}));
    const auto rectangle = shape(G::Rectangle, 5);
    for (const auto& added : {shape(G::Grid), rectangle, shape(G::Breakline, 3)})
        window->addGraphics(added);
    window->addGraphics(nullptr);
    EXPECT_EQ(listed(window),
              (List{{G::Grid, -1}, {G::Rectangle, 5}, {G::Breakline, 3}, {G::Point, -1}, {G::Point, -1}}));
    EXPECT_EQ(window->getGraphics(QVariant(5)), rectangle);

    // The other way round both stay.
    window->clearGraphics(G::Point);
    window->addGraphics(shape(G::Polygon, 5));
    window->addGraphics(shape(G::Line, 3));
    EXPECT_EQ(listed(window),
              (List{{G::Grid, -1}, {G::Rectangle, 5}, {G::Breakline, 3}, {G::Polygon, 5}, {G::Line, 3}}));

    window->clearGraphics();
    for (const char* const text :
         {R"({"name":"a","enable":true})", R"({"text":"b","enable":true,"id":1})", R"({"dateType":0,"enable":true})",
          R"({"name":"c","enable":true})", R"({"text":"d","enable":true,"id":2})", R"({"dateType":1,"enable":true})"})
        window->addGraphics(make(G::Overlay, text));
    const auto overlays = window->getGraphics(G::Overlay);
    ASSERT_EQ(overlays.size(), 4U);
    EXPECT_EQ(overlays[0]->toJson()["name"], "c");
}

TEST(View, aCountingLineMayGoWhileTheEngineReports)
{
    engine_double::reset();
    auto line = make<GraphicsLine>(G::Line, R"({"id":1,"points":[[0,0],[1,1]]})");
    registerPeopleCount(17, *line);
    EXPECT_THAT(engine_double::calls("TP_RegAdditionFun")[0].arguments,
                testing::ElementsAre("17", "2049", "pointer", "pointer"));
    std::array<std::uint32_t, 16> thousandths{500, 9, 1001, 10, 1000};
    const auto report = [&](int playId, int type, int length) {
        TP_ADDITION_DATA_INFO info{type, 0, 0, length, 0, thousandths.data()};
        peopleCountDataCallback(playId, &info, line.get());
    };
    report(18, 2049, 64); // another stream
    report(17, 2049, 63);
    report(17, 2048, 64);
    EXPECT_TRUE(std::isnan(line->pdcLengths->length(0)));
    report(17, 2049, 64);
    const double expected[] = {0.5, -1.0, -1.0, 0.01, 1.0, -1.0};
    for (size_t i = 0; i < std::size(expected); ++i)
        EXPECT_DOUBLE_EQ(line->pdcLengths->length(i), expected[i]);

    GraphicsLine* const gone = line.get();
    const auto counts = line->pdcLengths;
    line.reset();
    thousandths[0] = 700;
    TP_ADDITION_DATA_INFO info{2049, 0, 0, sizeof thousandths, 0, thousandths.data()};
    peopleCountDataCallback(17, &info, gone);
    peopleCountDataCallback(17, nullptr, nullptr);
    EXPECT_DOUBLE_EQ(counts->length(0), 0.5);
}

TEST(View, drawsWhileShapesComeChangeAndGo)
{
    const Window window({64, 64});
    constexpr int kFrames = 300;
    std::atomic<int> frames{0};
    const auto drawLoop = [&] {
        GlCanvas canvas({64, 64});
        while (++frames < kFrames) {
            if (const auto visit = WindowDirectory::instance().visit(&*window))
                visit.view()->render(nullptr);
        }
    };
    std::array<std::thread, 2> threads{std::thread(drawLoop), std::thread(drawLoop)};
    std::array<std::uint32_t, 16> thousandths{500, 500};
    TP_ADDITION_DATA_INFO info{2049, 0, 0, sizeof thousandths, 0, thousandths.data()};
    for (int round = 0; frames < kFrames; ++round) {
        const auto line =
            make<GraphicsLine>(G::Line, R"({"id":1,"points":[[0,0],[1,1]],"lineType":4,"direction":1,"showPDCLine":true,
                         "demarcationLineWidth":0.5,"cutOffPositions":[0.2],"tips":"tips"})");
        registerPeopleCount(17, *line);
        window->addGraphics(line);
        window->addGraphics(make(G::Overlay, R"({"dateType":0,"enable":true})"));
        window->addGraphics(shape(G::Polygon, round % 7));
        peopleCountDataCallback(17, &info, line.get());
        for (const auto& edited : window->getGraphics()) {
            const auto lock = window->lockShapes();
            edited->mouseDown({0.5, 0.5}, {64, 64});
            edited->mouseMove({0.5, 0.5}, {0.6, 0.6}, {64, 64});
            edited->toJson();
        }
        if (round % 5 == 4)
            window->clearGraphics();
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_LE(listed(window).size(), 9U);
}
