#include "src/fisheye/FisheyeWindow.h"
#include "src/graphics/GraphicsBase.h"

#include <QRectF>
#include <QString>

#include <algorithm>
#include <cmath>

// What a device-expanded window shows over its picture. Draw thread of the engine.
namespace quillmark::lumen_deck {

namespace {

constexpr float kBoxHalf = 16.0F; // pixels
constexpr int kIdFontSize = 24;
constexpr int kBoxFontSize = 16;

const DrawColor kBoxColor(1.0F, 1.0F, 0.0F, 0.5F);
const DrawColor kNumberColor(1.0F, 0.0F, 0.0F, 1.0F);

// The edge that lies `reach` pixels from a place, on a whole pixel.
double edge(float place, int extent, float reach)
{
    const auto pixels = static_cast<float>(extent);
    return std::trunc(pixels * place + reach) / pixels;
}

// A box far outside has no pixels in the window, and a place that is no number has none at all.
bool canBeSeen(const FisheyeDeviceExpandMark& mark)
{
    constexpr float far = 1000.0F;
    return mark.visible && mark.x > 0.0F && mark.x < far && std::abs(mark.y) < far;
}

void drawBox(int id, const FisheyeDeviceExpandMark& mark, const QSize& size)
{
    const QPointF leftTop(edge(mark.x, size.width(), -kBoxHalf), edge(mark.y, size.height(), -kBoxHalf));
    const QPointF rightBottom(edge(mark.x, size.width(), kBoxHalf), edge(mark.y, size.height(), kBoxHalf));
    renderRectangle(kBoxColor, QRectF(leftTop, rightBottom), size, true);
    renderText(kNumberColor, QString::number(id), leftTop, size, kBoxFontSize);
}

} // namespace

void FisheyeWindow::DrawFishEyeBox(void*)
{
    if (windowType_ == FisheyeView)
        return;
    const QSize size(std::max(width_.load(), 1), std::max(height_.load(), 1));
    const FisheyeMarks::Marks marks = marks_.all();
    for (auto mark = marks.cbegin(); mark != marks.cend(); ++mark) {
        if (canBeSeen(*mark))
            drawBox(mark.key(), *mark, size);
    }
}

void FisheyeWindow::DrawFishWndId(void*)
{
    const int id = windowPTZId_;
    if (windowType_ != FisheyeView || id < 1 || id > 9)
        return;
    renderText(kNumberColor, QString::number(id), {0.0, 0.0}, {width_, height_}, kIdFontSize);
}

} // namespace quillmark::lumen_deck
