#pragma once

#include "src/fisheye/FisheyeWindow.h"
#include "tests/support/Wall.h"

namespace wall {

// A wall that shows a round picture, and its mouse.
class FisheyeTest : public WallTest
{
public:
    using WallTest::WithWidget;

protected:
    using FisheyeWindow = quillmark::lumen_deck::FisheyeWindow;

    // Software correction with an arrangement that plays; the real stream is 10, the views 11, 12 and so on.
    void playViews(int arrangement)
    {
        ASSERT_TRUE(ask(LD_SetCorrectionType, R"({"type":1})").null);
        ASSERT_TRUE(ask(LD_ArrangeFECWindow, QByteArray(R"({"type":)") + QByteArray::number(arrangement) + "}").null);
        playAgain();
    }
    void playAgain()
    {
        numberViews();
        ASSERT_TRUE(ask(LD_Play, R"({"url":"u","auth":""})").null);
        forget();
    }

    void numberViews()
    {
        nextView_ = 11;
        engine_double::answer("TP_Play", 10);
        engine_double::onCall("TP_FEC_Play", [this] { engine_double::answer("TP_FEC_Play", nextView_++); });
    }

    // What the engine was asked since the last question, shortened.
    std::string asked()
    {
        QString text;
        for (const std::string& line : engineCalls(from_))
            text += (text.isEmpty() ? "" : "; ") + QString::fromStdString(line);
        forget();
        return text.remove("TP_FEC_").remove(" color 00000000").toStdString();
    }
    void forget() { from_ = engine_double::calls().size(); }

    FisheyeWindow* companion(int index) { return window(index)->findChild<FisheyeWindow*>(); }

    void role(int index, int type, int id)
    {
        const QJsonDocument request(QJsonObject{{"wndIndex", index}, {"type", type}, {"id", id}});
        EXPECT_TRUE(take(LD_SetFishWndProperty(&main(), &request)).null);
    }

    // The pointer in a window of 100 by 100 pixels, `later` ms after the last event.
    void mouse(QEvent::Type type, int index, QPoint at, unsigned long later = 1000,
               Qt::MouseButton button = Qt::LeftButton)
    {
        window(index)->resize(100, 100);
        sendMouse(window(index), type, at, button, button, time_ += later);
    }
    void press(int index, QPoint at, Qt::MouseButton button = Qt::LeftButton)
    {
        mouse(QEvent::MouseButtonPress, index, at, 1000, button);
    }
    void move(int index, QPoint at, unsigned long later = 1000) { mouse(QEvent::MouseMove, index, at, later); }
    void release(int index, QPoint at, Qt::MouseButton button = Qt::LeftButton)
    {
        mouse(QEvent::MouseButtonRelease, index, at, 1000, button);
    }
    void wheel(int index, int delta) { turnWheel(window(index), {1, 1}, {0, delta}); }

    static std::vector<QJsonObject> reports()
    {
        std::vector<QJsonObject> reports;
        for (const Event& event : heard()[LD_EVENT_FISHEYE_PTZ])
            reports.push_back(event.object["fishEyePTZInfo"].toObject());
        return reports;
    }

private:
    std::size_t from_ = 0;
    int nextView_ = 0;
    unsigned long time_ = 0;
};

} // namespace wall
