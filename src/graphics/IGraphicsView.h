#pragma once

#include <QObject>
#include <QVariant>

class QPainter;
class QWidget;

namespace quillmark::lumen_deck {

// The drawing layer of one play window, as the other layers know it. A child of the window and deleted with it.
class IGraphicsView : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    virtual QVariant backgroundColor() const = 0;
    virtual void setBackgroundColor(QVariant value) = 0; // must convert to QColor
    virtual void render(void* drawContext) = 0;          // draw thread of the engine, its GL context current
    virtual void renderBackground(void* drawContext) = 0;
    virtual void renderBackground(QPainter* painter) = 0;
};

// The view of a play window, made at the first call. `parent` must be an IPlayWindow.
IGraphicsView* UseGraphicsView(QWidget* parent);

} // namespace quillmark::lumen_deck
