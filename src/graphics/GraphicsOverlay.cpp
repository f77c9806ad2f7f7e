#include "src/graphics/GraphicsOverlay.h"

#include "src/graphics/ShapeParts.h"
#include "src/util/JsonUtil.h"

#include <array>
#include <cmath>
#include <cstdlib>

namespace quillmark::lumen_deck {
namespace {

using Overlay = std::shared_ptr<GraphicsOverlay>;
using DateTimeFormat = GraphicsOverlay::DateTimeFormat;

enum DateOrder
{
    YearFirst,
    MonthFirst,
    DayFirst
};

DateOrder dateOrder(int dateType)
{
    static constexpr std::array<DateOrder, 6> kOrders{YearFirst, MonthFirst, YearFirst, MonthFirst, DayFirst, DayFirst};
    const bool known = dateType >= 0 && dateType < static_cast<int>(kOrders.size());
    return known ? kOrders[static_cast<size_t>(dateType)] : YearFirst;
}

const char* strftimeFormat(const DateTimeFormat& format)
{
    // By date order, then: 12 hours, 12 hours with the day of the week, 24 hours, 24 hours with it.
    static constexpr const char* kFormats[][4] = {
        {"%Y-%m-%d %I:%M:%S %p", "%Y-%m-%d %A %I:%M:%S %p", "%Y-%m-%d %H:%M:%S", "%Y-%m-%d %A %H:%M:%S"},
        {"%m-%d-%Y %I:%M:%S %p", "%m-%d-%Y %A %I:%M:%S %p", "%m-%d-%Y %H:%M:%S", "%m-%d-%Y %A %H:%M:%S"},
        {"%d-%m-%Y %I:%M:%S %p", "%d-%m-%Y %A %I:%M:%S %p", "%d-%m-%Y %H:%M:%S", "%d-%m-%Y %A %H:%M:%S"},
    };
    return kFormats[dateOrder(format.dateType)][(format.hour24 != 0 ? 2 : 0) + (format.showWeekDay ? 1 : 0)];
}

QString dateTimeString(const DateTimeFormat& format, std::time_t second)
{
    std::tm local{};
    localtime_r(&second, &local);
    std::array<char, 256> buffer;
    const size_t length = std::strftime(buffer.data(), buffer.size(), strftimeFormat(format), &local);
    return QString::fromLocal8Bit(buffer.data(), static_cast<int>(length));
}

// Towards zero; a window of no size measures nothing.
long long truncated(double value)
{
    return std::abs(value) < 1e15 ? static_cast<long long>(value) : 0;
}

bool isEnabled(const QJsonObject& object)
{
    return object["enable"].toBool(false);
}

// What every kind has. A broken or missing point leaves the text in the left top corner.
void readCommon(const QJsonObject& object, GraphicsOverlay& overlay)
{
    const QVariant point = parsePointF(object["point"].toArray()).second;
    if (point.isValid())
        overlay.position = point.toPointF();
    overlay.alignment = parseOptional<int>(object, "alignment", 0).second;
    overlay.minMoveValue = parseOptional<int>(object, "minMoveValue", 16).second;
    const int width = parseOptional<int>(object, "width", 0).second;
    if (width > 0)
        overlay.width = width;
    const int height = parseOptional<int>(object, "height", 0).second;
    if (height > 0)
        overlay.height = height;
}

Overlay makeOverlay(const QJsonObject& object, GraphicsOverlay::Kind kind, const QString& text)
{
    auto overlay = std::make_shared<GraphicsOverlay>(text);
    overlay->kind = kind;
    readCommon(object, *overlay);
    return overlay;
}

ParsedGraphics parseNameOverlay(const QJsonObject& object)
{
    const QString name = object["name"].toString();
    if (name.isEmpty() || !isEnabled(object))
        return {};
    return {nullptr, makeOverlay(object, GraphicsOverlay::ChannelName, name)};
}

ParsedGraphics parseDateTimeOverlay(const QJsonObject& object)
{
    if (!isEnabled(object))
        return {};
    DateTimeFormat format;
    const auto [timeError, timeFormat] = parseOptional<QString>(object, "timeFormat");
    if (timeError)
        return {timeError, nullptr};
    format.hour24 = timeFormat.isValid() && timeFormat.toString().toLower() != "12hour" ? 1 : 0;
    format.dateType = parseOptional<int>(object, "dateType", 0).second;
    const auto [weekDayError, showWeekDay] = parseOptional<bool>(object, "showWeekDay", false);
    if (weekDayError)
        return {weekDayError, nullptr};
    format.showWeekDay = showWeekDay;
    const Overlay overlay = makeOverlay(object, GraphicsOverlay::DateTime, currentDateTimeString({}));
    overlay->dateTimeFormat = format;
    return {nullptr, overlay};
}

ParsedGraphics parseTextOverlay(const QJsonObject& object)
{
    int id = -1;
    if (const auto error = readId(object, id))
        return {error, nullptr};
    if (!isEnabled(object))
        return {};
    const Overlay overlay = makeOverlay(object, GraphicsOverlay::FreeText, object["text"].toString());
    overlay->id = id;
    overlay->overlayId = id;
    return {nullptr, overlay};
}

} // namespace

QString currentDateTimeString(const DateTimeFormat& format)
{
    return dateTimeString(format, std::time(nullptr));
}

GraphicsOverlay::GraphicsOverlay(const QString& shownText)
    : GraphicsBase(Overlay)
    , text(shownText)
    , enable(!shownText.isEmpty())
{
}

GraphicsOverlay& GraphicsOverlay::operator=(const GraphicsOverlay& other)
{
    GraphicsBase::operator=(other);
    position = other.position;
    overlayId = other.overlayId;
    kind = other.kind;
    text = other.text;
    frameColor = other.frameColor;
    enable = other.enable;
    alignment = other.alignment;
    minMoveValue = other.minMoveValue;
    textWidth = other.textWidth;
    textHeight = other.textHeight;
    dateTimeFormat = other.dateTimeFormat;
    shownSecond_ = -1;
    if (other.width > 0)
        width = other.width;
    if (other.height > 0)
        height = other.height;
    return *this;
}

void GraphicsOverlay::mouseDown(const QPointF& point, const QSize&)
{
    grabOffset = point - position;
}

// The pointer must leave the spot by a whole step to move the text sideways; up and down it goes in steps from the top.
void GraphicsOverlay::mouseMove(const QPointF&, const QPointF& current, const QSize&)
{
    const long long step = minMoveValue > 0 ? minMoveValue : 16;
    const bool sideways = std::llabs(truncated((current.x() - (position.x() + grabOffset.x())) * width)) >= step;
    const long long x = sideways ? truncated(std::ceil((current.x() - grabOffset.x()) * width)) / step * step : 0;
    const long long y = truncated(current.y() * height) / step * step;
    if (textHeight + y >= height || y < 0 || x < 0 || x >= width)
        return;
    position.setY(static_cast<double>(y) / height);
    if (alignment == 0 && sideways)
        position.setX(static_cast<double>(x) / width);
}

void GraphicsOverlay::keepTime()
{
    const std::time_t now = std::time(nullptr);
    if (now == shownSecond_)
        return;
    shownSecond_ = now;
    text = dateTimeString(dateTimeFormat, now);
}

QRectF GraphicsOverlay::frame(int pixels, const QSize& size) const
{
    const auto frameWidth = static_cast<float>(static_cast<double>(pixels) / size.width());
    return {position, QSizeF(frameWidth, 32.0 / height)};
}

void GraphicsOverlay::measure(int pixels, const QSize& size)
{
    const QRectF measured = frame(pixels, size);
    textWidth = static_cast<int>(truncated(measured.width() * size.width()));
    textHeight = static_cast<int>(truncated(size.height() * measured.height()));
}

void GraphicsOverlay::render(void*, const QSize& size)
{
    if (kind == DateTime)
        keepTime();
    const int pixels = estimatedWidth(text, kTextSize);
    measure(pixels, size);
    renderFramedText(DrawColor(0.0F, 1.0F, 0.0F, 1.0F), text, position, {DrawColor(frameColor), frame(pixels, size)},
                     size, kTextSize);
}

bool GraphicsOverlay::contains(const QPointF& point, const QSize& size) const
{
    return position.x() < point.x() && point.x() < position.x() + static_cast<double>(textWidth) / size.width() &&
           position.y() < point.y() && point.y() < position.y() + 32.0 / height;
}

int GraphicsOverlay::distance(const QPointF& point, const QSize& size) const
{
    return contains(point, size) ? 0 : kMiss;
}

QJsonObject GraphicsOverlay::toJson() const
{
    QJsonObject object{{"point", pointToJson(position)}, {"enable", enable}, {"alignment", alignment}};
    if (kind == ChannelName)
        object["name"] = text;
    if (kind == DateTime) {
        object["timeFormat"] = "24hour";
        object["showWeekDay"] = true;
    }
    if (kind == FreeText) {
        object["text"] = text;
        writeId(object, overlayId);
    }
    return object;
}

ParsedGraphics parseOverlay(const QJsonObject& object)
{
    if (object.contains("name"))
        return parseNameOverlay(object);
    if (object.contains("timeFormat") || object.contains("dateType"))
        return parseDateTimeOverlay(object);
    if (object.contains("text"))
        return parseTextOverlay(object);
    return {constructJsonError("can not deduce what kind of text overlay it is", object, "src/graphics/GraphicsOverlay",
                               321),
            nullptr};
}

} // namespace quillmark::lumen_deck
