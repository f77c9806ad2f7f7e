#pragma once

#include "fuzz/Input.h"
#include "tests/double/EngineDouble.h"
#include "tests/support/Functions.h"

#include <QLoggingCategory>
#include <QTemporaryDir>

// Once, before the first wall.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static const QTemporaryDir root; // of all files that the library writes
    qputenv("PWD", root.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QLoggingCategory::setFilterRules("*.debug=false\n*.info=false\n*.warning=false");
    static QApplication application(*argc, *argv);
    static const functions::Nobody nobody;
    return 0;
}

namespace fuzz {

// A wall on the engine double, without a display. Built anew for every input, so that each stands by itself.
class FuzzWall
{
public:
    FuzzWall()
    {
        engine_double::reset();
        engine_double::give("TP_GetOSDTime", {2024, 7, 1, 12, 0, 0});
        engine_double::give("TP_GetPictureSize", {704, 576});
        widget_.resize(640, 480);
        LD_Release(LD_Initialize(&widget_));
        ask(LD_ArrangeWindow, R"({"type":2})");
        widget_.show();
        ask(LD_Play, R"({"wndIndex":0,"url":"rtsp://camera/channels/1","auth":"a:b"})");
    }

    QWidget* widget() { return &widget_; }

    // Text that is no document goes as an empty one.
    void ask(QJsonDocument* (*function)(QWidget*, const QJsonDocument*), const std::string& text)
    {
        const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(text));
        LD_Release(function(&widget_, &document));
    }

    // A function's name and its document: "LD_Pause {...}". A name that a mutation has spoilt stands for some function.
    void call(const std::string& line)
    {
        const std::string name = line.substr(0, line.find(' '));
        const std::vector<functions::Function>& all = functions::all();
        const auto known = std::find_if(all.begin(), all.end(), [&](const auto& one) { return one.name == name; });
        const auto& function = known != all.end() ? *known : all[std::hash<std::string>{}(name) % all.size()];
        const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(line.substr(name.size())));
        LD_Release(function(&widget_, &document));
    }

    void runEvents()
    {
        for (const int id : engine_double::livePlays())
            engine_double::emitMessage(id, 1);
        QApplication::processEvents();
    }

private:
    QWidget widget_;
};

} // namespace fuzz
