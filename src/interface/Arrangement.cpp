#include "src/interface/Arrangement.h"

#include "src/LayoutManager.h"
#include "src/interface/Export.h"
#include "src/local_info.h"
#include "src/util/JsonUtil.h"

namespace quillmark::lumen_deck {

QJsonArray makeLayout(int n, int ratio)
{
    QJsonArray cells;
    const double side = 1.0 / n;
    for (int i = 0; n > 0 && i < n * n; ++i) {
        const double left = static_cast<double>(i % n) / n;
        const double top = static_cast<double>(i / n) / n; // NOLINT(bugprone-integer-division)
        cells.append(QJsonObject{
            {"wndIndex", i}, {"ratio", ratio}, {"left", left}, {"top", top}, {"height", side}, {"width", side}});
    }
    return cells;
}

} // namespace quillmark::lumen_deck

namespace {

using namespace quillmark::lumen_deck;

constexpr int kLargestGrid = 4;

std::shared_ptr<ErrorBase> notAnObject(const char* operation, const QJsonDocument& args)
{
    return constructJsonError(QString(operation) + " json descriptor should be json object", args, LUMEN_HERE);
}

// Reads required whole numbers, in the order given, until one is missing.
template <class... Fields>
std::shared_ptr<ErrorBase> readNumbers(const QJsonObject& object, std::pair<const char*, int&> field, Fields... more)
{
    const auto [error, value] = parseRequired<int>(object, field.first);
    if (error)
        return error;
    field.second = value.toInt();
    if constexpr (sizeof...(more) > 0)
        return readNumbers(object, more...);
    else
        return nullptr;
}

std::shared_ptr<ErrorBase> setLayout(QWidget* mainWindow, const QJsonDocument& args)
{
    return Layout(mainWindow).setLayout(args);
}

// A layout that is not empty, given in place of a grid; a null document when there is none.
QJsonDocument customLayout(const QJsonValue& custom)
{
    if (custom.isArray() && !custom.toArray().isEmpty())
        return QJsonDocument(custom.toArray());
    if (custom.isObject() && !custom.toObject().isEmpty())
        return QJsonDocument(custom.toObject());
    return {};
}

QJsonDocument* arrangeWindow(QWidget* mainWindow, const QJsonDocument* args)
{
    if (!args->isObject())
        return dealResult(notAnObject("ArrangeWindow", *args));
    const QJsonObject object = args->object();
    if (const QJsonDocument custom = customLayout(object.value("custom")); !custom.isNull())
        return LD_SetLayout(mainWindow, &custom);
    int type = 0;
    if (const auto error = readNumbers(object, {"type", type}))
        return dealResult(error);
    if (type < 1 || type > kLargestGrid)
        return dealResult(constructJsonError("LD_ArrangeWindow only accept type 1,2,3,4", *args, LUMEN_HERE));
    const int ratio = LocalInfo().GetLocalInfo("playWndType").toInt(); // 0 for a text that is no number
    const QJsonDocument grid(QJsonObject{{"windows", makeLayout(type, ratio)}});
    return LD_SetLayout(mainWindow, &grid);
}

QJsonDocument* SetWndResolution(QWidget* mainWindow, const QJsonDocument* args)
{
    if (!args->isObject())
        return dealResult(notAnObject("SetWndResolution", *args));
    using Field = std::pair<const char*, int&>;
    int index = 0;
    int width = 0;
    int height = 0;
    const auto error =
        readNumbers(args->object(), Field("wndIndex", index), Field("width", width), Field("height", height));
    if (!error)
        Layout(mainWindow).setWndResolution(QVariant(index), width, height);
    return dealResult(error);
}

// The invalid size makes every cell go over its ratio rule again; the host gives the main window its size back.
QJsonDocument* SetWndRatioMode(QWidget* mainWindow, const QJsonDocument* args)
{
    if (!args->isObject())
        return dealResult(notAnObject("SetWndRatioMode", *args));
    using Field = std::pair<const char*, int&>;
    int index = 0;
    int mode = 0;
    if (const auto error = readNumbers(args->object(), Field("wndIndex", index), Field("mode", mode)))
        return dealResult(error);
    Layout(mainWindow).setWndRatioMode(QVariant(index), mode);
    mainWindow->resize(QSize());
    return nullptr;
}

// It reports no layout.
QJsonDocument queryLayout(QWidget* /*mainWindow*/)
{
    return {};
}

} // namespace

LUMEN_EXPORT_WD(LD_SetLayout, setLayout)
LUMEN_EXPORT_WD(LD_ArrangeWindow, arrangeWindow)
LUMEN_EXPORT_WD(LD_SetWndResolution, SetWndResolution)
LUMEN_EXPORT_WD(LD_SetWndRatioMode, SetWndRatioMode)
LUMEN_EXPORT_W(LD_QueryLayout, queryLayout)
