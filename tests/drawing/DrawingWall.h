#pragma once

#include "src/LayoutDetail.h"
#include "src/LayoutManager.h"
#include "src/graphics/GraphicsView.h"
#include "tests/support/Wall.h"

#include <QApplication>
#include <QJsonArray>
#include <QMouseEvent>
#include <QPointer>

#include <utility>

namespace wall {

// One window of 1000 by 500 pixels that a test draws in with the mouse, and what the host hears of it.
class DrawingTest : public WallTest
{
protected:
    void SetUp() override
    {
        WallTest::SetUp();
        open(1, 0);
        ASSERT_EQ(window_->size(), QSize(1000, 500));
        heard().clear();
        for (const LD_EventType type : kTypes)
            LD_InstallEventCallback(type, [](LD_EventType of, QWidget*, const QJsonDocument* document) {
                heard().emplace_back(of, document->object());
            });
    }

    void TearDown() override
    {
        for (const LD_EventType type : kTypes)
            LD_InstallEventCallback(type, nullptr);
        WallTest::TearDown();
    }

    // Shows so many windows each way, and draws in one of them.
    void open(int windows, int index)
    {
        arrange(R"({"type":)" + QByteArray::number(windows) + "}");
        main().resize(1002, 502);
        main().show();
        QApplication::processEvents();
        window_ = quillmark::lumen_deck::Layout(&main()).getPlayWindow(QVariant(index));
    }

    quillmark::lumen_deck::IPlayWindow* window() const { return window_; }
    quillmark::lumen_deck::detail::GraphicsView& view() const
    {
        return *window_->findChild<quillmark::lumen_deck::detail::GraphicsView*>();
    }

    void mouse(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons held)
    {
        QMouseEvent event(type, at, button, held, Qt::NoModifier);
        event.setTimestamp(time_ += 1000);
        if (window_)
            QApplication::sendEvent(window_, &event);
    }
    void press(QPoint at, Qt::MouseButton button = Qt::LeftButton)
    {
        mouse(QEvent::MouseButtonPress, at, button, button);
    }
    void move(QPoint at, Qt::MouseButtons held = Qt::LeftButton) { mouse(QEvent::MouseMove, at, Qt::NoButton, held); }
    void release(QPoint at, Qt::MouseButton button = Qt::LeftButton)
    {
        mouse(QEvent::MouseButtonRelease, at, button, Qt::NoButton);
    }
    void click(QPoint at, Qt::MouseButton button = Qt::LeftButton)
    {
        move(at, Qt::NoButton);
        press(at, button);
        release(at, button);
    }
    void drag(QPoint from, QPoint to)
    {
        press(from);
        move(to);
        release(to);
    }

    // Takes a tool and lets it draw.
    void take(const QByteArray& word, const QByteArray& tool)
    {
        ASSERT_TRUE(ask(LD_SetDrawStatus, R"({"enable":true})").null);
        ASSERT_TRUE(ask(LD_SetDrawShapeInfo, R"({"drawType":")" + word + R"(","drawInfo":)" + tool + "}").null);
    }

    QJsonArray shapes(QJsonDocument* (*query)(QWidget*), const char* key)
    {
        return wall::take(query(&main())).object[key].toArray();
    }
    QJsonArray rectangles() { return shapes(LD_GetRectInfo, "rectInfo"); }
    QJsonArray polygons() { return shapes(LD_GetPolygonInfo, "polygonInfo"); }
    QJsonArray lines() { return shapes(LD_GetLineInfo, "lineInfo"); }
    QJsonArray points() { return shapes(LD_GetPointInfo, "pointInfo"); }

    using Heard = std::vector<std::pair<LD_EventType, QJsonObject>>;
    static Heard& heard()
    {
        static Heard instance;
        return instance;
    }
    // What was heard of this type since the last question.
    static std::vector<QJsonObject> told(LD_EventType type)
    {
        std::vector<QJsonObject> documents;
        for (const auto& [of, document] : heard()) {
            if (of == type)
                documents.push_back(document);
        }
        heard().clear();
        return documents;
    }

private:
    static constexpr LD_EventType kTypes[] = {LD_EVENT_SHAPE_FINISHED, LD_EVENT_MOUSE, LD_EVENT_SHAPE_CHOSEN,
                                              LD_EVENT_DRAWING_ENDED};
    QPointer<quillmark::lumen_deck::IPlayWindow> window_;
    unsigned long time_ = 0;
};

} // namespace wall
