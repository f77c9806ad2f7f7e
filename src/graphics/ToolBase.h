#pragma once

#include <QObject>
#include <QString>

namespace quillmark::lumen_deck {

// What a press of the mouse on an empty spot of the video makes. Main thread.
class ToolBase : public QObject
{
    Q_OBJECT
public:
    enum ToolType
    {
        Any,  // a wildcard of the mouse dispatch; no tool has it
        None, // stands for no tool
        Zoom,
        Line,
        Rectangle,
        Polygon,
        Point,
        Breakline,
    };

    ToolType type() const { return type_; }

    QString name;
    int id = -1;               // the id of the shapes made; -1: each has none
    bool hideOnFinish = false; // a shape is removed as soon as it is finished

protected:
    ToolBase(ToolType type, QString toolName)
        : name(std::move(toolName))
        , type_(type)
    {
    }

private:
    const ToolType type_;
};

} // namespace quillmark::lumen_deck
