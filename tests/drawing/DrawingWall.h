#pragma once

#include "src/graphics/GraphicsView.h"
#include "tests/support/Wall.h"

#include <QPointer>

namespace wall {

// One window of 1000 by 500 pixels that a test draws in with the mouse.
class DrawingTest : public WallTest
{
protected:
    void SetUp() override
    {
        WallTest::SetUp();
        open(1, 0);
        ASSERT_EQ(window_->size(), QSize(1000, 500));
        heard().clear();
    }

    // Shows so many windows each way, and draws in one of them.
    void open(int windows, int index)
    {
        arrange(R"({"type":)" + QByteArray::number(windows) + "}");
        main().resize(1002, 502);
        main().show();
        QApplication::processEvents();
        window_ = WallTest::window(index);
    }

    IPlayWindow* window() const { return window_; }
    quillmark::lumen_deck::detail::GraphicsView& view() const
    {
        return *window_->findChild<quillmark::lumen_deck::detail::GraphicsView*>();
    }

    void mouse(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons held)
    {
        time_ += 1000;
        if (window_)
            sendMouse(window_, type, at, button, held, time_);
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
    void clicks(std::initializer_list<QPoint> all)
    {
        for (const QPoint at : all)
            click(at);
    }
    void drag(QPoint from, QPoint to)
    {
        press(from);
        move(to);
        release(to);
    }

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

private:
    QPointer<IPlayWindow> window_;
    unsigned long time_ = 0;
};

} // namespace wall
