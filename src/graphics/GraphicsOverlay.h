#pragma once

#include "src/graphics/GraphicsBase.h"

#include <ctime>

namespace quillmark::lumen_deck {

// A line of text in a frame: the channel name, the running date and time, or a free text. Dragged in steps of a grid of
// a reference resolution.
class GraphicsOverlay : public GraphicsBase
{
    Q_OBJECT
public:
    enum Kind
    {
        ChannelName,
        DateTime,
        FreeText
    };

    struct DateTimeFormat
    {
        int dateType = 0;
        int hour24 = 0;
        bool showWeekDay = false;
    };

    explicit GraphicsOverlay(const QString& shownText);

    using GraphicsBase::operator=;
    virtual GraphicsOverlay& operator=(const GraphicsOverlay& other);
    void mouseMove(const QPointF& previous, const QPointF& current, const QSize& size) override;
    void mouseDown(const QPointF& position, const QSize& size) override;
    void mouseUp(const QPointF&, const QSize&) override {}
    void render(void* drawContext, const QSize& size) override;
    bool contains(const QPointF& point, const QSize& size) const override; // by what was drawn last
    int distance(const QPointF& point, const QSize& size) const override;
    QJsonObject toJson() const override;

    QPointF position; // the text's left top corner
    int overlayId = -1;
    int kind = FreeText;
    QString text; // of a date: as of the last frame
    QColor frameColor = Qt::red;
    bool enable;
    int alignment = 0;  // other than 0: dragged up and down only
    int textWidth = 0;  // of the frame in pixels, as of the last frame
    int textHeight = 0; // likewise
    DateTimeFormat dateTimeFormat;
    int minMoveValue = 16; // the drag step, in units of the reference resolution
    int width = 704;       // the reference resolution
    int height = 576;
    QPointF grabOffset; // where inside the frame the press fell

private:
    void keepTime();
    void measure(int pixels, const QSize& size);
    QRectF frame(int pixels, const QSize& size) const;

    std::time_t shownSecond_ = -1; // that `text` tells
};

QString currentDateTimeString(const GraphicsOverlay::DateTimeFormat& format);
ParsedGraphics parseOverlay(const QJsonObject& object);

} // namespace quillmark::lumen_deck
